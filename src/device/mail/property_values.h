// device/mail/property_values.h - between the platform's property structures and what stores keep.
//   Ownership  what is read is the caller's for the call; what is made is a block of
//              mapi_buffer.h, freed by its receiver.
//   Errors     results; nothing is thrown, except by the functions that return a property.
#ifndef TAMU_DEVICE_MAIL_PROPERTY_VALUES_H_
#define TAMU_DEVICE_MAIL_PROPERTY_VALUES_H_

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "device/mail/mail_record.h"
#include "platform/cemapi.h"

namespace tamu::device {

[[nodiscard]] MailProperty NumberProperty(std::uint32_t tag, std::int64_t number);
[[nodiscard]] MailProperty TextProperty(std::uint32_t tag, std::u16string_view text);

// The tags of an array; kInvalidArgument for null or none. The span lives as long as the array.
[[nodiscard]] platform::HRESULT TagsOf(const platform::SPropTagArray* tags,
                                       std::span<const std::uint32_t>* out) noexcept;

// Copies one value that a caller sets. kInvalidType for a type that cannot be stored,
// kInvalidArgument for a null text or missing bytes, kOutOfMemory.
[[nodiscard]] platform::HRESULT CopyValue(const platform::SPropValue& value,
                                          MailProperty* property) noexcept;

// The values of the tags, in their order, as one block. One that `found` lacks has type kTypeError
// and result kNotFound; the call is then kErrorsReturned.
[[nodiscard]] platform::HRESULT MakeValues(std::span<const std::uint32_t> tags,
                                           std::span<const MailProperty> found,
                                           platform::SPropValue** values) noexcept;

// The rows as a set, each with the cells of MakeValues; never null when it succeeds.
[[nodiscard]] platform::HRESULT MakeRowSet(std::span<const std::uint32_t> columns,
                                           std::span<const MailRow> rows,
                                           platform::SRowSet** set) noexcept;

}  // namespace tamu::device

#endif  // TAMU_DEVICE_MAIL_PROPERTY_VALUES_H_
