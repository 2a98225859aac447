#include <limits>

#include "device/mail/mail_fixture.h"

namespace tamu::testing {
namespace {

namespace hr = platform::hr;

constexpr std::uint64_t kSecond = 10000000;
constexpr std::uint64_t kNoon = 126227808000000000;  // some day's

class ExactMailFind : public MailContract {
 protected:
  // The entry id that is found, or "".
  static std::string FindIn(const ComPtr<IMAPIFolder>& folder, std::u16string_view subject,
                            std::uint64_t first = kNoon, std::uint64_t count = kSecond) {
    ComPtr<platform::IExactMailFind> find;
    EXPECT_EQ(folder->QueryInterface(platform::IID_IExactMailFind, find.put_void()), hr::kOk);
    std::uint8_t id[16];
    std::uint32_t found = 77;
    EXPECT_EQ(find->FindMessage(first, count, subject.data(),
                                static_cast<std::uint32_t>(subject.size()), id, &found),
              hr::kOk);
    EXPECT_LE(found, 1U);
    return found == 1 ? std::string(id, id + 16) : std::string();
  }
};

TEST_P(ExactMailFind, FindsByTimeAndSubject) {
  static_cast<void>(Create(inbox_, u"other", kNoon));
  const ComPtr<IMessage> message = Create(inbox_, u"subject", kNoon);
  static_cast<void>(Create(inbox_, u"subject", kNoon + kSecond));
  EXPECT_EQ(FindIn(inbox_, u"subject"), EntryIdOf(message.get()));
}

TEST_P(ExactMailFind, IntervalIsHalfOpen) {
  const std::string first = EntryIdOf(Create(inbox_, u"s", kNoon).get());
  EXPECT_EQ(FindIn(inbox_, u"s", kNoon - 1, 1), "");
  EXPECT_EQ(FindIn(inbox_, u"s", kNoon - 1, 2), first);
  EXPECT_EQ(FindIn(inbox_, u"s", kNoon, 1), first);
  EXPECT_EQ(FindIn(inbox_, u"s", kNoon, 0), "");
  EXPECT_EQ(FindIn(inbox_, u"s", kNoon + 1, kSecond), "");
  EXPECT_EQ(FindIn(inbox_, u"s", 0, std::numeric_limits<std::uint64_t>::max()), first);
  EXPECT_EQ(FindIn(inbox_, u"s", kNoon, std::numeric_limits<std::uint64_t>::max()), first);
}

TEST_P(ExactMailFind, TimesAreUnsigned) {
  constexpr std::uint64_t kLast = std::numeric_limits<std::uint64_t>::max();
  const std::string last = EntryIdOf(Create(inbox_, u"s", kLast).get());
  const std::string zero = EntryIdOf(Create(inbox_, u"s", 0).get());
  EXPECT_EQ(FindIn(inbox_, u"s", kLast, 1), last);
  EXPECT_EQ(FindIn(inbox_, u"s", kLast - 5, kLast), last);
  EXPECT_EQ(FindIn(inbox_, u"s", 0, 1), zero);
}

TEST_P(ExactMailFind, FirstInOrderOfArrivalWins) {
  const std::string first = EntryIdOf(Create(inbox_, u"same", kNoon + 9).get());
  static_cast<void>(Create(inbox_, u"same", kNoon + 1));
  EXPECT_EQ(FindIn(inbox_, u"same"), first);
}

TEST_P(ExactMailFind, LooksInItsFolderAlone) {
  static_cast<void>(Create(outbox_, u"s", kNoon));
  const std::string sent = EntryIdOf(Create(sent_, u"s", kNoon).get());
  EXPECT_EQ(FindIn(inbox_, u"s"), "");
  EXPECT_EQ(FindIn(sent_, u"s"), sent);
}

TEST_P(ExactMailFind, SubjectsCompareUnitByUnit) {
  static_cast<void>(Create(inbox_, u"Subject", kNoon));
  EXPECT_EQ(FindIn(inbox_, u"subject"), "");
  EXPECT_EQ(FindIn(inbox_, u"Subjec"), "");
  EXPECT_EQ(FindIn(inbox_, u"Subject "), "");
  EXPECT_EQ(FindIn(inbox_, std::u16string_view(u"Subject\0", 8)), "");
  EXPECT_NE(FindIn(inbox_, u"Subject"), "");
}

TEST_P(ExactMailFind, HardSubjectsAreFound) {
  std::u16string lone = u"x";
  lone += static_cast<char16_t>(0xDC00);
  const std::u16string subjects[] = {u"' or '1'='1",
                                     u"%",
                                     u"_",
                                     u"\x1B"
                                     u"0000",
                                     lone,
                                     std::u16string(500000, u'\u00E9')};
  std::vector<std::string> ids;
  for (const std::u16string& subject : subjects) {
    ids.push_back(EntryIdOf(Create(inbox_, subject, kNoon).get()));
  }
  for (std::size_t i = 0; i < ids.size(); ++i) EXPECT_EQ(FindIn(inbox_, subjects[i]), ids[i]) << i;
}

TEST_P(ExactMailFind, MissingSubjectIsTheEmptyOne) {
  const ComPtr<IMessage> without = Create(inbox_);
  ASSERT_EQ(SetTime(without.get(), platform::PR_MESSAGE_DELIVERY_TIME, kNoon), hr::kOk);
  EXPECT_EQ(FindIn(inbox_, u""), EntryIdOf(without.get()));
  const ComPtr<IMessage> empty = Create(sent_, u"", kNoon);
  EXPECT_EQ(FindIn(sent_, u""), EntryIdOf(empty.get()));
}

TEST_P(ExactMailFind, MissingTimeIsNeverFound) {
  const ComPtr<IMessage> message = Create(inbox_);
  ASSERT_EQ(SetText(message.get(), platform::PR_SUBJECT, u"s"), hr::kOk);
  EXPECT_EQ(FindIn(inbox_, u"s", 0, std::numeric_limits<std::uint64_t>::max()), "");
}

TEST_P(ExactMailFind, FollowsChanges) {
  const ComPtr<IMessage> message = Create(inbox_, u"old", kNoon);
  const std::string id = EntryIdOf(message.get());
  ASSERT_EQ(SetText(message.get(), platform::PR_SUBJECT, u"new"), hr::kOk);
  EXPECT_EQ(FindIn(inbox_, u"old"), "");
  EXPECT_EQ(FindIn(inbox_, u"new"), id);
  ASSERT_EQ(SetTime(message.get(), platform::PR_MESSAGE_DELIVERY_TIME, kNoon + 5 * kSecond), 0);
  EXPECT_EQ(FindIn(inbox_, u"new"), "");
  EXPECT_EQ(FindIn(inbox_, u"new", kNoon + 5 * kSecond), id);
  Tags subject{platform::PR_SUBJECT};
  ASSERT_EQ(message->DeleteProps(subject.get(), nullptr), hr::kOk);
  EXPECT_EQ(FindIn(inbox_, u"", kNoon + 5 * kSecond), id);
  Tags time{platform::PR_MESSAGE_DELIVERY_TIME};
  ASSERT_EQ(message->DeleteProps(time.get(), nullptr), hr::kOk);
  EXPECT_EQ(FindIn(inbox_, u"", 0, std::numeric_limits<std::uint64_t>::max()), "");
}

TEST_P(ExactMailFind, DeletedMessageIsNotFound) {
  std::string first = EntryIdOf(Create(inbox_, u"s", kNoon).get());
  const std::string second = EntryIdOf(Create(inbox_, u"s", kNoon).get());
  platform::SBinary id{16, static_cast<std::uint8_t*>(static_cast<void*>(first.data()))};
  platform::ENTRYLIST list{1, &id};
  ASSERT_EQ(inbox_->DeleteMessages(&list, 0, nullptr, 0), hr::kOk);
  EXPECT_EQ(FindIn(inbox_, u"s"), second);
}

TEST_P(ExactMailFind, SubjectOfAStreamIsFoundToo) {
  const ComPtr<IMessage> message = Create(inbox_, u"", kNoon);
  {
    ComPtr<platform::IUnknown> object;
    ASSERT_EQ(message->OpenProperty(platform::PR_SUBJECT, nullptr, 1, 3, object.put()), hr::kOk);
    const ComPtr<IStream> stream(static_cast<IStream*>(object.release()));
    ASSERT_EQ(stream->Write(u"by stream", 18, nullptr), hr::kOk);
  }
  EXPECT_EQ(FindIn(inbox_, u"by stream"), EntryIdOf(message.get()));
}

TEST_P(ExactMailFind, IsTheFolderItself) {
  ComPtr<platform::IExactMailFind> find;
  ASSERT_EQ(inbox_->QueryInterface(platform::IID_IExactMailFind, find.put_void()), hr::kOk);
  ComPtr<platform::IUnknown> one;
  ComPtr<platform::IUnknown> other;
  ASSERT_EQ(inbox_->QueryInterface(platform::IID_IUnknown, one.put_void()), hr::kOk);
  ASSERT_EQ(find->QueryInterface(platform::IID_IUnknown, other.put_void()), hr::kOk);
  EXPECT_EQ(one.get(), other.get());
}

TEST_P(ExactMailFind, BadPointersAreRefused) {
  ComPtr<platform::IExactMailFind> find;
  ASSERT_EQ(inbox_->QueryInterface(platform::IID_IExactMailFind, find.put_void()), hr::kOk);
  std::uint8_t id[16];
  std::uint32_t found = 77;
  EXPECT_EQ(find->FindMessage(0, 1, nullptr, 1, id, &found), hr::kInvalidArgument);
  EXPECT_EQ(found, 0U);
  EXPECT_EQ(find->FindMessage(0, 1, u"", 0, nullptr, &found), hr::kInvalidArgument);
  EXPECT_EQ(find->FindMessage(0, 1, u"", 0, id, nullptr), hr::kInvalidArgument);
  EXPECT_EQ(find->FindMessage(0, 1, nullptr, 0, id, &found), hr::kOk);
}

INSTANTIATE_TEST_SUITE_P(Devices, ExactMailFind, ::testing::ValuesIn(MailDeviceKinds()),
                         &NameOfKind);

}  // namespace
}  // namespace tamu::testing
