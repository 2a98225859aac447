#include "text/charset.h"

#include <array>
#include <cstring>
#include <optional>

#include "config/config.h"
#include "core/log.h"
#include "core/memory.h"
#include "platform/code_pages.h"
#include "text/string_tools.h"
#include "text/utf8.h"

namespace tamu {
namespace {

struct CharsetRow {
  std::string_view name;
  std::uint32_t code_page;
};

// Searched from the top in both directions. The doubles and the odd pairs belong to it:
// "ISO-8859-1" reads as 1252, and 1252 is named "US-ASCII", 932 "SHIFT-JIS", 51932 "X-EUC".
constexpr CharsetRow kCharsets[] = {
    {"UTF-8", 65001},
    {"US-ASCII", 1252},
    {"SHIFT-JIS", 932},
    {"SJIS", 932},
    {"BIG5", 950},
    {"UTF-7", 65000},
    {"DIN_66003", 20106},
    {"NS_4551-1", 20108},
    {"SEN_850200_B", 20107},
    {"_AUTODETECT", 50932},
    {"_AUTODETECT_KR", 50949},
    {"CSISO2022JP", 50221},
    {"EUC-KR", 51949},
    {"GB2312", 936},
    {"HZ-GB-2312", 52936},
    {"IBM852", 852},
    {"IBM866", 866},
    {"IRV", 20105},
    {"ISO-2022-JP", 50220},
    {"ISO-2022-JP", 50222},
    {"ISO-2022-KR", 50225},
    {"ISO-8859-1", 1252},
    {"ISO-8859-1", 28591},
    {"ISO-8859-2", 28592},
    {"ISO-8859-3", 28593},
    {"ISO-8859-4", 28594},
    {"ISO-8859-5", 28595},
    {"ISO-8859-6", 28596},
    {"ISO-8859-7", 28597},
    {"ISO-8859-8", 28598},
    {"ISO-8859-9", 28599},
    {"ISO-8859-15", 28605},
    {"KOI8-R", 20866},
    {"KS_C_5601", 949},
    {"WINDOWS-1250", 1250},
    {"WINDOWS-1251", 1251},
    {"WINDOWS-1252", 1252},
    {"WINDOWS-1253", 1253},
    {"WINDOWS-1254", 1254},
    {"WINDOWS-1255", 1255},
    {"WINDOWS-1256", 1256},
    {"WINDOWS-1257", 1257},
    {"WINDOWS-1258", 1258},
    {"WINDOWS-874", 874},
    {"X-EUC", 51932},
    {"EUC-JP", 51932},
};
static_assert(std::size(kCharsets) == 46);

struct SettledCodePages {
  std::optional<std::uint32_t> input;
  std::optional<std::uint32_t> output;
  std::optional<std::uint32_t> native;
  const char* output_name = nullptr;
};
constinit SettledCodePages g_settled;

std::uint32_t QueryNativeCodePage() noexcept {
  std::array<char16_t, 10> digits{};
  if (platform::GetLocaleInfoW(platform::kLocaleSystemDefault,
                               platform::kLocaleIDefaultAnsiCodePage, digits.data(),
                               static_cast<std::int32_t>(digits.size())) == 0) {
    return 0;
  }
  std::uint32_t code_page = 0;
  for (const char16_t digit : digits) {
    if (digit < u'0' || digit > u'9') break;
    code_page = code_page * 10 + (digit - u'0');
  }
  return code_page;
}

struct DefaultCharset {
  const char* configured;  // "" when nothing is
  std::uint32_t code_page_without;
  bool is_input;
};

std::uint32_t Settle(const DefaultCharset& charset) noexcept {
  if (*charset.configured == '\0') return charset.code_page_without;
  const std::uint32_t known = CHARSET_FromName(charset.configured);
  if (known != 0) return known;
  if (std::strcmp(charset.configured, "NATIVE") != 0) {
    if (charset.is_input) {
      LOG_Error("TAMU:  Registry input CHARSET '%s' not valid, using native codepage",
                charset.configured);
    } else {
      LOG_Error("TAMU:  Registry output CHARSET '%s' not valid, using native codepage",
                charset.configured);
    }
  }
  return CHARSET_GetNativeCodePage();
}

// Converts by the platform's function, measuring first.
void ConvertByPlatform(std::uint32_t code_page, const char* bytes,
                       platform::BStr* result) noexcept {
  const std::int32_t units = platform::MultiByteToWideChar(code_page, 0, bytes, -1, nullptr, 0);
  if (units <= 1) return;
  platform::BStr wide(platform::SysAllocStringLen(nullptr, static_cast<std::uint32_t>(units - 1)));
  if (wide.get() == nullptr) return;
  if (platform::MultiByteToWideChar(code_page, 0, bytes, -1, wide.get(), units) == 0) return;
  *result = std::move(wide);
}

void ConvertUtf8(const char* bytes, platform::BStr* result) noexcept {
  const std::size_t length = std::strlen(bytes);
  MemPtr<char16_t> units(static_cast<char16_t*>(MEM_Alloc((length + 1) * sizeof(char16_t))));
  if (!units) return;
  const std::size_t count = UTF8_ToWide(bytes, -1, units.get(), length + 1);
  result->reset(platform::SysAllocStringLen(units.get(), static_cast<std::uint32_t>(count)));
}

}  // namespace

std::uint32_t CHARSET_FromName(std::string_view name) noexcept {
  for (const CharsetRow& row : kCharsets) {
    if (STR_EqualNoCase(row.name, name)) return row.code_page;
  }
  return 0;
}

const char* CHARSET_ToName(std::uint32_t code_page) noexcept {
  for (const CharsetRow& row : kCharsets) {
    if (row.code_page == code_page) return row.name.data();
  }
  return nullptr;
}

std::uint32_t CHARSET_GetNativeCodePage() noexcept {
  if (!g_settled.native) g_settled.native = QueryNativeCodePage();
  return *g_settled.native;
}

std::uint32_t CHARSET_GetInputCodePage() noexcept {
  if (!g_settled.input) {
    ConfigBlock block;
    CONFIG_Init(block);
    // Without the key the defaults stand.
    static_cast<void>(CONFIG_Read(block));
    g_settled.input = Settle({block.default_input_charset, kCodePageWindows1252, true});
  }
  return *g_settled.input;
}

std::uint32_t CHARSET_GetOutputCodePage() noexcept {
  if (!g_settled.output) {
    ConfigBlock block;
    CONFIG_Init(block);
    // Without the key the defaults stand.
    static_cast<void>(CONFIG_Read(block));
    g_settled.output = Settle({block.default_output_charset, kCodePageUtf8, false});
    g_settled.output_name =
        *g_settled.output != kCodePageWindows1252 ? CHARSET_ToName(*g_settled.output) : nullptr;
  }
  return *g_settled.output;
}

const char* CHARSET_GetOutputName() noexcept {
  static_cast<void>(CHARSET_GetOutputCodePage());
  return g_settled.output_name;
}

void CHARSET_ToWide(std::uint32_t code_page, const char* bytes, platform::BStr* result) noexcept {
  result->reset();
  if (platform::IsValidCodePage(code_page) != 0) {
    ConvertByPlatform(code_page, bytes, result);
  } else if (code_page != kCodePageUtf8) {
    ConvertByPlatform(platform::kCpAcp, bytes, result);
  } else {
    ConvertUtf8(bytes, result);
  }
}

void CHARSET_Reset() noexcept { g_settled = SettledCodePages{}; }

}  // namespace tamu
