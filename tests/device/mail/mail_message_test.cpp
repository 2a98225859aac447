#include <bit>
#include <cmath>
#include <limits>

#include "device/mail/mail_fixture.h"

namespace tamu::testing {
namespace {

namespace hr = platform::hr;
using platform::PropTag;

class MailMessage : public MailContract {};

std::vector<std::u16string> HardTexts() {
  std::u16string lone = u"a";
  lone += static_cast<char16_t>(0xD800);
  lone += u"b";
  lone += static_cast<char16_t>(0xDC00);
  std::u16string all;
  for (std::uint32_t unit = 1; unit <= 0xFFFF; ++unit) all += static_cast<char16_t>(unit);
  return {u"",
          u"' or 1=1; drop table message; --",
          u"\"[Subject] = %_\\ \x1B\x1B"
          u"0000",
          u"\U0001F600 \u00DF \u0130",
          lone,
          all,
          std::u16string(1024 * 1024, u'\u4E2D')};
}

// --- Values -----------------------------------------------------------------

TEST_P(MailMessage, EveryTypeComesBackAsItWasSet) {
  constexpr std::uint32_t kId = 0x6A01;
  char narrow[] = "narrow \x80\xFF text";
  char16_t wide[] = u"wide \u20AC text";
  std::uint8_t bytes[] = {0, 255, 1, 0};
  platform::GUID guid = platform::IID_IExactMailFind;
  SPropValue values[13] = {};
  values[0].ulPropTag = PropTag(platform::kTypeShort, kId);
  values[0].Value.i = -32768;
  values[1].ulPropTag = PropTag(platform::kTypeLong, kId);
  values[1].Value.l = std::numeric_limits<std::int32_t>::min();
  values[2].ulPropTag = PropTag(platform::kTypeFloat, kId);
  values[2].Value.flt = std::bit_cast<float>(0xFFC12345U);  // not a number
  values[3].ulPropTag = PropTag(platform::kTypeDouble, kId);
  values[3].Value.dbl = -0.0;
  values[4].ulPropTag = PropTag(platform::kTypeCurrency, kId);
  values[4].Value.li = -123456;
  values[5].ulPropTag = PropTag(platform::kTypeAppTime, kId);
  values[5].Value.at = std::numeric_limits<double>::infinity();
  values[6].ulPropTag = PropTag(platform::kTypeBoolean, kId);
  values[6].Value.b = 0xFFFF;
  values[7].ulPropTag = PropTag(platform::kTypeInt64, kId);
  values[7].Value.li = std::numeric_limits<std::int64_t>::min();
  values[8].ulPropTag = PropTag(platform::kTypeString8, kId);
  values[8].Value.lpszA = narrow;
  values[9].ulPropTag = PropTag(platform::kTypeUnicode, kId);
  values[9].Value.lpszW = wide;
  values[10].ulPropTag = PropTag(platform::kTypeSysTime, kId);
  values[10].Value.ft = {0xFFFFFFFF, 0xFFFFFFFE};
  values[11].ulPropTag = PropTag(platform::kTypeClsid, kId);
  values[11].Value.lpguid = &guid;
  values[12].ulPropTag = PropTag(platform::kTypeBinary, kId);
  values[12].Value.bin = {4, bytes};

  const ComPtr<IMessage> message = Create(inbox_);
  platform::SPropProblemArray* problems = nullptr;
  ASSERT_EQ(message->SetProps(13, values, &problems), hr::kOk);
  EXPECT_EQ(problems, nullptr);

  Props read;
  Fill(message.get(),
       {values[12].ulPropTag, values[11].ulPropTag, values[10].ulPropTag, values[9].ulPropTag,
        values[8].ulPropTag, values[7].ulPropTag, values[6].ulPropTag, values[5].ulPropTag,
        values[4].ulPropTag, values[3].ulPropTag, values[2].ulPropTag, values[1].ulPropTag,
        values[0].ulPropTag},
       &read);
  ASSERT_EQ(read.result, hr::kOk);
  ASSERT_EQ(read.count, 13U);
  for (std::size_t i = 0; i < 13; ++i) EXPECT_EQ(read[12 - i].ulPropTag, values[i].ulPropTag);
  EXPECT_EQ(read[12].Value.i, values[0].Value.i);
  EXPECT_EQ(read[11].Value.l, values[1].Value.l);
  EXPECT_EQ(std::bit_cast<std::uint32_t>(read[10].Value.flt), 0xFFC12345U);
  EXPECT_TRUE(std::signbit(read[9].Value.dbl));
  EXPECT_EQ(read[8].Value.li, values[4].Value.li);
  EXPECT_EQ(read[7].Value.at, values[5].Value.at);
  EXPECT_EQ(read[6].Value.b, 0xFFFF);
  EXPECT_EQ(read[5].Value.li, values[7].Value.li);
  EXPECT_STREQ(read[4].Value.lpszA, narrow);
  EXPECT_EQ(std::u16string(read[3].Value.lpszW), wide);
  EXPECT_EQ(read[2].Value.ft.dwLowDateTime, 0xFFFFFFFF);
  EXPECT_EQ(read[2].Value.ft.dwHighDateTime, 0xFFFFFFFE);
  EXPECT_EQ(*read[1].Value.lpguid, guid);
  EXPECT_EQ(BinaryOf(read[0]), std::string("\0\xFF\1\0", 4));
}

TEST_P(MailMessage, TextsAreKeptExactly) {
  std::vector<std::string> ids;
  for (const std::u16string& text : HardTexts()) {
    const ComPtr<IMessage> message = Create(inbox_);
    ASSERT_EQ(SetText(message.get(), platform::PR_SUBJECT, text), hr::kOk);
    ids.push_back(EntryIdOf(message.get()));
  }
  LogonAgain();
  std::size_t i = 0;
  for (const std::u16string& text : HardTexts()) {
    EXPECT_EQ(TextOf(Open<IMessage>(ids[i]).get(), platform::PR_SUBJECT), text) << i;
    ++i;
  }
}

TEST_P(MailMessage, EmptyBytesAreAValue) {
  const std::uint32_t tag = PropTag(platform::kTypeBinary, 0x6A02);
  SPropValue value{};
  value.ulPropTag = tag;
  const ComPtr<IMessage> message = Create(inbox_);
  ASSERT_EQ(message->SetProps(1, &value, nullptr), hr::kOk);
  Props read;
  Fill(message.get(), {tag}, &read);
  ASSERT_EQ(read[0].ulPropTag, tag);
  EXPECT_EQ(read[0].Value.bin.cb, 0U);
}

TEST_P(MailMessage, LaterValueReplacesTheEarlier) {
  const ComPtr<IMessage> message = Create(inbox_, u"first, and longer", 1);
  ASSERT_EQ(SetText(message.get(), platform::PR_SUBJECT, u"second"), hr::kOk);
  EXPECT_EQ(TextOf(message.get(), platform::PR_SUBJECT), u"second");
  SPropValue twice[] = {LongValue(platform::PR_MESSAGE_FLAGS, 1),
                        LongValue(platform::PR_MESSAGE_FLAGS, 33)};
  ASSERT_EQ(message->SetProps(2, twice, nullptr), hr::kOk);
  Props read;
  Fill(message.get(), {platform::PR_MESSAGE_FLAGS}, &read);
  EXPECT_EQ(read[0].Value.l, 33);
}

TEST_P(MailMessage, SetPropsTakesEffectAtOnceForEveryHolder) {
  const ComPtr<IMessage> message = Create(inbox_);
  const ComPtr<IMessage> other = Open<IMessage>(EntryIdOf(message.get()));
  ASSERT_EQ(SetText(message.get(), platform::PR_SUBJECT, u"seen"), hr::kOk);
  EXPECT_EQ(TextOf(other.get(), platform::PR_SUBJECT), u"seen");
}

TEST_P(MailMessage, MessagesDoNotShareProperties) {
  const ComPtr<IMessage> first = Create(inbox_, u"first", 1);
  const ComPtr<IMessage> second = Create(inbox_, u"second", 2);
  EXPECT_EQ(TextOf(first.get(), platform::PR_SUBJECT), u"first");
  EXPECT_EQ(TextOf(second.get(), platform::PR_SUBJECT), u"second");
}

TEST_P(MailMessage, NewMessageHasNothingButWhatIsComputed) {
  const ComPtr<IMessage> message = Create(outbox_);
  Props read;
  Fill(message.get(),
       {platform::PR_ENTRYID, platform::PR_SUBJECT, platform::PR_OBJECT_TYPE,
        platform::PR_MESSAGE_DELIVERY_TIME, platform::PR_PARENT_ENTRYID},
       &read);
  EXPECT_EQ(read.result, hr::kErrorsReturned);
  ASSERT_EQ(read.count, 5U);
  EXPECT_EQ(read[0].Value.bin.cb, 16U);
  EXPECT_EQ(platform::PropType(read[1].ulPropTag), platform::kTypeError);
  EXPECT_EQ(read[1].Value.err, hr::kNotFound);
  EXPECT_EQ(read[2].Value.ul, platform::kObjectMessage);
  EXPECT_EQ(platform::PropType(read[3].ulPropTag), platform::kTypeError);
  EXPECT_EQ(BinaryOf(read[4]), outbox_id_);
}

TEST_P(MailMessage, TagOfOpenTypeGivesWhatIsThere) {
  const ComPtr<IMessage> message = Create(inbox_, u"any", 1);
  Props read;
  Fill(message.get(),
       {PropTag(platform::kTypeUnspecified, platform::PropId(platform::PR_SUBJECT)),
        PropTag(platform::kTypeUnspecified, platform::PropId(platform::PR_ENTRYID))},
       &read);
  ASSERT_EQ(read.result, hr::kOk);
  EXPECT_EQ(read[0].ulPropTag, platform::PR_SUBJECT);
  EXPECT_EQ(std::u16string(read[0].Value.lpszW), u"any");
  EXPECT_EQ(read[1].ulPropTag, platform::PR_ENTRYID);
}

TEST_P(MailMessage, GetPropsNeedsTagsAndPointers) {
  const ComPtr<IMessage> message = Create(inbox_);
  Tags tags{platform::PR_ENTRYID};
  Tags none{};
  std::uint32_t count = 77;
  SPropValue* values = nullptr;
  EXPECT_EQ(message->GetProps(nullptr, 0, &count, &values), hr::kInvalidArgument);
  EXPECT_EQ(message->GetProps(none.get(), 0, &count, &values), hr::kInvalidArgument);
  EXPECT_EQ(message->GetProps(tags.get(), 0, nullptr, &values), hr::kInvalidArgument);
  EXPECT_EQ(message->GetProps(tags.get(), 0, &count, nullptr), hr::kInvalidArgument);
}

TEST_P(MailMessage, OneRootBlockHoldsAnAnswer) {
  const ComPtr<IMessage> message = Create(inbox_, u"subject", 1);
  const std::int64_t before = platform::LiveMapiBuffers();
  Props read;
  Fill(message.get(), {platform::PR_SUBJECT, platform::PR_ENTRYID, platform::PR_PARENT_ENTRYID},
       &read);
  EXPECT_EQ(platform::LiveMapiBuffers(), before + 1);
}

// --- Problems ---------------------------------------------------------------

TEST_P(MailMessage, ComputedPropertiesAreProblemsAndTheOthersAreSet) {
  std::uint8_t id[16] = {};
  std::u16string text = u"set";
  SPropValue values[4] = {};
  values[0].ulPropTag = platform::PR_ENTRYID;
  values[0].Value.bin = {16, id};
  values[1] = TextValue(platform::PR_SUBJECT, text);
  values[2].ulPropTag = platform::PR_PARENT_ENTRYID;
  values[2].Value.bin = {16, id};
  values[3] = LongValue(platform::PR_OBJECT_TYPE, 3);
  const ComPtr<IMessage> message = Create(inbox_);
  platform::SPropProblemArray* problems = nullptr;
  EXPECT_EQ(message->SetProps(4, values, &problems), hr::kOk);
  ASSERT_NE(problems, nullptr);
  ASSERT_EQ(problems->cProblem, 3U);
  const auto* const problem = &problems->aProblem[0];
  EXPECT_EQ(problem[0].ulIndex, 0U);
  EXPECT_EQ(problem[0].ulPropTag, platform::PR_ENTRYID);
  EXPECT_EQ(problem[0].scode, hr::kComputed);
  EXPECT_EQ(problem[1].ulIndex, 2U);
  EXPECT_EQ(problem[2].ulIndex, 3U);
  EXPECT_EQ(problem[2].ulPropTag, platform::PR_OBJECT_TYPE);
  platform::MAPIFreeBuffer(problems);
  EXPECT_EQ(TextOf(message.get(), platform::PR_SUBJECT), u"set");
  EXPECT_EQ(EntryIdOf(message.get(), platform::PR_PARENT_ENTRYID), inbox_id_);
}

TEST_P(MailMessage, TypesThatCannotBeStoredAreProblems) {
  SPropValue values[5] = {};
  values[0].ulPropTag = PropTag(platform::kTypeObject, 0x6A03);
  values[1].ulPropTag = PropTag(platform::kTypeError, 0x6A03);
  values[2].ulPropTag = PropTag(platform::kTypeUnicode | 0x1000, 0x6A03);
  values[3].ulPropTag = PropTag(platform::kTypeUnspecified, 0x6A03);
  values[4].ulPropTag = PropTag(platform::kTypeNull, 0x6A03);
  const ComPtr<IMessage> message = Create(inbox_);
  platform::SPropProblemArray* problems = nullptr;
  EXPECT_EQ(message->SetProps(5, values, &problems), hr::kOk);
  ASSERT_NE(problems, nullptr);
  EXPECT_EQ(problems->cProblem, 5U);
  EXPECT_EQ(problems->aProblem[0].scode, hr::kInvalidType);
  platform::MAPIFreeBuffer(problems);
}

TEST_P(MailMessage, MissingPointersAreProblems) {
  SPropValue values[4] = {};
  values[0].ulPropTag = platform::PR_SUBJECT;
  values[1].ulPropTag = PropTag(platform::kTypeString8, 0x6A03);
  values[2].ulPropTag = PropTag(platform::kTypeClsid, 0x6A03);
  values[3].ulPropTag = PropTag(platform::kTypeBinary, 0x6A03);
  values[3].Value.bin = {1, nullptr};
  const ComPtr<IMessage> message = Create(inbox_);
  platform::SPropProblemArray* problems = nullptr;
  EXPECT_EQ(message->SetProps(4, values, &problems), hr::kOk);
  ASSERT_NE(problems, nullptr);
  EXPECT_EQ(problems->cProblem, 4U);
  EXPECT_EQ(problems->aProblem[0].scode, hr::kInvalidArgument);
  platform::MAPIFreeBuffer(problems);
}

TEST_P(MailMessage, ProblemsNeedNotBeAskedFor) {
  SPropValue value = LongValue(platform::PR_OBJECT_TYPE, 3);
  const ComPtr<IMessage> message = Create(inbox_);
  EXPECT_EQ(message->SetProps(1, &value, nullptr), hr::kOk);
}

TEST_P(MailMessage, SetPropsOfNothingIsInvalid) {
  SPropValue value = LongValue(platform::PR_MESSAGE_FLAGS, 3);
  const ComPtr<IMessage> message = Create(inbox_);
  platform::SPropProblemArray* problems = nullptr;
  EXPECT_EQ(message->SetProps(0, &value, &problems), hr::kInvalidArgument);
  EXPECT_EQ(message->SetProps(1, nullptr, &problems), hr::kInvalidArgument);
  EXPECT_EQ(problems, nullptr);
}

// --- Deleting ---------------------------------------------------------------

TEST_P(MailMessage, DeletedPropertyIsMissing) {
  const ComPtr<IMessage> message = Create(inbox_, u"gone", 1);
  Tags tags{platform::PR_SUBJECT, platform::PR_SUBJECT};
  platform::SPropProblemArray* problems = nullptr;
  EXPECT_EQ(message->DeleteProps(tags.get(), &problems), hr::kOk);
  EXPECT_EQ(problems, nullptr);
  EXPECT_EQ(TextOf(message.get(), platform::PR_SUBJECT), u"(missing)");
  Props time;
  Fill(message.get(), {platform::PR_MESSAGE_DELIVERY_TIME}, &time);
  EXPECT_EQ(time.result, hr::kOk);
}

TEST_P(MailMessage, DeletingWhatIsNotThereFailsAndDeletesNothing) {
  const ComPtr<IMessage> message = Create(inbox_, u"kept", 1);
  Tags tags{platform::PR_SUBJECT, platform::PR_BODY};
  EXPECT_EQ(message->DeleteProps(tags.get(), nullptr), hr::kFail);
  Tags computed{platform::PR_SUBJECT, platform::PR_ENTRYID};
  EXPECT_EQ(message->DeleteProps(computed.get(), nullptr), hr::kComputed);
  EXPECT_EQ(TextOf(message.get(), platform::PR_SUBJECT), u"kept");
  EXPECT_EQ(message->DeleteProps(nullptr, nullptr), hr::kInvalidArgument);
}

// --- What there is not ------------------------------------------------------

TEST_P(MailMessage, WhatThePlatformLacksIsNotSupported) {
  const ComPtr<IMessage> message = Create(inbox_);
  ComPtr<platform::IUnknown> object;
  ComPtr<IMAPITable> table;
  std::uint32_t number = 77;
  const HRESULT results[] = {
      message->SaveChanges(0),
      message->GetPropList(0, nullptr),
      message->GetAttachmentTable(0, table.put()),
      message->OpenAttach(0, nullptr, 0, object.put()),
      message->CreateAttach(nullptr, 0, &number, object.put()),
      message->DeleteAttach(0, 0, nullptr, 0),
      message->SubmitMessage(0),
      message->SetReadFlag(0),
  };
  for (const HRESULT result : results) EXPECT_EQ(result, hr::kNoSupport);
  EXPECT_EQ(number, 0U);
}

INSTANTIATE_TEST_SUITE_P(Devices, MailMessage, ::testing::ValuesIn(MailDeviceKinds()), &NameOfKind);

}  // namespace
}  // namespace tamu::testing
