#include "mailstore/mail_folder.h"

#include <cstring>

#include "mailstore/session.h"
#include "platform/code_pages.h"
#include "text/charset.h"

namespace tamu {
namespace {

constexpr std::uint32_t kMostUnits = 2048;

}  // namespace

platform::IMAPIFolder* MAIL_FolderOf(const MessageShape& record) noexcept {
  if (std::strcmp(record.folder, "OUTBOX") == 0) return gpOutBoxFolder;
  if (std::strcmp(record.folder, "SENTBOX") == 0) return gpSentBoxFolder;
  return gpInBoxFolder;
}

void MAIL_TextToWide(const char* text, platform::BStr* wide) noexcept {
  CHARSET_ToWide(platform::kCpAcp, text, wide);
}

void MAIL_HeaderToWide(const char* text, platform::BStr* wide) noexcept {
  MAIL_TextToWide(text, wide);
  if (wide->size() > kMostUnits) {
    wide->reset(platform::SysAllocStringLen(wide->get(), kMostUnits));
  }
}

}  // namespace tamu
