// device/pim/item_values.h - getting and putting single properties of items in hand, as the methods
// of contacts, tasks and appointments do.
//   Ownership  texts that are got are counted strings of exactly the text's length, never null, and
//              the caller's. A drawn note that is got is a block that the caller frees with the C
//              library's `free`; one without bytes is null. Texts that are put end at their first
//              NUL, also in a counted string, since literals come without a count; null is "".
//   Errors     kPointer for a null place, kInvalidArgument for a value that the property cannot
//              have, kOutOfMemory; the property keeps its value then.
#ifndef TAMU_DEVICE_PIM_ITEM_VALUES_H_
#define TAMU_DEVICE_PIM_ITEM_VALUES_H_

#include <limits>
#include <memory>
#include <string_view>

#include "device/com_object.h"
#include "device/pim/item_state.h"

namespace tamu::device {

// The text of an argument.
[[nodiscard]] inline std::u16string_view ArgumentText(const char16_t* text) noexcept {
  return text == nullptr ? std::u16string_view() : std::u16string_view(text);
}

// A counted string of a text that is given away; null when memory runs out.
[[nodiscard]] platform::HRESULT GiveText(std::u16string_view text, platform::BSTR* out) noexcept;

struct NumberRange {
  std::int32_t lowest;
  std::int32_t highest;
};

// What properties of several kinds of items can be.
inline constexpr std::int32_t kLowestSensitivity = platform::kSensitivityNormal;
inline constexpr std::int32_t kHighestSensitivity = 3;
inline constexpr std::int32_t kLowestOptions = std::numeric_limits<std::int32_t>::min();
inline constexpr std::int32_t kHighestOptions = std::numeric_limits<std::int32_t>::max();

// `method` is the name that passes the gate.
[[nodiscard]] platform::HRESULT GetText(const char* method, ItemState& item, std::size_t property,
                                        platform::BSTR* out) noexcept;
[[nodiscard]] platform::HRESULT PutText(const char* method, ItemState& item, std::size_t property,
                                        const char16_t* text) noexcept;
[[nodiscard]] platform::HRESULT GetDate(const char* method, ItemState& item, std::size_t property,
                                        platform::DATE* out) noexcept;
[[nodiscard]] platform::HRESULT PutDate(const char* method, ItemState& item, std::size_t property,
                                        platform::DATE date) noexcept;
[[nodiscard]] platform::HRESULT GetNumber(const char* method, ItemState& item, std::size_t property,
                                          std::int32_t* out) noexcept;
[[nodiscard]] platform::HRESULT PutNumber(const char* method, ItemState& item, std::size_t property,
                                          std::int32_t number, NumberRange range) noexcept;
[[nodiscard]] platform::HRESULT GetFlag(const char* method, ItemState& item, std::size_t property,
                                        platform::VARIANT_BOOL* out) noexcept;
[[nodiscard]] platform::HRESULT PutFlag(const char* method, ItemState& item, std::size_t property,
                                        platform::VARIANT_BOOL flag) noexcept;
[[nodiscard]] platform::HRESULT GetBytes(const char* method, ItemState& item, std::size_t property,
                                         platform::CEBLOB* out) noexcept;
[[nodiscard]] platform::HRESULT PutBytes(const char* method, ItemState& item, std::size_t property,
                                         const platform::CEBLOB* bytes) noexcept;
[[nodiscard]] platform::HRESULT GetApplication(const char* method, PimApplication* application,
                                               platform::IPOutlookApp** out) noexcept;
[[nodiscard]] platform::HRESULT GetOid(const char* method, const ItemState& item,
                                       std::int32_t* out) noexcept;

// An object that shows an item.
template <typename Derived, typename Interface>
class ItemObject : public DispatchObject<Derived, Interface> {
 protected:
  explicit ItemObject(std::shared_ptr<ItemState> state) noexcept : state_(std::move(state)) {}
  ~ItemObject() = default;

  [[nodiscard]] ItemState& state() const noexcept { return *state_; }
  [[nodiscard]] const std::shared_ptr<ItemState>& shared_state() const noexcept { return state_; }
  [[nodiscard]] ItemRecord& record() const noexcept { return state_->record; }

 private:
  std::shared_ptr<ItemState> state_;
};

}  // namespace tamu::device

// Methods of one property: TAMU_ITEM_TEXT(IContact, ContactProperty, FileAs) has get_FileAs and
// put_FileAs.
#define TAMU_ITEM_GETTER(interface_, properties_, name_, type_, getter_) \
  platform::HRESULT TAMU_COM_CALL get_##name_(type_* value) override {   \
    return getter_(#interface_ "::get_" #name_, state(),                 \
                   static_cast<std::size_t>(properties_::name_), value); \
  }
#define TAMU_ITEM_PUTTER(interface_, properties_, name_, type_, putter_) \
  platform::HRESULT TAMU_COM_CALL put_##name_(type_ value) override {    \
    return putter_(#interface_ "::put_" #name_, state(),                 \
                   static_cast<std::size_t>(properties_::name_), value); \
  }
#define TAMU_ITEM_TEXT(interface_, properties_, name_)                      \
  TAMU_ITEM_GETTER(interface_, properties_, name_, platform::BSTR, GetText) \
  TAMU_ITEM_PUTTER(interface_, properties_, name_, platform::BSTR, PutText)
#define TAMU_ITEM_DATE(interface_, properties_, name_)                      \
  TAMU_ITEM_GETTER(interface_, properties_, name_, platform::DATE, GetDate) \
  TAMU_ITEM_PUTTER(interface_, properties_, name_, platform::DATE, PutDate)
#define TAMU_ITEM_FLAG(interface_, properties_, name_)                              \
  TAMU_ITEM_GETTER(interface_, properties_, name_, platform::VARIANT_BOOL, GetFlag) \
  TAMU_ITEM_PUTTER(interface_, properties_, name_, platform::VARIANT_BOOL, PutFlag)
#define TAMU_ITEM_INK(interface_, properties_)                                    \
  TAMU_ITEM_PUTTER(interface_, properties_, BodyInk, platform::CEBLOB*, PutBytes) \
  TAMU_ITEM_GETTER(interface_, properties_, BodyInk, platform::CEBLOB, GetBytes)
// The last two are the lowest and the highest number.
#define TAMU_ITEM_NUMBER(interface_, properties_, name_, lowest_, highest_)  \
  TAMU_ITEM_GETTER(interface_, properties_, name_, std::int32_t, GetNumber)  \
  platform::HRESULT TAMU_COM_CALL put_##name_(std::int32_t value) override { \
    return PutNumber(#interface_ "::put_" #name_, state(),                   \
                     static_cast<std::size_t>(properties_::name_), value,    \
                     NumberRange{lowest_, highest_});                        \
  }

#endif  // TAMU_DEVICE_PIM_ITEM_VALUES_H_
