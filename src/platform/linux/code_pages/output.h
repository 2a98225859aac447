// platform/linux/code_pages/output.h - where a conversion puts its result: a buffer of limited
// size, or only a count.
//   Ownership  the buffer is the caller's; null measures, and then nothing is ever full.
//   Errors     a piece that does not fit is not written, and marks the output full: nothing is
//   written after it.
#ifndef TAMU_PLATFORM_LINUX_CODE_PAGES_OUTPUT_H_
#define TAMU_PLATFORM_LINUX_CODE_PAGES_OUTPUT_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <limits>

#include "platform/linux/code_pages/ascii.h"
#include "platform/linux/code_pages/page.h"

namespace tamu::platform::code_pages {

template <typename To>
class Output {
 public:
  Output(To* buffer, std::size_t capacity) noexcept
      : buffer_(buffer), capacity_(buffer ? capacity : std::numeric_limits<std::size_t>::max()) {}

  // True when `size` more fit; else the output is full from now on.
  [[nodiscard]] bool Reserve(std::size_t size) noexcept {
    if (capacity_ - count_ < size) full_ = true;
    return !full_;
  }

  void Put(To value) noexcept {
    if (!Reserve(1)) return;
    if (buffer_) buffer_[count_] = value;
    ++count_;
  }

  // All of `values` or none.
  void Put(std::initializer_list<To> values) noexcept {
    if (!Reserve(values.size())) return;
    if (buffer_) std::copy(values.begin(), values.end(), buffer_ + count_);
    count_ += values.size();
  }

  // Copies the ASCII characters that `text` starts with; returns how many there were that fitted.
  template <typename From>
  std::size_t PutAscii(const From* text, std::size_t size) noexcept {
    size = std::min(size, capacity_ - count_);
    size = buffer_ ? CopyAscii(text, size, buffer_ + count_) : CountAscii(text, size);
    count_ += size;
    return size;
  }

  [[nodiscard]] bool full() const noexcept { return full_; }
  [[nodiscard]] Outcome Result() const noexcept {
    return {count_, full_ ? kErrorInsufficientBuffer : kErrorSuccess};
  }

 private:
  To* buffer_;
  std::size_t capacity_;
  std::size_t count_ = 0;
  bool full_ = false;
};

// Bytes of a code, which is a byte or lead byte * 256 + trail byte.
inline void PutCode(std::uint16_t code, Output<char>& out) noexcept {
  if (code < 0x100) {
    out.Put(static_cast<char>(code));
  } else {
    out.Put({static_cast<char>(code >> 8), static_cast<char>(code & 0xFF)});
  }
}

// The replacement of an unmapped unit. `lead` says whether the default character is a lead byte,
// whose trail byte then belongs to it. It is the caller's text and goes out as it is.
inline void PutDefault(EncodeJob& job, Output<char>& out, bool lead = false) noexcept {
  job.used_default = true;
  if (!job.default_char) {
    out.Put('?');
  } else if (lead && job.default_char[1] != '\0') {
    out.Put({job.default_char[0], job.default_char[1]});
  } else {
    out.Put(job.default_char[0]);
  }
}

}  // namespace tamu::platform::code_pages

#endif  // TAMU_PLATFORM_LINUX_CODE_PAGES_OUTPUT_H_
