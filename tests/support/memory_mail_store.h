// support/memory_mail_store.h - a mail store in memory, for tests of what works over one.
//   It can be told to lack folders, and to fail: its n-th call from now on, or every one.
#ifndef TAMU_TESTS_SUPPORT_MEMORY_MAIL_STORE_H_
#define TAMU_TESTS_SUPPORT_MEMORY_MAIL_STORE_H_

#include <algorithm>
#include <cstdint>
#include <map>
#include <set>
#include <span>
#include <vector>

#include "device/mail/mail_store.h"
#include "device/mail/no_memory.h"
#include "platform/cemapi.h"

namespace tamu::testing {

class MemoryMailStore final : public device::MailStore {
 public:
  using HRESULT = platform::HRESULT;
  using MailFolder = device::MailFolder;
  using MailId = device::MailId;

  // --- What tests tell it ---

  void Lack(MailFolder folder) { lacking_.insert(folder); }
  // Lets the n-th call from now (1 is the next one) answer `result`; 0 disarms.
  void FailNth(std::uint64_t n, HRESULT result) noexcept {
    fail_in_ = n;
    failure_ = result;
  }
  // Whether the call that has to fail is still to come.
  [[nodiscard]] bool Armed() const noexcept { return fail_in_ != 0; }
  // Lets every call answer it; kOk ends that.
  void FailAll(HRESULT result) noexcept { fail_all_ = result; }

  // --- MailStore ---

  bool HasFolder(MailFolder folder) const noexcept override { return !lacking_.contains(folder); }

  HRESULT CreateMessage(MailFolder folder, MailId* id) noexcept override {
    return Call([&]() -> HRESULT {
      messages_.try_emplace(last_id_ + 1, Kept{folder, {}, {}});
      *id = ++last_id_;
      return platform::hr::kOk;
    });
  }

  HRESULT DeleteMessages(MailFolder folder, std::span<const MailId> ids) noexcept override {
    return Call([&]() -> HRESULT {
      for (const MailId id : ids) {
        const Kept* const message = Find(id);
        if (message == nullptr || message->folder != folder) return platform::hr::kItemNotFound;
      }
      for (const MailId id : ids) messages_.erase(id);
      return platform::hr::kOk;
    });
  }

  HRESULT FolderOf(MailId id, MailFolder* folder) noexcept override {
    return Call([&]() -> HRESULT {
      const Kept* const message = Find(id);
      if (message == nullptr) return platform::hr::kItemNotFound;
      *folder = message->folder;
      return platform::hr::kOk;
    });
  }

  HRESULT ReadProperties(MailId id, std::span<const std::uint32_t> tags,
                         std::vector<device::MailProperty>* found) noexcept override {
    return Call([&]() -> HRESULT {
      const Kept* const message = Find(id);
      if (message == nullptr) return platform::hr::kItemNotFound;
      *found = Matching(*message, tags);
      return platform::hr::kOk;
    });
  }

  HRESULT SetProperties(MailId id,
                        std::span<const device::MailProperty> properties) noexcept override {
    return Call([&]() -> HRESULT {
      Kept* const message = Find(id);
      if (message == nullptr) return platform::hr::kItemNotFound;
      std::map<std::uint32_t, device::MailValue> changed = message->properties;
      for (const device::MailProperty& property : properties) {
        changed[property.tag] = property.value;
      }
      message->properties.swap(changed);
      return platform::hr::kOk;
    });
  }

  HRESULT DeleteProperties(MailId id, std::span<const std::uint32_t> tags) noexcept override {
    return Call([&]() -> HRESULT {
      Kept* const message = Find(id);
      if (message == nullptr) return platform::hr::kItemNotFound;
      for (const std::uint32_t tag : tags) {
        if (!message->properties.contains(tag)) return platform::hr::kNotFound;
      }
      for (const std::uint32_t tag : tags) message->properties.erase(tag);
      return platform::hr::kOk;
    });
  }

  HRESULT AddRecipients(MailId id,
                        std::span<const device::MailRecipient> recipients) noexcept override {
    return Call([&]() -> HRESULT {
      Kept* const message = Find(id);
      if (message == nullptr) return platform::hr::kItemNotFound;
      std::vector<device::MailRecipient> longer = message->recipients;
      longer.insert(longer.end(), recipients.begin(), recipients.end());
      message->recipients.swap(longer);
      return platform::hr::kOk;
    });
  }

  HRESULT ReadRecipients(MailId id,
                         std::vector<device::MailRecipient>* recipients) noexcept override {
    return Call([&]() -> HRESULT {
      const Kept* const message = Find(id);
      if (message == nullptr) return platform::hr::kItemNotFound;
      *recipients = message->recipients;
      return platform::hr::kOk;
    });
  }

  HRESULT ReadRows(MailFolder folder, MailId after, std::size_t limit,
                   std::span<const std::uint32_t> tags,
                   std::vector<device::MailRow>* rows) noexcept override {
    return Call([&]() -> HRESULT {
      rows->clear();
      for (auto at = messages_.upper_bound(after); at != messages_.end() && rows->size() < limit;
           ++at) {
        if (at->second.folder == folder) rows->push_back({at->first, Matching(at->second, tags)});
      }
      return platform::hr::kOk;
    });
  }

  HRESULT Count(MailFolder folder, MailId last, std::uint32_t* count) noexcept override {
    return Call([&]() -> HRESULT {
      *count = 0;
      for (const auto& [id, message] : messages_) {
        if (id <= last && message.folder == folder) ++*count;
      }
      return platform::hr::kOk;
    });
  }

  HRESULT FindExact(MailFolder folder, const device::ExactMail& mail,
                    MailId* id) noexcept override {
    return Call([&]() -> HRESULT {
      *id = 0;
      for (const auto& [candidate, message] : messages_) {
        if (message.folder != folder || !IsExactly(message, mail)) continue;
        *id = candidate;
        break;
      }
      return platform::hr::kOk;
    });
  }

 private:
  struct Kept {
    MailFolder folder = MailFolder::kInbox;
    std::map<std::uint32_t, device::MailValue> properties;
    std::vector<device::MailRecipient> recipients;
  };

  template <typename Work>
  HRESULT Call(const Work& work) noexcept {
    if (platform::Failed(fail_all_)) return fail_all_;
    if (fail_in_ != 0 && --fail_in_ == 0) return failure_;
    return device::CatchNoMemory(work);
  }

  Kept* Find(MailId id) {
    const auto at = messages_.find(id);
    return at == messages_.end() ? nullptr : &at->second;
  }

  static std::vector<device::MailProperty> Matching(const Kept& message,
                                                    std::span<const std::uint32_t> tags) {
    std::vector<device::MailProperty> found;
    for (const auto& [tag, value] : message.properties) {
      const auto wanted = [tag = tag](std::uint32_t each) { return device::TagMatches(each, tag); };
      if (std::any_of(tags.begin(), tags.end(), wanted)) found.push_back({tag, value});
    }
    return found;
  }

  static bool IsExactly(const Kept& message, const device::ExactMail& mail) {
    const auto time = message.properties.find(platform::PR_MESSAGE_DELIVERY_TIME);
    if (time == message.properties.end()) return false;
    const auto delivered = static_cast<std::uint64_t>(std::get<std::int64_t>(time->second));
    if (delivered < mail.first || delivered - mail.first >= mail.count) return false;
    const auto subject = message.properties.find(platform::PR_SUBJECT);
    if (subject == message.properties.end()) return mail.subject.empty();
    return std::get<std::u16string>(subject->second) == mail.subject;
  }

  std::map<MailId, Kept> messages_;
  std::set<MailFolder> lacking_;
  MailId last_id_ = 0;
  std::uint64_t fail_in_ = 0;
  HRESULT failure_ = platform::hr::kFail;
  HRESULT fail_all_ = platform::hr::kOk;
};

}  // namespace tamu::testing

#endif  // TAMU_TESTS_SUPPORT_MEMORY_MAIL_STORE_H_
