#include "mailstore/mail_recipients.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <string_view>

namespace tamu {
namespace {

using namespace platform;

constexpr std::size_t kPropertiesOfRow = 3;
constexpr std::u16string_view kAddressType = u"SMTP";

// "one block": the list, then the rows' properties, then the texts.
constexpr std::size_t kBytesOfRow = sizeof(ADRENTRY) + kPropertiesOfRow * sizeof(SPropValue);
static_assert(sizeof(void*) != 4 || (sizeof(ADRLIST) == 16 && kBytesOfRow == 60));

// At most so many pieces: a text without any has no recipient.
std::size_t CountPieces(std::u16string_view text) noexcept {
  if (text.empty()) return 0;
  return 1 + static_cast<std::size_t>(std::count(text.begin(), text.end(), u';'));
}

// Lays the rows out in the block.
class ListBuilder {
 public:
  ListBuilder(ADRLIST* list, std::size_t most_rows) noexcept : list_(list) {
    constexpr std::size_t kAlign = alignof(SPropValue);
    // ADRLIST holds one entry already, which leaves room for aligning the properties.
    const std::size_t behind_rows =
        (offsetof(ADRLIST, aEntries) + most_rows * sizeof(ADRENTRY) + kAlign - 1) / kAlign * kAlign;
    auto* const bytes = static_cast<unsigned char*>(static_cast<void*>(list));
    properties_ = static_cast<SPropValue*>(static_cast<void*>(bytes + behind_rows));
    texts_ = static_cast<char16_t*>(static_cast<void*>(properties_ + most_rows * kPropertiesOfRow));
    address_type_ = AddText(kAddressType);
  }

  void AddPieces(std::u16string_view text, std::int32_t type) noexcept {
    while (!text.empty()) {
      const std::size_t end = text.find(u';');
      std::u16string_view piece = text.substr(0, end);
      piece.remove_prefix(std::min(piece.find_first_not_of(u' '), piece.size()));
      const bool last = end == std::u16string_view::npos;
      if (last && piece.empty()) return;
      AddRow(piece, type);
      if (last) return;
      text.remove_prefix(end + 1);
    }
  }

 private:
  char16_t* AddText(std::u16string_view text) noexcept {
    char16_t* const copy = texts_;
    std::copy(text.begin(), text.end(), copy);
    copy[text.size()] = u'\0';
    texts_ += text.size() + 1;
    return copy;
  }

  void AddRow(std::u16string_view address, std::int32_t type) noexcept {
    ADRENTRY& entry = list_->aEntries[list_->cEntries++];
    entry.cValues = kPropertiesOfRow;
    entry.rgPropVals = properties_;
    properties_[0].ulPropTag = PR_RECIPIENT_TYPE;
    properties_[0].Value.l = type;
    properties_[1].ulPropTag = PR_ADDRTYPE;
    properties_[1].Value.lpszW = address_type_;
    properties_[2].ulPropTag = PR_EMAIL_ADDRESS;
    properties_[2].Value.lpszW = AddText(address);
    properties_ += kPropertiesOfRow;
  }

  ADRLIST* list_;
  SPropValue* properties_;
  char16_t* texts_;
  char16_t* address_type_;
};

}  // namespace

MemPtr<ADRLIST> MAIL_MakeRecipients(const BStr& to, const BStr& cc) noexcept {
  const std::size_t rows = CountPieces(to.view()) + CountPieces(cc.view());
  // Each piece has its terminator where the ";" stood, or one of its own.
  const std::size_t units = to.view().size() + cc.view().size() + rows + kAddressType.size() + 1;
  const std::size_t size =
      sizeof(ADRLIST) + alignof(SPropValue) + rows * kBytesOfRow + units * sizeof(char16_t);
  MemPtr<ADRLIST> list(static_cast<ADRLIST*>(MEM_AllocZeroed(size)));
  if (!list) return list;
  ListBuilder builder(list.get(), rows);
  builder.AddPieces(to.view(), kRecipientTo);
  builder.AddPieces(cc.view(), kRecipientCc);
  return list;
}

}  // namespace tamu
