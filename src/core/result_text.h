// core/result_text.h - the texts of result codes.
#ifndef TAMU_CORE_RESULT_TEXT_H_
#define TAMU_CORE_RESULT_TEXT_H_

#include "tamu/tamu.h"

namespace tamu {

// The text of a code; for one without a text, a static buffer that the next such call overwrites.
[[nodiscard]] const char16_t* RESULT_Text(TamuResult code) noexcept;

}  // namespace tamu

#endif  // TAMU_CORE_RESULT_TEXT_H_
