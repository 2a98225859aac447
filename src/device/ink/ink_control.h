// device/ink/ink_control.h - the rich-ink control without its window: text that is streamed in and,
// as a document or as text, out.
//   Units      streams are bytes.
//   Errors     the stream's number, which is also left in EditStream::error; nothing is thrown.
#ifndef TAMU_DEVICE_INK_INK_CONTROL_H_
#define TAMU_DEVICE_INK_INK_CONTROL_H_

#include <cstdint>
#include <string>

#include "platform/rich_ink.h"

namespace tamu::device {

// The bytes that a callback is asked for, or given, at most.
inline constexpr std::int32_t kInkPiece = 4096;

class InkControl {
 public:
  InkControl() noexcept;
  InkControl(const InkControl&) = delete;
  InkControl& operator=(const InkControl&) = delete;
  ~InkControl();

  // Replaces the content by what the stream gives in `format`. Returns 0; the callback's error; 87
  // for a format that is not known or a count that cannot be; 8 without memory. The content is
  // then what it was.
  [[nodiscard]] std::uint32_t StreamIn(std::uintptr_t format,
                                       platform::EditStream* stream) noexcept;

  // Gives the content to the stream in `format`. Same results.
  [[nodiscard]] std::uint32_t StreamOut(std::uintptr_t format,
                                        platform::EditStream* stream) const noexcept;

 private:
  std::u16string text_;  // CR LF between paragraphs
};

// Number of controls that live.
[[nodiscard]] int INK_LiveControls() noexcept;

}  // namespace tamu::device

#endif  // TAMU_DEVICE_INK_INK_CONTROL_H_
