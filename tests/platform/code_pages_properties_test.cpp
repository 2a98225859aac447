// What holds for every page and every text: measuring tells the truth, short buffers hold a prefix
// and nothing is written behind it, no text fails without flags.
#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "platform/code_pages_support.h"

namespace tamu::platform::testing {
namespace {

constexpr int kTextsPerPage = 60;
constexpr std::size_t kLongestText = 28;

// Random text that meets the pages' own syntax often: escape sequences, shifts, lead bytes, ASCII
// stretches.
class TextMaker {
 public:
  std::string Bytes() {
    static const std::vector<std::string> kPieces = {
        "\x1B$B",   "\x1B(B", "\x1B(I", "\x1B$)C",    "\x0E", "\x0F",         "~{",
        "~}",       "~~",     "~\n",    "+",          "-",    "\xE2\x82\xAC", "\xF0\x9F\x98\x80",
        "\xED\xA0", "\x8E",   "\x8F",   "abcdefghij", "12"};
    std::string text;
    const std::size_t length = 1 + Below(kLongestText);
    while (text.size() < length) {
      switch (Below(4)) {
        case 0:
          text += kPieces[Below(kPieces.size())];
          break;
        case 1:
          text += static_cast<char>(0x21 + Below(0x5E));
          break;
        default:
          text += static_cast<char>(Below(256));
      }
    }
    return text;
  }

  // Units of all kinds; for most pages few of the last kind exist.
  std::u16string Units() {
    std::u16string text;
    const std::size_t length = 1 + Below(kLongestText);
    while (text.size() < length) {
      switch (Below(6)) {
        case 0:
          text += static_cast<char16_t>(0x20 + Below(0x60));
          break;
        case 1:
          text += static_cast<char16_t>(0x80 + Below(0x500));
          break;
        case 2:
          text += static_cast<char16_t>(0x3000 + Below(0x100));
          break;
        case 3:
          text += static_cast<char16_t>(0x4E00 + Below(0x5200));
          break;
        case 4:
          text += static_cast<char16_t>(0xFF60 + Below(0x40));
          break;
        default:
          text += static_cast<char16_t>(Below(0x10000));
      }
    }
    return text;
  }

  std::size_t Below(std::size_t limit) { return engine_() % limit; }

 private:
  std::mt19937 engine_{20030715};
};

// `buffer` has room for `capacity` and is longer. It has to hold the start of `whole`, and be
// untouched behind that.
template <typename Text>
void ExpectPrefix(const Text& whole, const Text& buffer, std::size_t capacity, std::size_t step,
                  typename Text::value_type untouched) {
  const auto differs = std::mismatch(whole.begin(), whole.end(), buffer.begin()).second;
  const auto written = static_cast<std::size_t>(differs - buffer.begin());
  EXPECT_TRUE(
      std::all_of(differs, buffer.end(), [untouched](auto value) { return value == untouched; }));
  EXPECT_LE(written, capacity);
  EXPECT_LT(capacity - written, step) << "more would have fitted";
}

void CheckDecoding(std::uint32_t page) {
  constexpr char16_t kMark =
      0xD83C;  // decodes from nothing but UTF-7, and there not in these texts
  constexpr std::size_t kLongestCharacter = 2;
  TextMaker maker;
  for (int round = 0; round < kTextsPerPage; ++round) {
    const std::string bytes = maker.Bytes();
    const std::u16string whole = Decode(page, bytes);
    ASSERT_EQ(kUntouched, GetLastError()) << ::testing::PrintToString(bytes);
    for (std::size_t capacity = 1; capacity < whole.size(); ++capacity) {
      std::u16string buffer(whole.size() + 4, kMark);
      ASSERT_EQ(0, MultiByteToWideChar(page, 0, bytes.data(), Size(bytes.size()), buffer.data(),
                                       Size(capacity)));
      ASSERT_EQ(kErrorInsufficientBuffer, GetLastError());
      ExpectPrefix(whole, buffer, capacity, kLongestCharacter, kMark);
    }
  }
}

void CheckEncoding(std::uint32_t page) {
  constexpr char kMark = '\x05';
  constexpr std::size_t kLongestPiece = 4;  // a UTF-8 character, or a designator
  TextMaker maker;
  for (int round = 0; round < kTextsPerPage; ++round) {
    const std::u16string units = maker.Units();
    const std::string whole = Encode(page, units);
    ASSERT_EQ(kUntouched, GetLastError()) << ::testing::PrintToString(units);
    for (std::size_t capacity = 1; capacity < whole.size(); ++capacity) {
      std::string buffer(whole.size() + 4, kMark);
      ASSERT_EQ(0, WideCharToMultiByte(page, 0, units.data(), Size(units.size()), buffer.data(),
                                       Size(capacity), nullptr, nullptr));
      ASSERT_EQ(kErrorInsufficientBuffer, GetLastError());
      ExpectPrefix(whole, buffer, capacity, kLongestPiece, kMark);
    }
  }
}

void CheckStrictDecoding(std::uint32_t page) {
  TextMaker maker;
  for (int round = 0; round < kTextsPerPage; ++round) {
    const std::string bytes = maker.Bytes();
    const std::u16string strict = Decode(page, bytes, kMbErrInvalidChars);
    const std::uint32_t error = GetLastError();
    if (error == kUntouched) {
      EXPECT_EQ(Decode(page, bytes), strict);
    } else {
      const bool knows_flag = page != 65000 && !(page >= 50220 && page <= 50225);
      EXPECT_EQ(knows_flag ? kErrorNoUnicodeTranslation : kErrorInvalidFlags, error);
    }
  }
}

// Whole texts of characters that the page has: states, shifts and ASCII stretches between them.
void CheckRoundTrips(std::uint32_t page) {
  TextMaker maker;
  std::vector<char16_t> characters;
  for (int unit = 0x20; unit <= 0xFFFF; ++unit) {
    const std::u16string text(1, static_cast<char16_t>(unit));
    if (unit >= 0xD800 && unit <= 0xDFFF) continue;
    if (Decode(page, Encode(page, text)) == text) characters.push_back(text[0]);
  }
  ASSERT_GE(characters.size(), 96U);
  for (int round = 0; round < 10 * kTextsPerPage; ++round) {
    std::u16string text;
    for (std::size_t length = 1 + maker.Below(kLongestText); text.size() < length;) {
      text += maker.Below(2) == 0 ? static_cast<char16_t>(u'A' + maker.Below(26))
                                  : characters[maker.Below(characters.size())];
    }
    ASSERT_EQ(text, Decode(page, Encode(page, text)));
  }
}

// One case for all pages: a test program that starts once a page would take longer than its tests.
void ForEveryPage(void (*check)(std::uint32_t)) {
  for (const std::uint32_t page : kAllPages) {
    SCOPED_TRACE(page);
    check(page);
    if (::testing::Test::HasFatalFailure()) return;
  }
}

TEST(EveryPage, DecodesAnyTextAndFillsShortBuffersAsFarAsTheyGo) { ForEveryPage(&CheckDecoding); }
TEST(EveryPage, EncodesAnyTextAndFillsShortBuffersAsFarAsTheyGo) { ForEveryPage(&CheckEncoding); }
TEST(EveryPage, StrictEqualsLooseOrFails) { ForEveryPage(&CheckStrictDecoding); }
TEST(EveryPage, TextsOfItsOwnCharactersComeBack) { ForEveryPage(&CheckRoundTrips); }

}  // namespace
}  // namespace tamu::platform::testing
