// platform/linux/registry_value_text.h - one value of a registry export file, as text and as type
// and bytes.
//   `"name"="text"`, `"name"=dword:0000000a`, `"name"=hex(7):61,00`, `@=...` for the key's default
//   value, and
//   `"name"=-` for a removal. Long hexadecimal data goes on in the next line behind a backslash.
//   Units      offsets are UTF-16 units of the file's text.
//   Errors     a reason for people; null is success.
#ifndef TAMU_PLATFORM_LINUX_REGISTRY_VALUE_TEXT_H_
#define TAMU_PLATFORM_LINUX_REGISTRY_VALUE_TEXT_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tamu::platform {

struct RegistryData {
  std::uint32_t type = 0;
  std::vector<std::uint8_t>
      bytes;  // strings: UTF-16, least significant byte first, with their terminator
};

struct RegistryEntry {
  std::u16string name;  // empty for "@"
  bool removal = false;
  RegistryData data;
  std::size_t end = 0;  // behind the entry; blanks, a comment and the line end may follow. With an
                        // error: a place in the last line that belongs to the damaged entry
};

// The entry that starts at `start`, with a quote or "@".
[[nodiscard]] const char* ParseRegistryEntry(std::u16string_view text, std::size_t start,
                                             RegistryEntry& entry);

// The entry's text without a line end at its end; `newline` goes between its lines. A string that a
// quoted text cannot hold (line ends, lone surrogates, NULs inside) is written in hexadecimal,
// every other type with its bytes as they are.
[[nodiscard]] std::u16string FormatRegistryEntry(std::u16string_view name, const RegistryData& data,
                                                 std::u16string_view newline);

// The end of the line that holds `at`: the offset of its line feed, or the text's size.
[[nodiscard]] std::size_t LineFeedFrom(std::u16string_view text, std::size_t at) noexcept;
// The first offset from `at` on that is neither a space nor a tab.
[[nodiscard]] std::size_t SkipBlanks(std::u16string_view text, std::size_t at) noexcept;
// True when nothing but blanks and perhaps a comment follows in the line.
[[nodiscard]] bool RestIsBlank(std::u16string_view text, std::size_t at) noexcept;

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_LINUX_REGISTRY_VALUE_TEXT_H_
