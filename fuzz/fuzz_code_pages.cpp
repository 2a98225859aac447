// Every code page: what is measured is what is converted, nothing is written past a short buffer,
// and no text fails.
#include <array>
#include <vector>

#include "fuzz_check.h"
#include "platform/code_pages.h"
#include "platform/last_error.h"

namespace tamu::fuzz {
namespace {

using platform::MultiByteToWideChar;
using platform::WideCharToMultiByte;

constexpr std::uint32_t kHighestPage = 65001;

// The pages that can be converted, found by asking for each.
const std::vector<std::uint32_t>& ValidPages() {
  static const std::vector<std::uint32_t> pages = [] {
    std::vector<std::uint32_t> valid;
    for (std::uint32_t page = 1; page <= kHighestPage; ++page) {
      if (platform::IsValidCodePage(page) != 0) valid.push_back(page);
    }
    return valid;
  }();
  return pages;
}

std::int32_t SizeOf(const auto& container) { return static_cast<std::int32_t>(container.size()); }

// Conversion into blocks of exactly the size that is told: a write past them is seen by the
// sanitizer.
std::u16string Decode(std::uint32_t page, const std::string& bytes, std::size_t short_size) {
  const std::int32_t needed = MultiByteToWideChar(page, 0, bytes.data(), SizeOf(bytes), nullptr, 0);
  FUZZ_CHECK(needed > 0 || page == platform::kCpUtf7 || page >= 50220);
  if (needed == 0) return {};
  std::vector<char16_t> units(static_cast<std::size_t>(needed));
  FUZZ_CHECK(MultiByteToWideChar(page, 0, bytes.data(), SizeOf(bytes), units.data(), needed) ==
             needed);

  if (short_size != 0 && short_size < units.size()) {
    std::vector<char16_t> cut(short_size);
    FUZZ_CHECK(MultiByteToWideChar(page, 0, bytes.data(), SizeOf(bytes), cut.data(), SizeOf(cut)) ==
               0);
    FUZZ_CHECK(platform::GetLastError() == platform::kErrorInsufficientBuffer);
  }
  // The strict way accepts less, but what it accepts it reads the same.
  std::vector<char16_t> strict(units.size());
  const std::int32_t strict_count =
      MultiByteToWideChar(page, platform::kMbErrInvalidChars, bytes.data(), SizeOf(bytes),
                          strict.data(), SizeOf(strict));
  FUZZ_CHECK(strict_count == 0 || strict == units);
  return {units.begin(), units.end()};
}

std::string Encode(std::uint32_t page, const std::u16string& units, std::size_t short_size) {
  const auto convert = [&](char* out, std::int32_t size) {
    return WideCharToMultiByte(page, 0, units.data(), SizeOf(units), out, size, nullptr, nullptr);
  };
  const std::int32_t needed = convert(nullptr, 0);
  FUZZ_CHECK(needed > 0);
  std::vector<char> bytes(static_cast<std::size_t>(needed));
  FUZZ_CHECK(convert(bytes.data(), needed) == needed);
  if (short_size != 0 && short_size < bytes.size()) {
    std::vector<char> cut(short_size);
    FUZZ_CHECK(convert(cut.data(), SizeOf(cut)) == 0);
    FUZZ_CHECK(platform::GetLastError() == platform::kErrorInsufficientBuffer);
  }
  return {bytes.begin(), bytes.end()};
}

}  // namespace
}  // namespace tamu::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tamu::fuzz;
  const NothingLeaks leaks;
  FUZZ_CHECK(!ValidPages().empty());
  Input input(data, size);
  // 255 stands for every page, which the replayed files use.
  const std::uint8_t choice = input.Byte();
  const std::size_t short_size = input.Byte();
  const std::string bytes = input.Rest();
  if (bytes.empty()) return 0;
  const auto wide = AsWide(bytes);
  for (std::size_t i = 0; i < ValidPages().size(); ++i) {
    if (choice != 255 && choice % ValidPages().size() != i) continue;
    const std::uint32_t page = ValidPages()[i];
    const std::u16string decoded = Decode(page, bytes, short_size);
    if (!decoded.empty()) (void)Encode(page, decoded, short_size);
    if (!wide.empty()) (void)Decode(page, Encode(page, wide, short_size), short_size);
  }
  return 0;
}
