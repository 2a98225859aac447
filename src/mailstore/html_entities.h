// mailstore/html_entities.h - the character entities of HTML.
//   HTML 4.01 section 24, less six mathematical signs (cong, lowast, minus, radic, sum, uArr) that
//   are not known here.
#ifndef TAMU_MAILSTORE_HTML_ENTITIES_H_
#define TAMU_MAILSTORE_HTML_ENTITIES_H_

#include <cstdint>
#include <optional>
#include <string_view>

namespace tamu {

// The UTF-16 unit that an entity stands for, given what is between "&" and ";"; none for an empty
// name. Names are case-sensitive; an unknown one is a space.
// "#65" is read as a decimal number, as far as it goes (0 for none), "#x41", with a small x only, as
// a hexadecimal one. Every "#", and every "x" of a hexadecimal number, is skipped wherever it
// stands. Numbers stop at 32 bits, of which the low 16 count. A space when there is nothing to read
// or no hexadecimal digit.
[[nodiscard]] std::optional<char16_t> HTML_DecodeEntity(std::u16string_view name) noexcept;

}  // namespace tamu

#endif  // TAMU_MAILSTORE_HTML_ENTITIES_H_
