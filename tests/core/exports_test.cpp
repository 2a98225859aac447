#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "core/file.h"
#include "core/memory.h"
#include "core/wide.h"
#include "platform/files.h"
#include "support/card_reading.h"
#include "support/log_capture.h"
#include "support/no_device.h"

namespace tamu {
namespace {

using testing::Card;
using testing::GoodCard;
using testing::LogCapture;
using testing::PathPointer;
using testing::ReadContent;
using testing::Reading;
using testing::ScratchFolder;

std::u16string TextOf(TamuResult code) { return AsUtf16(TAMU_CodeToString(code)); }

bool IsZero(const ObjectRecord& record) {
  return std::all_of(std::begin(record.bytes), std::end(record.bytes),
                     [](std::uint8_t byte) { return byte == 0; });
}

TEST(CodeToString, EveryKnownCodeHasItsText) {
  EXPECT_EQ(TextOf(0), u"OK");
  EXPECT_EQ(TextOf(1), u"General failure");
  EXPECT_EQ(TextOf(3), u"The object store is not opened");
  EXPECT_EQ(TextOf(4), u"Reached the end-of-store");
  EXPECT_EQ(TextOf(6), u"The object was not found");
  EXPECT_EQ(TextOf(7), u"Could not open the file");
  EXPECT_EQ(TextOf(8), u"The stream of data does not contain a valid object");
  EXPECT_EQ(TextOf(9), u"The object id is invalid");
  EXPECT_EQ(TextOf(10), u"The object is missing a required field");
  EXPECT_EQ(TextOf(14), u"General PIM Error");
  EXPECT_EQ(TextOf(15), u"The PIM is not opened");
  EXPECT_EQ(TextOf(16), u"The type is not supported");
  EXPECT_EQ(TextOf(17), u"Parsing successful");
  EXPECT_EQ(TextOf(18), u"Parsing warning");
  EXPECT_EQ(TextOf(19), u"Parsing error");
}

TEST(CodeToString, AnyOtherCodeIsNamedByItsNumber) {
  EXPECT_EQ(TextOf(2), u"Unknown TAMU error, code=2");
  EXPECT_EQ(TextOf(5), u"Unknown TAMU error, code=5");
  EXPECT_EQ(TextOf(11), u"Unknown TAMU error, code=11");
  EXPECT_EQ(TextOf(20), u"Unknown TAMU error, code=20");
  EXPECT_EQ(TextOf(0xFFFFFFFF), u"Unknown TAMU error, code=-1");
  EXPECT_EQ(TextOf(0x80000000), u"Unknown TAMU error, code=-2147483648");
}

TEST(CodeToString, UnknownCodesShareOneBuffer) {
  const TamuWchar* const first = TAMU_CodeToString(100);
  const TamuWchar* const second = TAMU_CodeToString(200);
  EXPECT_EQ(first, second);
  EXPECT_EQ(std::u16string(AsUtf16(first)), u"Unknown TAMU error, code=200");
}

TEST(ReadObjects, AFileThatDoesNotOpenGives7) {
  const ScratchFolder folder;
  EXPECT_EQ(TAMU_ReadObjects(PathPointer(folder.Wide("missing")), nullptr, nullptr),
            TAMU_FILE_NOT_OPENED);
  EXPECT_EQ(TAMU_ReadObjects(PathPointer(folder.path().u16string()), nullptr, nullptr),
            TAMU_FILE_NOT_OPENED);
}

TEST(ReadObjects, TheFirstLineHasToBeginAKnownObjectInThisSpelling) {
  EXPECT_EQ(ReadContent(GoodCard()).result, TAMU_OK);
  for (const char* first_line :
       {"begin:VCARD", "begin:vcard", "BEGIN:vCard", "BEGIN:VEVENT", "BEGIN VCARD", "VERSION:2.1",
        "", "\n", "BEGIN", "BEGIN: VCARD", "BEGIN:VCARD ", "VCARD:BEGIN"}) {
    EXPECT_EQ(ReadContent(std::string(first_line) + "\r\nVERSION:2.1\r\n").result,
              TAMU_NO_VALID_OBJECT)
        << first_line;
  }
}

TEST(ReadObjects, AnEmptyFileHoldsNoObject) {
  EXPECT_EQ(ReadContent("").result, TAMU_NO_VALID_OBJECT);
}

// "BEGIN" is looked for anywhere before the colon. Kept on purpose.
TEST(ReadObjects, BeginIsFoundAsASubstringOfTheName) {
  // The dispatcher takes these for files of the format; its reader then wants BEGIN itself.
  EXPECT_EQ(ReadContent("X-BEGIN-X:VNOTE\r\n").result, TAMU_PARSE_ERROR);
  EXPECT_EQ(ReadContent("X-BEGIN-X:VCARD\r\n").result, TAMU_PARSE_ERROR);
}

TEST(ReadObjects, TheObjectNameChoosesTheReader) {
  const std::pair<const char*, const char*> formats[] = {
      {"VCARD", "vCard"}, {"VCALENDAR", "vCalendar"}, {"VNOTE", "vNote"}};
  for (const auto& [name, format] : formats) {
    const LogCapture log;
    EXPECT_EQ(ReadContent(std::string("X-BEGIN:") + name + "\r\n").result, TAMU_PARSE_ERROR);
    EXPECT_TRUE(log.Has(std::string("TAMU:  Error - ") + format + " does not have a BEGIN tag"));
  }
}

TEST(ReadObjects, OnlyTheFirst511CharactersOfTheFirstLineCount) {
  EXPECT_EQ(ReadContent("BEGIN:VCARD" + std::string(600, 'x') + "\r\n").result,
            TAMU_NO_VALID_OBJECT);
  EXPECT_EQ(ReadContent(std::string(600, 'x') + "BEGIN:VCARD\r\n").result, TAMU_NO_VALID_OBJECT);
}

TEST(ReadObjects, TheFirstLineIsCutAtItsFirstCarriageReturn) {
  EXPECT_EQ(ReadContent("BEGIN:VCARD\rxVERSION:2.1\r\nN:a\r\nEND:VCARD\r\n").result, TAMU_OK);
}

TEST(ReadObjects, WarningsAreReportedAsSuccess) {
  const Reading reading = ReadContent(GoodCard("X-FOO:1\r\n"));
  EXPECT_EQ(reading.result, TAMU_OK);
  ASSERT_EQ(reading.objects.size(), 1U);
  EXPECT_EQ(reading.objects[0].status, TAMU_PARSE_WARNING);
}

TEST(ReadObjects, ANullCallbackOnlyParses) {
  const ScratchFolder folder;
  const std::size_t before = MEM_LiveBlocks();
  EXPECT_EQ(TAMU_ReadObjects(PathPointer(folder.Put("a", GoodCard())), nullptr, nullptr), TAMU_OK);
  EXPECT_EQ(MEM_LiveBlocks(), before);
}

uint32_t WriteToUser(ObjectKind kind, ObjectRecord* record, TamuResult, void* user) {
  return TAMU_WriteObject(kind, record, PathPointer(*static_cast<std::u16string*>(user)), 0);
}

TEST(WriteObject, ACallbackMayWriteTheRecordItIsGiven) {
  const ScratchFolder folder;
  std::u16string out = folder.Wide("out.vcf");
  const std::u16string in = folder.Put("in.vcf", GoodCard() + GoodCard("TEL:1\r\n"));
  EXPECT_EQ(TAMU_ReadObjects(PathPointer(in), &WriteToUser, &out), TAMU_OK);
  EXPECT_EQ(folder.Get("out.vcf"), GoodCard() + GoodCard("TEL:1\r\n"));
}

TEST(WriteObject, OverwriteEmptiesTheFileAndItsAbsenceAppends) {
  const ScratchFolder folder;
  const std::u16string path = folder.Wide("a");
  const std::string card = "BEGIN:VCARD\r\nVERSION:\r\nN:\r\nEND:VCARD\r\n";
  ObjectRecord record{};
  EXPECT_EQ(TAMU_WriteObject(KIND_CONTACT, &record, PathPointer(path), 1), TAMU_OK);
  EXPECT_EQ(TAMU_WriteObject(KIND_CONTACT, &record, PathPointer(path), 0), TAMU_OK);
  EXPECT_EQ(folder.Get("a"), card + card);
  EXPECT_EQ(TAMU_WriteObject(KIND_CONTACT, &record, PathPointer(path), 1), TAMU_OK);
  EXPECT_EQ(folder.Get("a"), card);
}

TEST(WriteObject, OnlyTheLow8BitsOfOverwriteCount) {
  const ScratchFolder folder;
  const std::u16string path = folder.Put("a", "before\n");
  ObjectRecord record{};
  TAMU_WriteObject(KIND_CONTACT, &record, PathPointer(path), 0x100);
  EXPECT_EQ(folder.Get("a").substr(0, 7), "before\n");
}

TEST(WriteObject, AnUnknownKindGives16WritesNothingAndClearsTheRecord) {
  const ScratchFolder folder;
  ObjectRecord record{};
  std::memset(record.bytes, 0xFF, sizeof record.bytes);
  EXPECT_EQ(TAMU_WriteObject(7, &record, PathPointer(folder.Wide("a")), 1), TAMU_UNSUPPORTED_TYPE);
  EXPECT_TRUE(IsZero(record));
  EXPECT_EQ(folder.FileCount(), 1U);
  EXPECT_EQ(folder.Get("a"), "");
}

TEST(WriteObject, AnUnknownKindAppendsNothing) {
  const ScratchFolder folder;
  ObjectRecord record{};
  EXPECT_EQ(TAMU_WriteObject(7, &record, PathPointer(folder.Put("a", "before")), 0),
            TAMU_UNSUPPORTED_TYPE);
  EXPECT_EQ(folder.Get("a"), "before");
}

TEST(WriteObject, AFileThatDoesNotOpenLeavesTheRecordAsItWas) {
  ObjectRecord record{};
  Property* const name = PROP_Append(&record.contact.prop_n);
  PROP_SetFromText("Doe;Jo", "", 5, name);
  EXPECT_EQ(TAMU_WriteObject(KIND_CONTACT, &record, PathPointer(u"/nowhere/a"), 1),
            TAMU_FILE_NOT_OPENED);
  EXPECT_EQ(record.contact.prop_n, name);
  RECORD_Free(KIND_CONTACT, &record);
}

TEST(WriteObject, AFailedWriteIsNotSeenInTheResult) {
  ObjectRecord record{};
  EXPECT_EQ(TAMU_WriteObject(KIND_CONTACT, &record, PathPointer(u"/dev/full"), 0), TAMU_OK);
}

TEST(GetObjectById, TheIdIsTestedBeforeTheRecord) {
  ObjectRecord record{};
  const LogCapture log;
  EXPECT_EQ(TAMU_GetObjectById(0, nullptr, nullptr), TAMU_INVALID_ID);
  EXPECT_EQ(TAMU_GetObjectById(0, nullptr, &record), TAMU_INVALID_ID);
  EXPECT_EQ(TAMU_GetObjectById(0, "00000001", nullptr), TAMU_GENERAL_FAILURE);
  EXPECT_EQ(log.texts(), std::vector<std::string>(3, "TAMU:  TAMU_GetObjectById()"));
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kInformation);
}

TEST(GetObjectById, TheRecordIsClearedFirst) {
  ObjectRecord record;
  std::memset(record.bytes, 0xFF, sizeof record.bytes);
  EXPECT_EQ(TAMU_GetObjectById(0, "1", &record), TAMU_PIM_NOT_OPENED);
  EXPECT_TRUE(IsZero(record));
}

TEST(StoreOperations, WithoutAStoreTheyAnswerThatItIsNotOpen) {
  const testing::ScopedNoDevice no_device;
  ObjectRecord record{};
  char id[16] = "before";
  EXPECT_EQ(TAMU_Open(), TAMU_GENERAL_PIM_ERROR);
  EXPECT_EQ(TAMU_AddObject(KIND_CONTACT, &record, id), TAMU_PIM_NOT_OPENED);
  EXPECT_STREQ(id, "");
  EXPECT_EQ(TAMU_AddObject(KIND_CALENDAR, &record, nullptr), TAMU_PIM_NOT_OPENED);
  EXPECT_EQ(TAMU_ModifyObject(KIND_CONTACT, "0000000a", &record), TAMU_PIM_NOT_OPENED);
  EXPECT_EQ(TAMU_FindObject(KIND_CONTACT, &record, id, 0), 0U);
  EXPECT_EQ(TAMU_Close(), TAMU_OK);
}

TEST(StoreOperations, IdsAndKindsAreTestedFirst) {
  ObjectRecord record{};
  EXPECT_EQ(TAMU_ModifyObject(KIND_NOTE, nullptr, &record), TAMU_INVALID_ID);
  EXPECT_EQ(TAMU_ModifyObject(KIND_CONTACT, "zz", &record), TAMU_INVALID_ID);
  EXPECT_EQ(TAMU_ModifyObject(6, "zz", &record), TAMU_INVALID_ID);
  EXPECT_EQ(TAMU_ModifyObject(6, "1", &record), TAMU_UNSUPPORTED_TYPE);
  EXPECT_EQ(TAMU_AddObject(6, &record, nullptr), TAMU_UNSUPPORTED_TYPE);
  EXPECT_EQ(TAMU_GetObjectById(KIND_CONTACT, "zz", &record), TAMU_INVALID_ID);
  EXPECT_EQ(TAMU_GetObjectById(KIND_NOTE, "title", &record), TAMU_UNSUPPORTED_TYPE);
  EXPECT_EQ(TAMU_GetObjectById(KIND_MSG_INBOX, "1", &record), TAMU_UNSUPPORTED_TYPE);
  for (const char* id : {"1", " 0xA", "-1", "+ff", "0X1f", "0x", "7zz"}) {
    EXPECT_EQ(TAMU_ModifyObject(KIND_CONTACT, id, &record), TAMU_PIM_NOT_OPENED) << id;
  }
}

}  // namespace
}  // namespace tamu
