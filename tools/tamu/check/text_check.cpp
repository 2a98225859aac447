// Bytes as text: quoted-printable codes and character sets.
#include <algorithm>
#include <array>
#include <cstring>

#include "check/value_check.h"
#include "platform/code_pages.h"
#include "platform/last_error.h"
#include "text/charset.h"
#include "text/property.h"
#include "text/quoted_printable.h"
#include "text/string_tools.h"

namespace tamu::tool {
namespace {

constexpr std::size_t kCodeSize = 3;  // "=3D"

bool IsAscii(std::string_view bytes) noexcept {
  return std::all_of(bytes.begin(), bytes.end(),
                     [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

// Whether the platform takes all of the bytes for characters. Code pages that cannot be asked are
// taken to.
bool Decodes(std::uint32_t code_page, std::string_view bytes) noexcept {
  if (bytes.empty()) return true;
  const auto size = static_cast<std::int32_t>(bytes.size());
  const std::int32_t units = platform::MultiByteToWideChar(code_page, platform::kMbErrInvalidChars,
                                                           bytes.data(), size, nullptr, 0);
  return units != 0 || platform::GetLastError() != platform::kErrorNoUnicodeTranslation;
}

// The first "=" that begins no code, to the end of what would be one; "" when there is none.
std::string_view FindBadCode(std::string_view raw) noexcept {
  for (std::size_t at = raw.find('='); at != std::string_view::npos; at = raw.find('=', at)) {
    const std::string_view code = raw.substr(at, kCodeSize);
    if (code.size() < kCodeSize || HEX_DigitValue(code[1]) > 15 || HEX_DigitValue(code[2]) > 15) {
      return code;
    }
    at += kCodeSize;
  }
  return {};
}

}  // namespace

std::uint32_t CHARSET_OfParam(const char* param_text) noexcept {
  std::array<char, kParamValueLength + 1> name;
  PARAM_GetValue(param_text, name.data(), name.size());
  const std::uint32_t code_page = CHARSET_FromName(name.data());
  return code_page != 0 ? code_page : CHARSET_GetInputCodePage();
}

TextReading CHARSET_Check(CheckWalk* walk, const char* param_text) {
  TextReading reading;
  reading.announced = true;
  std::array<char, kParamValueLength + 1> name;
  PARAM_GetValue(param_text, name.data(), name.size());
  reading.code_page = CHARSET_FromName(name.data());
  if (reading.code_page == 0) {
    reading.code_page = CHARSET_GetInputCodePage();
    walk->Add(FindingKind::kUnknownCharset,
              {SHOWN_Text(name.data()), std::to_string(reading.code_page)});
  } else if (reading.code_page != kCodePageUtf8 &&
             platform::IsValidCodePage(reading.code_page) == 0) {
    walk->Add(FindingKind::kUnavailableCharset, {SHOWN_Text(name.data())});
  }
  return reading;
}

void TextCheck::Add(FindingKind kind, std::vector<std::string> arguments) {
  // One character set for all lines of a mail: that it is missing is told of the first alone.
  constexpr std::uint64_t kForAllLines = std::uint64_t{1}
                                         << static_cast<unsigned>(FindingKind::kUnannouncedUtf8);
  if (told_line_ != walk_->number()) told_ &= kForAllLines;
  told_line_ = walk_->number();
  static_assert(static_cast<unsigned>(FindingKind::kContentCut) < 64);
  const std::uint64_t bit = std::uint64_t{1} << static_cast<unsigned>(kind);
  if ((told_ & bit) != 0) return;
  told_ |= bit;
  walk_->Add(kind, std::move(arguments));
}

void TextCheck::CheckCodes(std::string_view raw) {
  const std::string_view bad = FindBadCode(raw);
  if (!bad.empty()) Add(FindingKind::kBadQuotedPrintable, {SHOWN_Text(bad), what_});
  decoded_.resize(QP_Decode(raw, nullptr, 0) + 1);
  QP_Decode(raw, decoded_.data(), decoded_.size());
  decoded_.pop_back();
  const std::size_t nul = decoded_.find('\0');
  if (nul == std::string::npos) return;
  Add(FindingKind::kNulByte, {});
  decoded_.resize(nul);
}

void TextCheck::CheckCharacters() {
  if (IsAscii(decoded_)) return;
  const std::string code_page = std::to_string(reading_.code_page);
  if (!Decodes(reading_.code_page, decoded_)) {
    Add(FindingKind::kUndecodable, {what_, code_page});
  } else if (!reading_.announced && reading_.code_page != kCodePageUtf8 &&
             Decodes(kCodePageUtf8, decoded_)) {
    Add(FindingKind::kUnannouncedUtf8, {what_, code_page, std::string(reading_.advice)});
  }
}

void TextCheck::Take(std::string_view raw) {
  if (reading_.quoted_printable) {
    CheckCodes(raw);
  } else {
    decoded_ = raw;
  }
  CheckCharacters();
}

}  // namespace tamu::tool
