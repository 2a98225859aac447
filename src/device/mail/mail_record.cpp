#include "device/mail/mail_record.h"

#include "platform/cemapi.h"

namespace tamu::device {

MailValueKind KindOfMailType(std::uint32_t type) noexcept {
  switch (type) {
    case platform::kTypeShort:
    case platform::kTypeLong:
    case platform::kTypeFloat:
    case platform::kTypeDouble:
    case platform::kTypeCurrency:
    case platform::kTypeAppTime:
    case platform::kTypeBoolean:
    case platform::kTypeInt64:
    case platform::kTypeSysTime:
      return MailValueKind::kNumber;
    case platform::kTypeUnicode:
      return MailValueKind::kText;
    case platform::kTypeString8:
    case platform::kTypeClsid:
    case platform::kTypeBinary:
      return MailValueKind::kBytes;
    default:
      return MailValueKind::kNone;
  }
}

bool TagMatches(std::uint32_t wanted, std::uint32_t tag) noexcept {
  if (platform::PropType(wanted) != platform::kTypeUnspecified) return wanted == tag;
  return platform::PropId(wanted) == platform::PropId(tag);
}

}  // namespace tamu::device
