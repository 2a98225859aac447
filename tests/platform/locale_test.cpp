// GetLocaleInfoW: the ANSI code page from the registry and from the environment.
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "platform/code_pages.h"
#include "platform/last_error.h"
#include "platform/registry.h"

namespace tamu::platform {
namespace {

constexpr std::array<const char*, 3> kVariables = {"LC_ALL", "LC_CTYPE", "LANG"};
constexpr std::uint32_t kUntouched = 4711;
constexpr std::int32_t kNotFound = 2;
constexpr RegistryKey kKey = 99;

// The one value of the registry that these tests see.
struct StoredValue {
  std::int32_t status = kNotFound;
  std::uint32_t type = kRegSz;
  std::u16string text;
  std::uint32_t number = 0;
  int open_keys = 0;
};
StoredValue stored;

std::int32_t OpenStored(RegistryKey root, const char16_t* path, std::uint32_t, std::uint32_t,
                        RegistryKey* key) {
  if (root != kHkeyLocalMachine ||
      std::u16string_view(path) != u"Software\\Velmora\\BTConfig\\General") {
    return kNotFound;
  }
  *key = kKey;
  ++stored.open_keys;
  return 0;
}

std::int32_t QueryStored(RegistryKey key, const char16_t* name, std::uint32_t*, std::uint32_t* type,
                         std::uint8_t* data, std::uint32_t* size) {
  if (key != kKey || std::u16string_view(name) != u"AnsiCodePage") return kNotFound;
  if (stored.status != 0) return stored.status;
  const bool is_text = stored.type == kRegSz;
  const void* const value = is_text ? static_cast<const void*>(stored.text.data())
                                    : static_cast<const void*>(&stored.number);
  const auto length = static_cast<std::uint32_t>(is_text ? stored.text.size() * sizeof(char16_t)
                                                         : sizeof stored.number);
  *type = stored.type;
  const bool fits = *size >= length;
  *size = length;
  if (!fits) return 234;
  std::memcpy(data, value, length);
  return 0;
}

std::int32_t CloseStored(RegistryKey) {
  --stored.open_keys;
  return 0;
}

class Locale : public ::testing::Test {
 protected:
  Locale() {
    for (std::size_t i = 0; i < kVariables.size(); ++i) {
      if (const char* const value = std::getenv(kVariables[i])) saved_[i] = value;
      unsetenv(kVariables[i]);
    }
    stored = {};
  }
  ~Locale() override {
    for (std::size_t i = 0; i < kVariables.size(); ++i) {
      if (saved_[i]) {
        setenv(kVariables[i], saved_[i]->c_str(), 1);
      } else {
        unsetenv(kVariables[i]);
      }
    }
    EXPECT_EQ(0, stored.open_keys);
  }

  static std::string Page() {
    char16_t text[16] = {};
    SetLastError(kUntouched);
    const std::int32_t size =
        GetLocaleInfoW(kLocaleSystemDefault, kLocaleIDefaultAnsiCodePage, text, 16);
    EXPECT_EQ(kUntouched, GetLastError());
    std::string digits;
    for (std::int32_t i = 0; i + 1 < size; ++i) digits += static_cast<char>(text[i]);
    EXPECT_EQ(u'\0', text[digits.size()]);
    return digits;
  }
  static std::string PageOf(const char* locale) {
    setenv("LANG", locale, 1);
    return Page();
  }
  static void Store(std::u16string_view text) {
    stored.status = 0;
    stored.type = kRegSz;
    stored.text = text;
  }

 private:
  std::array<std::optional<std::string>, kVariables.size()> saved_;
  ScopedOverride<std::int32_t(RegistryKey, const char16_t*, std::uint32_t, std::uint32_t,
                              RegistryKey*)>
      open_{RegOpenKeyExW, &OpenStored};
  ScopedOverride<std::int32_t(RegistryKey, const char16_t*, std::uint32_t*, std::uint32_t*,
                              std::uint8_t*, std::uint32_t*)>
      query_{RegQueryValueExW, &QueryStored};
  ScopedOverride<std::int32_t(RegistryKey)> close_{RegCloseKey, &CloseStored};
};

TEST_F(Locale, NoneIsWestern) {
  EXPECT_EQ("1252", Page());
  EXPECT_EQ("1252", PageOf(""));
  EXPECT_EQ("1252", PageOf("C"));
  EXPECT_EQ("1252", PageOf("POSIX"));
}

TEST_F(Locale, Utf8InAnySpelling) {
  for (const char* locale :
       {"en_US.UTF-8", "en_US.utf8", "C.UTF-8", "ja_JP.UTF8@modifier", "UTF.utf-8"}) {
    EXPECT_EQ("65001", PageOf(locale)) << locale;
  }
}

TEST_F(Locale, FirstVariableThatIsNotEmptyCounts) {
  setenv("LANG", "ru_RU.KOI8-R", 1);
  EXPECT_EQ("20866", Page());
  setenv("LC_CTYPE", "pl_PL.ISO-8859-2", 1);
  EXPECT_EQ("28592", Page());
  setenv("LC_ALL", "", 1);
  EXPECT_EQ("28592", Page());
  setenv("LC_ALL", "C", 1);
  EXPECT_EQ("1252", Page());
}

TEST_F(Locale, CharsetsByName) {
  struct Row {
    const char* locale;
    const char* page;
  };
  static constexpr Row kRows[] = {
      {"de_DE.ISO-8859-1", "28591"},
      {"de_DE.iso885915@euro", "28605"},
      {"ja_JP.eucJP", "51932"},
      {"ja_JP.SJIS", "932"},
      {"ja_JP.Shift_JIS", "932"},
      {"zh_CN.GBK", "936"},
      {"zh_CN.GB2312", "936"},
      {"zh_CN.gb18030", "936"},
      {"zh_TW.BIG5", "950"},
      {"zh_HK.BIG5-HKSCS", "950"},
      {"ko_KR.EUC-KR", "51949"},
      {"ko_KR.CP949", "949"},
      {"ru_RU.CP1251", "1251"},
      {"th_TH.TIS-620", "874"},
      {"lt_LT.ISO-8859-13", "1257"},
      {"xx_XX.NO-SUCH", "1252"},
      {"de_DE.", "1252"},
      {"en_US.ANSI_X3.4-1968", "1252"},
  };
  for (const Row& row : kRows) EXPECT_EQ(row.page, PageOf(row.locale)) << row.locale;
}

TEST_F(Locale, LanguagesWithoutCharset) {
  struct Row {
    const char* locale;
    const char* page;
  };
  static constexpr Row kRows[] = {
      {"de_DE", "28591"}, {"de_DE@euro", "28605"}, {"de", "28591"},
      {"ja_JP", "51932"}, {"ko_KR", "51949"},      {"ru_RU", "28595"},
      {"ru_UA", "20866"}, {"el_GR@euro", "28597"}, {"zh_CN", "936"},
      {"zh_TW", "950"},   {"tr_TR", "28599"},      {"th_TH", "874"},
      {"hi_IN", "65001"}, {"en_IN", "65001"},      {"be_BY@latin", "65001"},
      {"be_BY", "1251"},  {"german", "1252"},      {"@euro", "1252"},
      {"/x/y", "1252"},
  };
  for (const Row& row : kRows) EXPECT_EQ(row.page, PageOf(row.locale)) << row.locale;
}

TEST_F(Locale, RegistryOutranksTheEnvironment) {
  setenv("LANG", "en_US.UTF-8", 1);
  Store(std::u16string_view(u"932\0", 4));
  EXPECT_EQ("932", Page());
  Store(u" 1250 ");  // without a terminator
  EXPECT_EQ("1250", Page());
  stored.type = kRegDword;
  stored.number = 949;
  EXPECT_EQ("949", Page());
}

TEST_F(Locale, RegistryValueThatIsNoNumberIsNotThere) {
  setenv("LANG", "en_US.UTF-8", 1);
  for (const std::u16string_view text :
       {u"", u" ", u"UTF-8", u"12a", u"-1", u"4294967296", u"12345678901",
        u"0000000000000000000000000000000000000000932"}) {
    Store(text);
    EXPECT_EQ("65001", Page());
  }
  stored.type = 3;
  EXPECT_EQ("65001", Page());
  stored.status = 5;
  EXPECT_EQ("65001", Page());
}

TEST_F(Locale, RegistryThatFailsLeavesTheEnvironment) {
  setenv("LANG", "en_US.UTF-8", 1);
  Store(u"932");
  const ScopedFailure failure(RegOpenKeyExW);
  char16_t text[8] = {};
  EXPECT_EQ(6, GetLocaleInfoW(kLocaleSystemDefault, kLocaleIDefaultAnsiCodePage, text, 8));
  EXPECT_EQ(std::u16string_view(u"65001"), std::u16string_view(text));
}

TEST_F(Locale, CapacityCountsTheTerminator) {
  setenv("LANG", "en_US.UTF-8", 1);
  char16_t text[8] = {u'#', u'#', u'#', u'#', u'#', u'#', u'#', u'#'};
  EXPECT_EQ(6, GetLocaleInfoW(kLocaleSystemDefault, kLocaleIDefaultAnsiCodePage, nullptr, 0));
  for (std::int32_t capacity = 1; capacity < 6; ++capacity) {
    SetLastError(kUntouched);
    EXPECT_EQ(0, GetLocaleInfoW(kLocaleSystemDefault, kLocaleIDefaultAnsiCodePage, text, capacity));
    EXPECT_EQ(kErrorInsufficientBuffer, GetLastError());
  }
  EXPECT_EQ(6, GetLocaleInfoW(kLocaleSystemDefault, kLocaleIDefaultAnsiCodePage, text, 6));
  EXPECT_EQ(std::u16string(u"65001\0##", 8), std::u16string(text, 8));
}

TEST_F(Locale, RefusesWhatItDoesNotKnow) {
  char16_t text[8] = {};
  const auto error = [&](std::uint32_t locale, std::uint32_t property, char16_t* out,
                         std::int32_t capacity) {
    SetLastError(kUntouched);
    EXPECT_EQ(0, GetLocaleInfoW(locale, property, out, capacity));
    return GetLastError();
  };
  EXPECT_EQ(kErrorInvalidParameter, error(0x0409, kLocaleIDefaultAnsiCodePage, text, 8));
  EXPECT_EQ(kErrorInvalidFlags, error(kLocaleSystemDefault, 0x1009, text, 8));
  EXPECT_EQ(kErrorInvalidParameter,
            error(kLocaleSystemDefault, kLocaleIDefaultAnsiCodePage, nullptr, 8));
  EXPECT_EQ(kErrorInvalidParameter,
            error(kLocaleSystemDefault, kLocaleIDefaultAnsiCodePage, text, -1));
}

TEST_F(Locale, FailsThroughTheSeam) {
  char16_t text[8] = {};
  const ScopedFailure failure(GetLocaleInfoW, 1, kErrorNotEnoughMemory);
  EXPECT_EQ(0, GetLocaleInfoW(kLocaleSystemDefault, kLocaleIDefaultAnsiCodePage, text, 8));
  EXPECT_EQ(kErrorNotEnoughMemory, GetLastError());
}

}  // namespace
}  // namespace tamu::platform
