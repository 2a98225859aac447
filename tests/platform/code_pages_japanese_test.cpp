// The JIS codes of code page 932's characters, for every code of the area that repeats others.
#include "platform/code_pages_support.h"
#include "platform/linux/code_pages/japanese_codes.h"

namespace tamu::platform::code_pages {
namespace {

char16_t UnitOfJis(std::uint16_t jis) {
  return UnitFromJis(static_cast<std::uint8_t>(jis >> 8), static_cast<std::uint8_t>(jis & 0xFF));
}

TEST(JisFromCode932, RepeatedCharactersHaveTheirOriginalsCode) {
  int codes = 0;
  for (int code = 0xFA40; code <= 0xFC4B; ++code) {
    const int trail = code & 0xFF;
    if (trail < 0x40 || trail == 0x7F || trail > 0xFC) continue;
    const char bytes[] = {static_cast<char>(code >> 8), static_cast<char>(trail)};
    const std::uint16_t jis = JisFromCode932(static_cast<std::uint16_t>(code));
    EXPECT_EQ(testing::Decode(932, std::string_view(bytes, 2)), std::u16string(1, UnitOfJis(jis)));
    ++codes;
  }
  EXPECT_EQ(388, codes);
}

TEST(JisFromCode932, BordersOfTheRows) {
  EXPECT_EQ(0x2121, JisFromCode932(0x8140));
  EXPECT_EQ(0x217E, JisFromCode932(0x819E));
  EXPECT_EQ(0x2221, JisFromCode932(0x819F));
  EXPECT_EQ(0x2160, JisFromCode932(0x8180));  // 7F is no trail byte
  EXPECT_EQ(0x5F21, JisFromCode932(0xE040));
  EXPECT_EQ(0x7E7E, JisFromCode932(0xEFFC));
  EXPECT_EQ(0, JisFromCode932(0xF040));
  EXPECT_EQ(0, JisFromCode932(0xF9FC));
}

}  // namespace
}  // namespace tamu::platform::code_pages
