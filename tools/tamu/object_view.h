// object_view.h - a delivered record as data that is ready to be shown: every property with its
// raw texts and their decoded form.
//   Ownership  raw texts are borrowed from the record; a view is used while the record lives.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_OBJECT_VIEW_H_
#define TAMU_TOOLS_OBJECT_VIEW_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "message_view.h"
#include "tamu/tamu.h"

namespace tamu::tool {

enum class ValueEncoding : std::uint8_t { kNone, kQuotedPrintable, kBase64, k8Bit };

// One component of a value: as in the file, and decoded.
struct ComponentView {
  std::string_view raw;
  std::u16string text;
};

struct PropertyView {
  std::string_view name;
  std::vector<std::string_view> params;
  std::vector<std::optional<ComponentView>> components;  // none: a component without a text
  ValueEncoding encoding = ValueEncoding::kNone;
  std::optional<std::string> charset;  // as the file names it
  std::uint32_t code_page = 0;         // that the text was converted with, 0 when none was

  // Of the component `index`; "" when it is missing.
  [[nodiscard]] std::u16string_view Text(std::size_t index) const noexcept;
  [[nodiscard]] bool IsEmpty() const noexcept;
};

struct ObjectView {
  ObjectKind kind = KIND_CONTACT;
  TamuResult status = TAMU_PARSE_OK;
  std::uint32_t line = 0;  // of the file, where the object begins
  std::string_view luid;
  std::string_view version;
  std::u16string name;  // as TAMU_GetObjectName composes it, of a message with its texts decoded
  std::vector<PropertyView> properties;
  std::uint8_t component = 0;          // of a calendar item
  bool all_day = false;                // of an event
  std::optional<MessageView> message;  // of a message
};

// An object as READ_Objects delivers it.
struct DeliveredObject {
  ObjectKind kind;
  ObjectRecord* record;
  TamuResult status;
  std::uint32_t line;
  std::uint64_t end_offset = 0;  // how far the file is read, bytes
};

// The record's view. Decoding settles code pages in the record and changes nothing else.
[[nodiscard]] ObjectView VIEW_Make(const DeliveredObject& object);

// True for the three kinds of messages.
[[nodiscard]] bool KIND_IsMessage(ObjectKind kind) noexcept;

// "contact" and "contacts".
struct KindWords {
  std::string_view one;
  std::string_view many;
};
[[nodiscard]] KindWords KIND_Words(ObjectKind kind) noexcept;

// "1 contact", "12 contacts".
[[nodiscard]] std::string KIND_Count(std::uint64_t count, const KindWords& words);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_OBJECT_VIEW_H_
