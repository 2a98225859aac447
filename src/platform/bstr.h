// platform/bstr.h - the platform's counted wide strings.
//   A counted string is UTF-16 text with its length in bytes in the four bytes before it and a
//   terminator behind it; null is the empty string. `BStr` owns one and frees it on every path.
//   Units      UTF-16 units, without the terminator.
#ifndef TAMU_PLATFORM_BSTR_H_
#define TAMU_PLATFORM_BSTR_H_

#include <cstdint>
#include <string_view>
#include <utility>

#include "platform/service.h"

namespace tamu::platform {

// A copy of a terminated text; null for a null text or when memory runs out.
extern Service<char16_t*(const char16_t* text)> SysAllocString;
// A string of `length` units, copied from `text` or, for a null `text`, left unset but for its
// terminator.
extern Service<char16_t*(const char16_t* text, std::uint32_t length)> SysAllocStringLen;

// Frees a counted string; null does nothing.
void SysFreeString(char16_t* string) noexcept;
// Its length in units; 0 for null.
[[nodiscard]] std::uint32_t SysStringLen(const char16_t* string) noexcept;
// Counted strings that live now, for tests.
[[nodiscard]] std::int64_t SysLiveStrings() noexcept;

class BStr {
 public:
  BStr() noexcept = default;
  explicit BStr(char16_t* owned) noexcept : string_(owned) {}
  BStr(BStr&& other) noexcept : string_(std::exchange(other.string_, nullptr)) {}
  BStr& operator=(BStr&& other) noexcept {
    if (this != &other) reset(other.release());
    return *this;
  }
  ~BStr() { SysFreeString(string_); }

  [[nodiscard]] char16_t* get() const noexcept { return string_; }
  // The text, "" for null.
  [[nodiscard]] const char16_t* c_str() const noexcept { return string_ ? string_ : u""; }
  [[nodiscard]] std::uint32_t size() const noexcept { return SysStringLen(string_); }
  [[nodiscard]] bool empty() const noexcept { return size() == 0; }
  [[nodiscard]] std::u16string_view view() const noexcept { return {c_str(), size()}; }

  void reset(char16_t* owned = nullptr) noexcept { SysFreeString(std::exchange(string_, owned)); }
  [[nodiscard]] char16_t* release() noexcept { return std::exchange(string_, nullptr); }
  // Where a platform function stores a string it gives away; what was held is freed first.
  [[nodiscard]] char16_t** put() noexcept {
    reset();
    return &string_;
  }

 private:
  char16_t* string_ = nullptr;
};

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_BSTR_H_
