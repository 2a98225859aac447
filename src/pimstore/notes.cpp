#include "pimstore/notes.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "core/log.h"
#include "pimstore/item_access.h"
#include "platform/paths.h"
#include "platform/rich_ink.h"
#include "text/unicode.h"

namespace tamu {
namespace {

using platform::BStr;
using platform::FileHandle;
using platform::WindowHandle;

constexpr std::u16string_view kForbidden = u"\\/:*?<>|\"";
constexpr std::u16string_view kExtension = u".pwi";

constexpr bool IsLead(char16_t unit) noexcept { return (unit & 0xFC00) == 0xD800; }
constexpr bool IsTrail(char16_t unit) noexcept { return (unit & 0xFC00) == 0xDC00; }

// The units of the first character: two for a pair.
std::size_t CharacterLength(std::u16string_view text) noexcept {
  return text.size() > 1 && IsLead(text[0]) && IsTrail(text[1]) ? 2 : 1;
}

char32_t CodePoint(std::u16string_view character) noexcept {
  if (character.size() == 1) return character[0];
  return 0x10000U + ((static_cast<char32_t>(character[0]) & 0x3FFU) << 10) +
         (static_cast<char32_t>(character[1]) & 0x3FFU);
}

bool MayStandInTitle(std::u16string_view character) noexcept {
  return kForbidden.find(character) == std::u16string_view::npos &&
         UNICODE_IsPrintable(CodePoint(character));
}

// The text that the control is filled with, terminator included, as bytes still to be served.
struct TextSource {
  const std::uint8_t* next;
  std::size_t left;
};

std::uint32_t TAMU_PLATFORM_CALLBACK ServeText(std::uintptr_t cookie, std::uint8_t* buffer,
                                               std::int32_t size, std::int32_t* done) noexcept {
  auto* const source = reinterpret_cast<TextSource*>(cookie);
  const std::size_t count =
      std::min(source->left, static_cast<std::size_t>(std::max(size, std::int32_t{0})));
  std::memcpy(buffer, source->next, count);
  source->next += count;
  source->left -= count;
  *done = static_cast<std::int32_t>(count);
  return 0;
}

std::uint32_t TAMU_PLATFORM_CALLBACK WriteDocument(std::uintptr_t cookie, std::uint8_t* buffer,
                                                   std::int32_t size, std::int32_t* done) noexcept {
  const FileHandle file = *reinterpret_cast<const FileHandle*>(cookie);
  std::uint32_t written = 0;
  platform::WriteFile(file, buffer, static_cast<std::uint32_t>(size), &written, nullptr);
  *done = static_cast<std::int32_t>(written);
  return 0;
}

void Stream(WindowHandle window, std::uint32_t message, std::uintptr_t format, void* cookie,
            platform::EditStreamCallback callback) {
  platform::EditStream stream{reinterpret_cast<std::uintptr_t>(cookie), 0, callback};
  platform::SendMessageW(window, message, format, reinterpret_cast<std::intptr_t>(&stream));
}

void FillControl(WindowHandle window, const BStr& text) {
  TextSource source{reinterpret_cast<const std::uint8_t*>(text.c_str()),
                    (std::size_t{text.size()} + 1) * sizeof(char16_t)};
  Stream(window, platform::kEmStreamIn, platform::kSfUnicodeText, &source, &ServeText);
}

void WriteControl(WindowHandle window, FileHandle file) {
  Stream(window, platform::kEmStreamOut, platform::kSfPwi, &file, &WriteDocument);
}

WindowHandle CreateControl() {
  constexpr std::int32_t kAny = platform::kUseDefault;
  return platform::CreateWindowExW(0, platform::kRichInkClass, u"", platform::kRichInkStyle, kAny,
                                   kAny, kAny, kAny, 0, 0, 0, nullptr);
}

bool IsOpen(FileHandle file) noexcept { return file != 0 && file != platform::kInvalidHandle; }

}  // namespace

void NOTE_CleanTitle(const char16_t* source, char16_t* dest, std::size_t capacity) noexcept {
  if (source == nullptr || dest == nullptr || capacity == 0) return;
  std::size_t length = 0;
  for (std::u16string_view rest = source; !rest.empty();) {
    const std::u16string_view character = rest.substr(0, CharacterLength(rest));
    rest.remove_prefix(character.size());
    if (!MayStandInTitle(character)) continue;
    if (length + character.size() >= capacity) break;
    length += character.copy(dest + length, character.size());
  }
  dest[length] = u'\0';
}

NotePath NOTE_PathFromTitle(const char16_t* title) noexcept {
  NotePath path{};
  if (platform::SHGetSpecialFolderPathW(0, path.data(), platform::kCsidlPersonal, 1) == 0) {
    path[0] = u'\0';
    return path;
  }
  char16_t* end = path.data() + std::u16string_view(path.data()).size();
  *end++ = platform::kPathSeparator;
  NOTE_CleanTitle(title, end, kNoteTitleLength);
  end += std::u16string_view(end).size();
  kExtension.copy(end, kExtension.size());
  return path;
}

bool NOTE_Exists(const char16_t* title) noexcept {
  const FileHandle file = platform::CreateFileW(
      NOTE_PathFromTitle(title).data(), platform::kGenericRead, platform::kFileShareRead, nullptr,
      platform::kOpenExisting, platform::kFileAttributeNormal, 0);
  if (!IsOpen(file)) return false;
  platform::CloseHandle(file);
  return true;
}

void pol_PutNote(const NoteShape& record) noexcept {
  const BStr title = WideOf(record.prop_summary);
  const WindowHandle window = CreateControl();
  if (window == 0) {
    LOG_Error("TAMU:  Unable to create RICHINK control");
    return;
  }
  const NotePath path = NOTE_PathFromTitle(title.c_str());
  const FileHandle file =
      platform::CreateFileW(path.data(), platform::kGenericWrite, platform::kFileShareWrite,
                            nullptr, platform::kCreateAlways, platform::kFileAttributeNormal, 0);
  if (!IsOpen(file)) {
    LOG_Error("TAMU:  pol_PutNote Error - Unable to create file '%S'", path.data());
    return;
  }
  FillControl(window, WideOf(record.prop_body));
  WriteControl(window, file);
  platform::CloseHandle(file);
  platform::DestroyWindow(window);
}

}  // namespace tamu
