// platform/linux/locale.cpp - GetLocaleInfoW: the ANSI code page, from the registry or from the
// environment.
//   A value in the registry outranks the environment, of which the first of LC_ALL, LC_CTYPE and
//   LANG that is not empty counts: LANGUAGE_TERRITORY.CHARSET@MODIFIER. Nothing is kept between
//   calls.
#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>
#include <optional>
#include <string_view>

#include "platform/code_pages.h"
#include "platform/last_error.h"
#include "platform/registry.h"

namespace tamu::platform {
namespace {

constexpr std::uint32_t kDefaultPage = 1252;
constexpr std::size_t kMostDigits = std::numeric_limits<std::uint32_t>::digits10 + 1;

constexpr const char16_t* kSettingsKey = u"Software\\Velmora\\BTConfig\\General";
constexpr const char16_t* kAnsiCodePageValue = u"AnsiCodePage";

// Charsets by name: lower case letters and digits only. Those without a page of their own have the
// nearest one.
struct CharsetRow {
  std::string_view name;
  std::uint32_t page;
};
constexpr CharsetRow kCharsets[] = {
    {"utf8", kCpUtf8},
    {"utf7", kCpUtf7},
    {"ansix341968", 1252},
    {"ansix341986", 1252},
    {"ascii", 1252},
    {"usascii", 1252},
    {"646", 1252},
    {"iso646us", 1252},
    {"iso88591", 28591},
    {"iso88592", 28592},
    {"iso88593", 28593},
    {"iso88594", 28594},
    {"iso88595", 28595},
    {"iso88596", 28596},
    {"iso88597", 28597},
    {"iso88598", 28598},
    {"iso88599", 28599},
    {"iso885911", 874},
    {"iso885913", 1257},
    {"iso885915", 28605},
    {"latin1", 28591},
    {"latin2", 28592},
    {"latin9", 28605},
    {"koi8r", 20866},
    {"koi8u", 20866},
    {"cp1250", 1250},
    {"cp1251", 1251},
    {"cp1252", 1252},
    {"cp1253", 1253},
    {"cp1254", 1254},
    {"cp1255", 1255},
    {"cp1256", 1256},
    {"cp1257", 1257},
    {"cp1258", 1258},
    {"windows1250", 1250},
    {"windows1251", 1251},
    {"windows1252", 1252},
    {"windows1253", 1253},
    {"windows1254", 1254},
    {"windows1255", 1255},
    {"windows1256", 1256},
    {"windows1257", 1257},
    {"windows1258", 1258},
    {"microsoftcp1251", 1251},
    {"microsoftcp1255", 1255},
    {"microsoftcp1256", 1256},
    {"cp852", 852},
    {"ibm852", 852},
    {"cp866", 866},
    {"ibm866", 866},
    {"cp874", 874},
    {"windows874", 874},
    {"tis620", 874},
    {"cp932", 932},
    {"windows31j", 932},
    {"sjis", 932},
    {"shiftjis", 932},
    {"eucjp", 51932},
    {"ujis", 51932},
    {"eucjpms", 51932},
    {"cp936", 936},
    {"gbk", 936},
    {"gb2312", 936},
    {"euccn", 936},
    {"gb18030", 936},
    {"cp949", 949},
    {"uhc", 949},
    {"euckr", 51949},
    {"cp950", 950},
    {"big5", 950},
    {"big5hkscs", 950},
};

// The charsets of locales that name none, by language and territory, else by language. What is not
// listed has only ever been written in UTF-8, or in a charset that has no page.
struct LanguageRow {
  std::string_view language;
  std::uint32_t page;
};
constexpr LanguageRow kLanguages[] = {
    {"af", 28591},      {"an", 28605},      {"ar", 28596},      {"ar_IN", kCpUtf8},
    {"ar_SS", kCpUtf8}, {"ast", 28605},     {"be", 1251},       {"bg", 1251},
    {"br", 28591},      {"bs", 28592},      {"ca", 28591},      {"ca_AD", 28605},
    {"ca_FR", 28605},   {"ca_IT", 28605},   {"cs", 28592},      {"cy", 28591},
    {"da", 28591},      {"de", 28591},      {"el", 28597},      {"en", 28591},
    {"en_AG", kCpUtf8}, {"en_IL", kCpUtf8}, {"en_IN", kCpUtf8}, {"en_NG", kCpUtf8},
    {"en_ZM", kCpUtf8}, {"es", 28591},      {"es_CU", kCpUtf8}, {"et", 28591},
    {"eu", 28591},      {"fi", 28591},      {"fo", 28591},      {"fr", 28591},
    {"ga", 28591},      {"gd", 28605},      {"gl", 28591},      {"gv", 28591},
    {"he", 28598},      {"hr", 28592},      {"hsb", 28592},     {"hu", 28592},
    {"id", 28591},      {"is", 28591},      {"it", 28591},      {"iw", 28598},
    {"ja", 51932},      {"kl", 28591},      {"ko", 51949},      {"ku", 28599},
    {"kw", 28591},      {"lt", 1257},       {"lv", 1257},       {"mg", 28605},
    {"mi", 1257},       {"mk", 28595},      {"ms", 28591},      {"mt", 28593},
    {"nb", 28591},      {"nl", 28591},      {"nl_AW", kCpUtf8}, {"nn", 28591},
    {"no", 28591},      {"oc", 28591},      {"om", 28591},      {"om_ET", kCpUtf8},
    {"pl", 28592},      {"pt", 28591},      {"ro", 28592},      {"ru", 28595},
    {"ru_UA", 20866},   {"sk", 28592},      {"sl", 28592},      {"so", 28591},
    {"so_ET", kCpUtf8}, {"sq", 28591},      {"sq_MK", kCpUtf8}, {"st", 28591},
    {"sv", 28591},      {"th", 874},        {"tl", 28591},      {"tr", 28599},
    {"uk", 20866},      {"uz", 28591},      {"wa", 28591},      {"xh", 28591},
    {"yi", 1255},       {"zh_CN", 936},     {"zh_HK", 950},     {"zh_SG", 936},
    {"zh_TW", 950},     {"zu", 28591},
};

constexpr bool IsDigit(char32_t c) { return c >= U'0' && c <= U'9'; }
constexpr bool IsLower(char c) { return c >= 'a' && c <= 'z'; }
constexpr char ToLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

// True when `name` spells the charset `plain`: without regard to case and to anything but letters
// and digits.
bool IsCharset(std::string_view name, std::string_view plain) {
  for (const char c : name) {
    const char lower = ToLower(c);
    if (!IsLower(lower) && !IsDigit(static_cast<unsigned char>(lower))) continue;
    if (plain.empty() || plain.front() != lower) return false;
    plain.remove_prefix(1);
  }
  return plain.empty();
}

std::uint32_t PageOfCharset(std::string_view charset) {
  for (const CharsetRow& row : kCharsets) {
    if (IsCharset(charset, row.name)) return row.page;
  }
  return kDefaultPage;
}

std::optional<std::uint32_t> FindLanguage(std::string_view language) {
  for (const LanguageRow& row : kLanguages) {
    if (row.language == language) return row.page;
  }
  return std::nullopt;
}

// `locale` is LANGUAGE_TERRITORY or LANGUAGE. Modifiers other than "euro" came up with UTF-8.
std::uint32_t PageOfLanguage(std::string_view locale, std::string_view modifier) {
  const std::string_view language = locale.substr(0, locale.find('_'));
  const bool is_language = (language.size() == 2 || language.size() == 3) &&
                           std::all_of(language.begin(), language.end(), IsLower);
  if (!is_language) return kDefaultPage;
  if (!modifier.empty() && modifier != "euro") return kCpUtf8;
  std::optional<std::uint32_t> page = FindLanguage(locale);
  if (!page) page = FindLanguage(language);
  constexpr std::uint32_t kLatin1 = 28591;
  constexpr std::uint32_t kLatin9 = 28605;
  if (page == kLatin1 && modifier == "euro") return kLatin9;
  return page.value_or(kCpUtf8);
}

std::uint32_t PageOfLocale(std::string_view locale) {
  const std::size_t at = locale.find('@');
  const std::string_view modifier =
      at == std::string_view::npos ? std::string_view() : locale.substr(at + 1);
  locale = locale.substr(0, at);
  const std::size_t dot = locale.find('.');
  if (dot != std::string_view::npos) return PageOfCharset(locale.substr(dot + 1));
  return PageOfLanguage(locale, modifier);
}

std::uint32_t PageOfEnvironment() {
  for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* const locale = std::getenv(name);
    if (locale && *locale) return PageOfLocale(locale);
  }
  return kDefaultPage;
}

// A decimal number, blanks around it allowed.
std::optional<std::uint32_t> ParseNumber(std::u16string_view text) {
  constexpr std::u16string_view kBlanks = u" \t";
  text = text.substr(0, text.find(u'\0'));
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::u16string_view::npos) return std::nullopt;
  text = text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
  if (text.size() > kMostDigits) return std::nullopt;
  std::uint64_t number = 0;
  for (const char16_t c : text) {
    if (!IsDigit(c)) return std::nullopt;
    number = number * 10 + (c - u'0');
  }
  if (number > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
  return static_cast<std::uint32_t>(number);
}

// The value of an opened key; a value of another type, or that is no number, is not there.
std::optional<std::uint32_t> QueryNumber(RegistryKey key, const char16_t* name) {
  std::array<char16_t, 32> data{};
  std::uint32_t size = sizeof data;
  std::uint32_t type = 0;
  if (RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<std::uint8_t*>(data.data()),
                       &size) != 0) {
    return std::nullopt;
  }
  if (type == kRegSz && size <= sizeof data) {
    return ParseNumber(std::u16string_view(data.data(), size / sizeof(char16_t)));
  }
  std::uint32_t number = 0;
  if (type != kRegDword || size != sizeof number) return std::nullopt;
  std::memcpy(&number, data.data(), sizeof number);
  return number;
}

std::optional<std::uint32_t> PageOfRegistry() {
  RegistryKey key = 0;
  if (RegOpenKeyExW(kHkeyLocalMachine, kSettingsKey, 0, kKeyRead, &key) != 0) return std::nullopt;
  const std::optional<std::uint32_t> page = QueryNumber(key, kAnsiCodePageValue);
  RegCloseKey(key);
  return page;
}

std::int32_t Fail(std::uint32_t error) {
  SetLastError(error);
  return 0;
}

std::int32_t SystemGetLocaleInfoW(std::uint32_t locale, std::uint32_t property, char16_t* text,
                                  std::int32_t capacity) {
  if (capacity < 0 || (capacity > 0 && !text)) return Fail(kErrorInvalidParameter);
  if (locale != kLocaleSystemDefault) return Fail(kErrorInvalidParameter);
  if (property != kLocaleIDefaultAnsiCodePage) return Fail(kErrorInvalidFlags);
  const std::optional<std::uint32_t> configured = PageOfRegistry();
  const std::uint32_t page = configured ? *configured : PageOfEnvironment();
  std::array<char, kMostDigits> digits{};
  const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), page).ptr;
  const auto length = static_cast<std::int32_t>(end - digits.data());
  if (capacity == 0) return length + 1;
  if (capacity <= length) return Fail(kErrorInsufficientBuffer);
  std::copy(digits.data(), digits.data() + length, text);
  text[length] = u'\0';
  return length + 1;
}

}  // namespace

constinit Service<std::int32_t(std::uint32_t, std::uint32_t, char16_t*, std::int32_t)>
    GetLocaleInfoW{"GetLocaleInfoW", &SystemGetLocaleInfoW, 0};

}  // namespace tamu::platform
