#include <cstring>
#include <limits>

#include "device/mail/mail_fixture.h"

namespace tamu::testing {
namespace {

namespace hr = platform::hr;

constexpr std::uint32_t kWrite = platform::kMapiModify;
constexpr std::uint32_t kReplace = platform::kMapiModify | platform::kMapiCreate;

class PropertyStream : public MailContract {
 protected:
  static HRESULT Open(IMessage* message, std::uint32_t tag, std::uint32_t flags,
                      ComPtr<IStream>* stream) {
    platform::IUnknown* object = nullptr;
    const HRESULT result = message->OpenProperty(
        tag, nullptr, flags == 0 ? platform::kStorageRead : platform::kStorageWrite, flags,
        &object);
    *stream = ComPtr<IStream>(static_cast<IStream*>(object));
    return result;
  }

  static ComPtr<IStream> Opened(IMessage* message, std::uint32_t tag, std::uint32_t flags) {
    ComPtr<IStream> stream;
    EXPECT_EQ(Open(message, tag, flags, &stream), hr::kOk);
    return stream;
  }

  static HRESULT Write(const ComPtr<IStream>& stream, const std::u16string& text) {
    std::uint32_t written = 0;
    const auto size = static_cast<std::uint32_t>(text.size() * 2);
    const HRESULT result = stream->Write(text.data(), size, &written);
    EXPECT_EQ(written, platform::Succeeded(result) ? size : 0);
    return result;
  }

  static std::u16string Read(IMessage* message, std::uint32_t tag = platform::PR_BODY) {
    ComPtr<IStream> stream;
    if (Open(message, tag, 0, &stream) != hr::kOk) return u"(missing)";
    platform::STATSTG stat;
    EXPECT_EQ(stream->Stat(&stat, 1), hr::kOk);
    std::u16string text(static_cast<std::size_t>(stat.cbSize / 2), u'\0');
    std::uint32_t read = 0;
    EXPECT_EQ(stream->Read(text.data(), static_cast<std::uint32_t>(stat.cbSize), &read), hr::kOk);
    EXPECT_EQ(read, stat.cbSize);
    return text;
  }
};

// --- Keeping ----------------------------------------------------------------

TEST_P(PropertyStream, ReleaseKeepsWhatWasWritten) {
  const ComPtr<IMessage> message = Create(inbox_);
  const std::string id = EntryIdOf(message.get());
  EXPECT_EQ(Write(Opened(message.get(), platform::PR_BODY, kReplace), u"body\r\n"), hr::kOk);
  EXPECT_EQ(Read(message.get()), u"body\r\n");
  LogonAgain();
  EXPECT_EQ(Read(PropertyStream::MailContract::Open<IMessage>(id).get()), u"body\r\n");
}

TEST_P(PropertyStream, TrailingZeroIsKeptAsWritten) {
  const ComPtr<IMessage> message = Create(inbox_);
  const std::u16string body(u"text\0", 5);
  EXPECT_EQ(Write(Opened(message.get(), platform::PR_BODY, kReplace), body), hr::kOk);
  EXPECT_EQ(Read(message.get()), body);
  EXPECT_EQ(TextOf(message.get(), platform::PR_BODY), u"text");
}

TEST_P(PropertyStream, EveryUnitIsKept) {
  std::u16string body;
  for (std::uint32_t unit = 0; unit <= 0xFFFF; ++unit) body += static_cast<char16_t>(unit);
  const ComPtr<IMessage> message = Create(inbox_);
  EXPECT_EQ(Write(Opened(message.get(), platform::PR_BODY, kReplace), body), hr::kOk);
  EXPECT_EQ(Read(message.get()), body);
}

TEST_P(PropertyStream, LargeBodyIsKept) {
  const std::u16string body(2 * 1024 * 1024, u'\u4E2D');
  const ComPtr<IMessage> message = Create(inbox_);
  EXPECT_EQ(Write(Opened(message.get(), platform::PR_BODY, kReplace), body), hr::kOk);
  EXPECT_EQ(Read(message.get()), body);
}

TEST_P(PropertyStream, NothingIsStoredBeforeTheRelease) {
  const ComPtr<IMessage> message = Create(inbox_);
  {
    const ComPtr<IStream> stream = Opened(message.get(), platform::PR_BODY, kReplace);
    EXPECT_EQ(Write(stream, u"part one"), hr::kOk);
    EXPECT_EQ(Write(stream, u", part two"), hr::kOk);
    EXPECT_EQ(Read(message.get()), u"(missing)");
  }
  EXPECT_EQ(Read(message.get()), u"part one, part two");
}

TEST_P(PropertyStream, CommitStoresAtOnce) {
  const ComPtr<IMessage> message = Create(inbox_);
  const ComPtr<IStream> stream = Opened(message.get(), platform::PR_BODY, kReplace);
  EXPECT_EQ(Write(stream, u"one"), hr::kOk);
  EXPECT_EQ(stream->Commit(0), hr::kOk);
  EXPECT_EQ(Read(message.get()), u"one");
}

TEST_P(PropertyStream, LastReleaseStores) {
  const ComPtr<IMessage> message = Create(inbox_);
  ComPtr<IStream> stream = Opened(message.get(), platform::PR_BODY, kReplace);
  ComPtr<IStream> second = stream;
  EXPECT_EQ(Write(stream, u"one"), hr::kOk);
  stream.reset();
  EXPECT_EQ(Read(message.get()), u"(missing)");
  second.reset();
  EXPECT_EQ(Read(message.get()), u"one");
}

TEST_P(PropertyStream, OutlivesItsMessageObject) {
  ComPtr<IMessage> message = Create(inbox_);
  const std::string id = EntryIdOf(message.get());
  ComPtr<IStream> stream = Opened(message.get(), platform::PR_BODY, kReplace);
  message.reset();
  CloseAll();
  EXPECT_EQ(Write(stream, u"late"), hr::kOk);
  stream.reset();
  LogonAgain();
  EXPECT_EQ(Read(PropertyStream::MailContract::Open<IMessage>(id).get()), u"late");
}

TEST_P(PropertyStream, UnchangedStreamStoresNothing) {
  const ComPtr<IMessage> message = Create(inbox_);
  ASSERT_EQ(SetText(message.get(), platform::PR_BODY, u"first"), hr::kOk);
  {
    const ComPtr<IStream> stream = Opened(message.get(), platform::PR_BODY, kWrite);
    ASSERT_EQ(SetText(message.get(), platform::PR_BODY, u"second"), hr::kOk);
  }
  EXPECT_EQ(TextOf(message.get(), platform::PR_BODY), u"second");
}

// --- Opening ----------------------------------------------------------------

TEST_P(PropertyStream, CreateFlagGivesUpWhatWasThere) {
  const ComPtr<IMessage> message = Create(inbox_);
  ASSERT_EQ(SetText(message.get(), platform::PR_BODY, u"a longer body"), hr::kOk);
  EXPECT_EQ(Write(Opened(message.get(), platform::PR_BODY, kReplace), u"short"), hr::kOk);
  EXPECT_EQ(Read(message.get()), u"short");
}

TEST_P(PropertyStream, CreateFlagAloneLeavesAnEmptyProperty) {
  const ComPtr<IMessage> message = Create(inbox_);
  ASSERT_EQ(SetText(message.get(), platform::PR_BODY, u"a longer body"), hr::kOk);
  EXPECT_TRUE(Opened(message.get(), platform::PR_BODY, kReplace));
  EXPECT_EQ(Read(message.get()), u"");
}

TEST_P(PropertyStream, WithoutTheCreateFlagWritingGoesOverWhatWasThere) {
  const ComPtr<IMessage> message = Create(inbox_);
  ASSERT_EQ(SetText(message.get(), platform::PR_BODY, u"abcdef"), hr::kOk);
  EXPECT_EQ(Write(Opened(message.get(), platform::PR_BODY, kWrite), u"XY"), hr::kOk);
  EXPECT_EQ(Read(message.get()), u"XYcdef");
}

TEST_P(PropertyStream, AbsentPropertyCanBeWrittenWithoutTheCreateFlag) {
  const ComPtr<IMessage> message = Create(inbox_);
  EXPECT_TRUE(Opened(message.get(), platform::PR_BODY, kWrite));
  EXPECT_EQ(Read(message.get()), u"(missing)");
  EXPECT_EQ(Write(Opened(message.get(), platform::PR_BODY, kWrite), u"new"), hr::kOk);
  EXPECT_EQ(Read(message.get()), u"new");
}

TEST_P(PropertyStream, AbsentPropertyIsNotFoundForReading) {
  const ComPtr<IMessage> message = Create(inbox_);
  ComPtr<IStream> stream;
  EXPECT_EQ(Open(message.get(), platform::PR_BODY, 0, &stream), hr::kNotFound);
  EXPECT_EQ(Open(message.get(), platform::PR_BODY, platform::kMapiCreate, &stream), hr::kNotFound);
  EXPECT_FALSE(stream);
}

TEST_P(PropertyStream, IsAStreamWhateverInterfaceIsAskedFor) {
  const ComPtr<IMessage> message = Create(inbox_);
  ASSERT_EQ(SetText(message.get(), platform::PR_BODY, u"body"), hr::kOk);
  ComPtr<platform::IUnknown> object;
  ASSERT_EQ(message->OpenProperty(platform::PR_BODY, &platform::IID_IMessage, 0, 0, object.put()),
            hr::kOk);
  ComPtr<platform::IUnknown> other;
  EXPECT_EQ(object->QueryInterface(platform::IID_IStream, other.put_void()), hr::kOk);
  EXPECT_EQ(object->QueryInterface(platform::IID_ISequentialStream, other.put_void()), hr::kOk);
  EXPECT_EQ(object->QueryInterface(platform::IID_IMessage, other.put_void()), hr::kNoInterface);
}

TEST_P(PropertyStream, OtherKindsOfPropertiesHaveNone) {
  const ComPtr<IMessage> message = Create(inbox_, u"subject", 1);
  ComPtr<IStream> stream;
  EXPECT_EQ(Open(message.get(), platform::PR_MESSAGE_DELIVERY_TIME, 0, &stream), hr::kNoSupport);
  EXPECT_EQ(Open(message.get(), platform::PropTag(platform::kTypeUnspecified, 0x37), 0, &stream),
            hr::kInvalidArgument);
  EXPECT_EQ(Open(message.get(), platform::PR_ENTRYID, kWrite, &stream), hr::kAccessDenied);
  EXPECT_FALSE(stream);
  EXPECT_EQ(message->OpenProperty(platform::PR_BODY, nullptr, 0, 0, nullptr), hr::kInvalidArgument);
  EXPECT_TRUE(Opened(message.get(), platform::PR_ENTRYID, 0));
}

TEST_P(PropertyStream, BytesAndNarrowTextsAreTheirBytes) {
  const std::uint32_t tags[] = {platform::PropTag(platform::kTypeString8, 0x1000),
                                platform::PropTag(platform::kTypeBinary, 0x6A05)};
  const ComPtr<IMessage> message = Create(inbox_);
  for (const std::uint32_t tag : tags) {
    EXPECT_EQ(Opened(message.get(), tag, kReplace)->Write("\0\xFF\r", 3, nullptr), hr::kOk);
    char read[4] = {};
    std::uint32_t size = 0;
    EXPECT_EQ(Opened(message.get(), tag, 0)->Read(read, 4, &size), hr::kOk);
    EXPECT_EQ(size, 3U);
    EXPECT_EQ(std::memcmp(read, "\0\xFF\r", 3), 0);
  }
}

TEST_P(PropertyStream, OddByteOfAWideTextIsFilledUp) {
  const ComPtr<IMessage> message = Create(inbox_);
  EXPECT_EQ(Opened(message.get(), platform::PR_BODY, kReplace)->Write("a\0b", 3, nullptr), hr::kOk);
  EXPECT_EQ(Read(message.get()), u"ab");
}

// --- Reading and moving -----------------------------------------------------

TEST_P(PropertyStream, ReadFillsTheBufferUntilTheEnd) {
  const ComPtr<IMessage> message = Create(inbox_);
  ASSERT_EQ(SetText(message.get(), platform::PR_BODY, u"abcde"), hr::kOk);
  const ComPtr<IStream> stream = Opened(message.get(), platform::PR_BODY, 0);
  char16_t buffer[4] = {};
  std::uint32_t read = 77;
  EXPECT_EQ(stream->Read(buffer, 8, &read), hr::kOk);
  EXPECT_EQ(read, 8U);
  EXPECT_EQ(std::u16string(buffer, 4), u"abcd");
  EXPECT_EQ(stream->Read(buffer, 8, &read), hr::kOk);
  EXPECT_EQ(read, 2U);
  EXPECT_EQ(buffer[0], u'e');
  EXPECT_EQ(stream->Read(buffer, 8, &read), hr::kOk);
  EXPECT_EQ(read, 0U);
  EXPECT_EQ(stream->Read(nullptr, 0, nullptr), hr::kOk);
  EXPECT_EQ(stream->Read(nullptr, 8, &read), hr::kInvalidArgument);
}

TEST_P(PropertyStream, SeekMovesFromEveryOrigin) {
  const ComPtr<IMessage> message = Create(inbox_);
  ASSERT_EQ(SetText(message.get(), platform::PR_BODY, u"abcde"), hr::kOk);
  const ComPtr<IStream> stream = Opened(message.get(), platform::PR_BODY, 0);
  std::uint64_t position = 77;
  char16_t unit = 0;
  EXPECT_EQ(stream->Seek(-2, 2, &position), hr::kOk);
  EXPECT_EQ(position, 8U);
  EXPECT_EQ(stream->Seek(-4, 1, &position), hr::kOk);
  EXPECT_EQ(position, 4U);
  EXPECT_EQ(stream->Read(&unit, 2, nullptr), hr::kOk);
  EXPECT_EQ(unit, u'c');
  EXPECT_EQ(stream->Seek(0, 0, nullptr), hr::kOk);
  EXPECT_EQ(stream->Read(&unit, 2, nullptr), hr::kOk);
  EXPECT_EQ(unit, u'a');
  EXPECT_EQ(stream->Seek(-3, 1, &position), hr::kStreamInvalidFunction);
  EXPECT_EQ(position, 2U);
  EXPECT_EQ(stream->Seek(0, 3, &position), hr::kStreamInvalidFunction);
  EXPECT_EQ(stream->Seek(std::numeric_limits<std::int64_t>::max(), 1, &position),
            hr::kStreamInvalidFunction);
  EXPECT_EQ(stream->Seek(std::numeric_limits<std::int64_t>::min(), 0, &position),
            hr::kStreamInvalidFunction);
  std::uint32_t read = 77;
  EXPECT_EQ(stream->Seek(1000, 0, nullptr), hr::kOk);
  EXPECT_EQ(stream->Read(&unit, 2, &read), hr::kOk);
  EXPECT_EQ(read, 0U);
}

TEST_P(PropertyStream, SetSizeCutsAndGrows) {
  const ComPtr<IMessage> message = Create(inbox_);
  ASSERT_EQ(SetText(message.get(), platform::PR_BODY, u"abcde"), hr::kOk);
  EXPECT_EQ(Opened(message.get(), platform::PR_BODY, kWrite)->SetSize(4), hr::kOk);
  EXPECT_EQ(Read(message.get()), u"ab");
  EXPECT_EQ(Opened(message.get(), platform::PR_BODY, kWrite)->SetSize(6), hr::kOk);
  EXPECT_EQ(Read(message.get()), std::u16string(u"ab\0", 3));
}

TEST_P(PropertyStream, WritingBehindTheEndFillsWithZeros) {
  const ComPtr<IMessage> message = Create(inbox_);
  {
    const ComPtr<IStream> stream = Opened(message.get(), platform::PR_BODY, kReplace);
    EXPECT_EQ(stream->Seek(4, 0, nullptr), hr::kOk);
    EXPECT_EQ(Write(stream, u"x"), hr::kOk);
  }
  EXPECT_EQ(Read(message.get()), std::u16string(u"\0\0x", 3));
}

TEST_P(PropertyStream, SizesBeyondMeasureAreRefusedAndNothingIsLost) {
  const ComPtr<IMessage> message = Create(inbox_);
  {
    const ComPtr<IStream> stream = Opened(message.get(), platform::PR_BODY, kReplace);
    EXPECT_EQ(Write(stream, u"body"), hr::kOk);
    EXPECT_EQ(stream->SetSize(std::numeric_limits<std::uint64_t>::max()), hr::kTooBig);
    EXPECT_EQ(stream->Seek(std::numeric_limits<std::int64_t>::max(), 0, nullptr), hr::kOk);
    EXPECT_EQ(Write(stream, u"x"), hr::kTooBig);
    EXPECT_EQ(stream->Seek(256 * 1024 * 1024, 0, nullptr), hr::kOk);
    EXPECT_EQ(Write(stream, u"x"), hr::kTooBig);
  }
  EXPECT_EQ(Read(message.get()), u"body");
}

TEST_P(PropertyStream, ReadingStreamCannotBeWritten) {
  const ComPtr<IMessage> message = Create(inbox_);
  ASSERT_EQ(SetText(message.get(), platform::PR_BODY, u"abcde"), hr::kOk);
  {
    const ComPtr<IStream> stream = Opened(message.get(), platform::PR_BODY, 0);
    EXPECT_EQ(Write(stream, u"x"), hr::kStreamAccessDenied);
    EXPECT_EQ(stream->SetSize(0), hr::kStreamAccessDenied);
    EXPECT_EQ(stream->Commit(0), hr::kOk);
  }
  EXPECT_EQ(Read(message.get()), u"abcde");
}

TEST_P(PropertyStream, BadPointersAreRefused) {
  const ComPtr<IMessage> message = Create(inbox_);
  const ComPtr<IStream> stream = Opened(message.get(), platform::PR_BODY, kReplace);
  std::uint32_t written = 77;
  EXPECT_EQ(stream->Write(nullptr, 2, &written), hr::kInvalidArgument);
  EXPECT_EQ(written, 0U);
  EXPECT_EQ(stream->Write(nullptr, 0, &written), hr::kOk);
  EXPECT_EQ(stream->Stat(nullptr, 0), hr::kInvalidArgument);
}

TEST_P(PropertyStream, WhatThePlatformLacksIsNotSupported) {
  const ComPtr<IMessage> message = Create(inbox_);
  const ComPtr<IStream> stream = Opened(message.get(), platform::PR_BODY, kReplace);
  ComPtr<IStream> clone;
  const HRESULT results[] = {
      stream->CopyTo(nullptr, 0, nullptr, nullptr),
      stream->Revert(),
      stream->LockRegion(0, 0, 0),
      stream->UnlockRegion(0, 0, 0),
      stream->Clone(clone.put()),
  };
  for (const HRESULT result : results) EXPECT_EQ(result, hr::kNoSupport);
}

INSTANTIATE_TEST_SUITE_P(Devices, PropertyStream, ::testing::ValuesIn(MailDeviceKinds()),
                         &NameOfKind);

}  // namespace
}  // namespace tamu::testing
