// text/property.h - the parameters and value components of one property.
//   Values stay raw here: as they stand in the file, with quoted-printable and backslashes;
//   property_text.h turns them into wide text.
//   Ownership  a property owns its parameters and components; texts handed over as MemPtr become
//              its own.
//   Errors     a list that memory runs out for keeps what it has; the piece in question is missing.
#ifndef TAMU_TEXT_PROPERTY_H_
#define TAMU_TEXT_PROPERTY_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "core/memory.h"
#include "core/records.h"

namespace tamu {

// Of a value without a limit to its components.
inline constexpr std::uint32_t kAnyComponents = UINT32_MAX;

// The longest character set name that PARAM_GetValue gives.
inline constexpr std::size_t kParamValueLength = 260;

// Fills a new property from a line: cuts the parameters and the value at every unescaped ";", keeps
// at most `max_components` components, and sets the flags. An encoding or "CHARSET" counts wherever
// it stands in a parameter, in any case; of several encodings the first of quoted-printable,
// base64, 8bit. An empty parameter text is no parameter, an empty value is one empty component.
// Does nothing for a null text or property or a limit of 0.
void PROP_SetFromText(const char* value_text, const char* param_text, std::uint32_t max_components,
                      Property* property) noexcept;

// Stores `text` as component `index` (from 0), making the empty components before it as needed and
// freeing what stood there. Returns false, with nothing changed, for a null property or text and
// when memory runs out.
bool PROP_SetValue(Property* property, MemPtr<char> text, std::uint32_t index) noexcept;

// Appends a parameter: a copy of `text`, or the text itself. Returns false, with nothing changed,
// for a null property or text and when memory runs out.
bool PROP_AddParam(Property* property, std::string_view text) noexcept;
bool PROP_AddParam(Property* property, MemPtr<char> text) noexcept;

// Takes back what is added to a property while it lives, unless it is committed: for changes that
// have to be whole. Components that were there must not be replaced meanwhile.
class PropertyEdit {
 public:
  explicit PropertyEdit(Property* property) noexcept;
  ~PropertyEdit();
  PropertyEdit(const PropertyEdit&) = delete;
  PropertyEdit& operator=(const PropertyEdit&) = delete;
  void Commit() noexcept { property_ = nullptr; }

 private:
  Property* property_;
  std::uint32_t flags_;
  Ref<StringItem>* params_end_;
  Ref<StringItem>* values_end_;
};

// The first parameter whose text contains `upper_needle` in any case, or null.
[[nodiscard]] StringItem* PROP_FindParam(StringItem* first_param,
                                         std::string_view upper_needle) noexcept;

// The component `index`, or null when it is missing or empty without a text.
[[nodiscard]] const char* PROP_GetValue(const Property* property, std::uint32_t index) noexcept;

// Copies what follows the first "=" of a parameter, up to the first space or tab, at most `size` -
// 1 and at most kParamValueLength characters, quotes and all. Returns its length; 0 and "" without
// "=".
std::size_t PARAM_GetValue(const char* param_text, char* out, std::size_t size) noexcept;

}  // namespace tamu

#endif  // TAMU_TEXT_PROPERTY_H_
