#include "formats/vcard_writer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "core/memory.h"
#include "core/records.h"
#include "formats/property_emitter.h"
#include "support/card_reading.h"
#include "support/charset_setup.h"
#include "support/log_capture.h"
#include "text/property_text.h"

namespace tamu {
namespace {

using testing::GoodCard;
using testing::LogCapture;
using testing::OwnedProperty;
using testing::ScratchFolder;

// Runs `write` on an open file and returns what it wrote, line ends as LF.
template <typename Write>
std::string Written(Write write) {
  const ScratchFolder folder;
  File file;
  EXPECT_EQ(FILE_Open(folder.Wide("out").c_str(), u"wb", &file), 0U);
  write(&file);
  EXPECT_EQ(FILE_Close(&file, u"out"), 0U);
  return folder.Get("out");
}

std::string WrittenCard(const ObjectRecord& record, bool with_luid = true) {
  return Written([&](File* file) { EXPECT_EQ(VCARD_Write(file, record, with_luid), TAMU_OK); });
}

void Add(Ref<Property>* field, const char* value, const char* params = "") {
  PROP_SetFromText(value, params, kAnyComponents, PROP_Append(field));
}

class VcardWrite : public testing::CharsetSetup {
 protected:
  ~VcardWrite() override { RECORD_Free(KIND_CONTACT, &record_); }
  ObjectRecord record_{};
  ContactShape& contact_ = record_.contact;
};

TEST_F(VcardWrite, AnEmptyRecordIsFourLines) {
  EXPECT_EQ(WrittenCard(record_), "BEGIN:VCARD\nVERSION:\nN:\nEND:VCARD\n");
}

TEST_F(VcardWrite, PropertiesStandInTheirFixedOrder) {
  std::strcpy(contact_.version, "2.1");
  std::strcpy(contact_.luid, "0000000a");
  for (std::size_t i = 0; i < 17; ++i) {
    const std::string value = std::to_string(i + 1);
    Add(reinterpret_cast<Ref<Property>*>(record_.bytes + 544 + 4 * i), value.c_str());
  }
  EXPECT_EQ(WrittenCard(record_),
            "BEGIN:VCARD\nVERSION:2.1\nN:1\nFN:2\nNICKNAME:3\nBDAY:12\nADR:4\nORG:5\nTITLE:6\nROLE:"
            "7\nTEL:8\n"
            "URL:9\nEMAIL:10\nNOTE:11\nX-SPOUSE:13\nX-ANNIVERSARY:14\nX-CHILDREN:15\nX-ASSISTANT:"
            "16\nX-CAT:17\n"
            "X-IRMC-LUID:0000000a\nEND:VCARD\n");
}

TEST_F(VcardWrite, TheLuidIsWrittenOnlyWhenAskedForAndThere) {
  EXPECT_EQ(WrittenCard(record_, true).find("LUID"), std::string::npos);
  std::strcpy(contact_.luid, "7");
  EXPECT_EQ(WrittenCard(record_, false).find("LUID"), std::string::npos);
  EXPECT_NE(WrittenCard(record_, true).find("X-IRMC-LUID:7\nEND"), std::string::npos);
}

TEST_F(VcardWrite, AVersionWithoutATerminatorIs25Characters) {
  std::memset(contact_.version, '2', sizeof contact_.version);
  contact_.unused[0] = 'x';
  EXPECT_EQ(WrittenCard(record_),
            "BEGIN:VCARD\nVERSION:" + std::string(25, '2') + "\nN:\nEND:VCARD\n");
  contact_.unused[0] = 0;
}

TEST_F(VcardWrite, ParametersAndRepeatedPropertiesInChainOrder) {
  Add(&contact_.prop_tel, "123", "HOME;PREF");
  Add(&contact_.prop_email, "a@b");
  Add(&contact_.prop_email, "c@d", "INTERNET");
  EXPECT_EQ(
      WrittenCard(record_),
      "BEGIN:VCARD\nVERSION:\nN:\nTEL;HOME;PREF:123\nEMAIL:a@b\nEMAIL;INTERNET:c@d\nEND:VCARD\n");
}

TEST_F(VcardWrite, ANoteOfTwoLinesIsTwoPhysicalLines) {
  PROP_SetWide(u"First\r\nSecond", PROP_Append(&contact_.prop_note), kAllowQuotedPrintable, 0);
  EXPECT_EQ(WrittenCard(record_),
            "BEGIN:VCARD\nVERSION:\nN:\nNOTE;ENCODING=QUOTED-PRINTABLE:First=0D=0A=\nSecond\nEND:"
            "VCARD\n");
}

TEST_F(VcardWrite, WhenAnyAllocationFailsOnlyThatLineIsMissing) {
  Add(&contact_.prop_tel, "123", "HOME");
  std::strcpy(contact_.luid, "7");
  const std::string whole = WrittenCard(record_);
  const std::size_t before = MEM_LiveBlocks();
  for (std::uint64_t n = 2;; ++n) {  // the first one is the file's window
    MEM_FailNth(n);
    const std::string written = WrittenCard(record_);
    const bool struck = MEM_FailureStruck();
    MEM_FailNth(0);
    if (!struck) {
      EXPECT_EQ(written, whole);
      break;
    }
    EXPECT_LT(written.size(), whole.size()) << n;
    EXPECT_GE(std::count(written.begin(), written.end(), '\n'), 5) << n;
  }
  EXPECT_EQ(MEM_LiveBlocks(), before);
}

uint32_t WriteTo(ObjectKind kind, ObjectRecord* record, TamuResult, void* user) {
  return TAMU_WriteObject(kind, record, testing::PathPointer(*static_cast<std::u16string*>(user)),
                          0);
}

TEST_F(VcardWrite, WhatIsReadAndWrittenReadsTheSame) {
  const ScratchFolder folder;
  const std::string cards =
      "BEGIN:VCARD\r\nVERSION:2.1\r\nN;CHARSET=UTF-8:M\xC3\xBCller;;;;\r\nADR;HOME;POSTAL:;;x\\;y;;"
      ";;\r\n"
      "NOTE;ENCODING=QUOTED-PRINTABLE:a=0D=0A=\r\n b=0D=0A\r\nX-IRMC-LUID:1\r\nEND:VCARD\r\n" +
      GoodCard("TEL;;HOME;:1\r\n");
  std::u16string first = folder.Wide("first");
  std::u16string second = folder.Wide("second");
  EXPECT_EQ(TAMU_ReadObjects(testing::PathPointer(folder.Put("in", cards)), &WriteTo, &first),
            TAMU_OK);
  EXPECT_EQ(folder.Get("first"), cards);
  EXPECT_EQ(TAMU_ReadObjects(testing::PathPointer(first), &WriteTo, &second), TAMU_OK);
  EXPECT_EQ(folder.Get("second"), cards);
}

TEST(VobjPutLine, WithAndWithoutParameters) {
  EXPECT_EQ(Written([](File* file) {
              EXPECT_EQ(VOBJ_PutLine(file, "A", "", "x"), 0U);
              EXPECT_EQ(VOBJ_PutLine(file, "B", "P;Q", "y"), 0U);
            }),
            "A:x\nB;P;Q:y\n");
}

TEST(VobjPutLine, NoMemoryIsLogged) {
  const LogCapture log;
  EXPECT_EQ(Written([](File* file) {
              MEM_FailNth(1);
              EXPECT_EQ(VOBJ_PutLine(file, "A", "", "x"), 1U);
              MEM_FailNth(0);
            }),
            "");
  EXPECT_EQ(log.texts(),
            std::vector<std::string>{"TAMU:  Insufficient memory to generate vCard string"});
}

std::string Formatted(const OwnedProperty& property) {
  const std::size_t size = VOBJ_FormatProperty("X", *property.get(), nullptr, 0);
  std::string out(size, '#');
  EXPECT_EQ(VOBJ_FormatProperty("X", *property.get(), out.data(), size), size);
  EXPECT_EQ(out.back(), '\0');
  out.pop_back();
  return out;
}

TEST(VobjFormatProperty, AComponentWithoutTextContributesItsSeparator) {
  const OwnedProperty property("a;b", "");
  PROP_SetValue(property.get(), MEM_CopyText("d"), 3);
  EXPECT_EQ(Formatted(property), "X:a;b;;d");
}

TEST(VobjFormatProperty, AParameterWithoutTextIsLeftOut) {
  const OwnedProperty property("a", "HOME");
  property->params->next = MEM_New<StringItem>().release();
  EXPECT_EQ(Formatted(property), "X;HOME:a");
}

TEST(VobjFormatProperty, WithoutValuesTheLineEndsInAColon) {
  EXPECT_EQ(Formatted(OwnedProperty()), "X:");
}

TEST(VobjFormatProperty, ASmallBufferIsNotOverrun) {
  const OwnedProperty property("value", "");
  char out[5] = {'#', '#', '#', '#', '#'};
  EXPECT_EQ(VOBJ_FormatProperty("X", *property.get(), out, 4), 8U);
  EXPECT_EQ(std::string(out, 5), std::string("X:v\0#", 5));
}

TEST(VobjPutProperty, AnEmptyChainIsWrittenOnlyWhenAskedFor) {
  EXPECT_EQ(Written([](File* file) {
              VOBJ_PutProperty(file, "A", nullptr, false);
              VOBJ_PutProperty(file, "B", nullptr, true);
              VOBJ_PutProperty(file, "", nullptr, true);
            }),
            "B:\n");
}

TEST(VobjPutProperty, LinesOfEveryLengthAreWrittenWhole) {
  for (const std::size_t length : {509U, 510U, 511U, 512U, 513U, 100000U}) {
    const OwnedProperty property(std::string(length - 2, 'x'), "");
    const std::string written =
        Written([&](File* file) { VOBJ_PutProperty(file, "N", property.get(), false); });
    EXPECT_EQ(written, "N:" + std::string(length - 2, 'x') + "\n") << length;
  }
}

TEST(VobjPutProperty, ALongLineThatMemoryRunsOutForIsLeftOutAlone) {
  Ref<Property> chain = nullptr;
  for (const std::string& value :
       {std::string("first"), std::string(2000, 'x'), std::string("last")}) {
    PROP_SetFromText(value.c_str(), "", 1, PROP_Append(&chain));
  }
  const std::string written = Written([&](File* file) {
    MEM_FailNth(1);
    VOBJ_PutProperty(file, "NOTE", chain, false);
    MEM_FailNth(0);
  });
  EXPECT_EQ(written, "NOTE:first\nNOTE:last\n");
  PROP_Free(chain);
}

std::string Qp(const char* text, bool qp = true) {
  return Written([=](File* file) { EXPECT_EQ(VOBJ_PutQpText(file, text, qp), 0U); });
}

TEST(VobjPutQpText, IsCutAfterEachEncodedLineFeedThatSomethingFollows) {
  EXPECT_EQ(Qp("a=0D=0Ab=0D=0Ac"), "a=0D=0A=\nb=0D=0A=\nc\n");
  EXPECT_EQ(Qp("a=0D=0A"), "a=0D=0A\n");
  EXPECT_EQ(Qp("=0A=0A"), "=0A=\n=0A\n");
  EXPECT_EQ(Qp("a=0D"), "a=0D\n");
}

TEST(VobjPutQpText, AnEmptyTextWritesNothing) { EXPECT_EQ(Qp(""), ""); }

TEST(VobjPutQpText, TheFlagChangesNothing) { EXPECT_EQ(Qp("a=0Ab", false), "a=0A=\nb\n"); }

TEST(VobjPutQpText, ALongLineIsWrittenWhole) {
  const std::string text(100000, 'x');
  EXPECT_EQ(Qp(text.c_str()), text + "\n");
}

TEST(VobjPutQpText, AFailedLastWriteIsLogged) {
  const ScratchFolder folder;
  File file;
  ASSERT_EQ(FILE_Open(folder.Wide("out").c_str(), u"w", &file), 0U);
  const platform::ScopedFailure failure(platform::WriteFile, 1, 112);
  const LogCapture log;
  EXPECT_EQ(VOBJ_PutQpText(&file, std::string(100000, 'x'), false), 1U);
  EXPECT_EQ(log.texts(), std::vector<std::string>{"TAMU:  Unable to put string to file"});
}

}  // namespace
}  // namespace tamu
