// core/wide.h - the public header's wide text as the library's own. Both are UTF-16; on systems
// whose wchar_t has 16 bits only the names of the types differ.
#ifndef TAMU_CORE_WIDE_H_
#define TAMU_CORE_WIDE_H_

#include "tamu/tamu.h"

namespace tamu {

static_assert(sizeof(TamuWchar) == sizeof(char16_t));

[[nodiscard]] inline const char16_t* AsUtf16(const TamuWchar* text) noexcept {
  return reinterpret_cast<const char16_t*>(text);
}

[[nodiscard]] inline const TamuWchar* AsTamuWchar(const char16_t* text) noexcept {
  return reinterpret_cast<const TamuWchar*>(text);
}

}  // namespace tamu

#endif  // TAMU_CORE_WIDE_H_
