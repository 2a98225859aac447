#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "core/records.h"
#include "formats/vnote_reader.h"
#include "formats/vnote_writer.h"
#include "support/log_capture.h"
#include "support/object_reading.h"
#include "text/property.h"

namespace tamu {
namespace {

using testing::LogCapture;
using testing::ObjectReading;
using testing::ReadObjectsOf;
using testing::ScratchFolder;

constexpr const char* kMissing =
    "TAMU:  Error - vNote missing END tag or does not contain required VERSION property";

std::string Note(const std::string& lines = "", const std::string& version = "1.1") {
  return "BEGIN:VNOTE\r\nVERSION:" + version + "\r\n" + lines + "END:VNOTE\r\n";
}

TEST(VnoteRead, TwoNotesBackToBackAreTwoCallbacks) {
  const ObjectReading reading =
      ReadObjectsOf(Note("BODY:a\r\nX-IRMC-LUID:1 2\r\n") + Note("BODY:b\r\n"));
  EXPECT_EQ(reading.result, TAMU_OK);
  ASSERT_EQ(reading.objects.size(), 2U);
  EXPECT_EQ(reading.objects[0].kind, KIND_NOTE);
  EXPECT_EQ(reading.objects[0].status, TAMU_PARSE_OK);
  EXPECT_EQ(reading.objects[0].luid, "1 2");
  EXPECT_EQ(reading.objects[1].written, "BEGIN:VNOTE\nVERSION:1.1\nBODY:b\nEND:VNOTE\n");
}

TEST(VnoteRead, AWarningSticksToLaterNotes) {
  const ObjectReading reading = ReadObjectsOf(Note("X-FOO:1\r\n") + Note());
  ASSERT_EQ(reading.objects.size(), 2U);
  EXPECT_EQ(reading.objects[1].status, TAMU_PARSE_WARNING);
}

TEST(VnoteRead, AnythingElseBehindANoteEndsTheReadingQuietly) {
  const LogCapture log;
  EXPECT_EQ(ReadObjectsOf(Note() + "BEGIN:VCARD\r\n" + Note()).objects.size(), 1U);
  EXPECT_EQ(ReadObjectsOf(Note() + "BEGIN: V NOTE\r\nVERSION:1.1\r\nEND:VNOTE\r\n").objects.size(),
            2U);
  EXPECT_TRUE(log.lines().empty());
}

TEST(VnoteRead, AFileThatDoesNotBeginWithANoteIsAnError) {
  const LogCapture log;
  EXPECT_EQ(ReadObjectsOf("X-BEGIN:VNOTE\r\nVERSION:1.1\r\nEND:VNOTE\r\n").result,
            TAMU_PARSE_ERROR);
  EXPECT_EQ(log.texts(),
            std::vector<std::string>{"TAMU:  Error - vNote does not have a BEGIN tag"});
}

TEST(VnoteReadBody, Version11IsTheHighest) {
  EXPECT_EQ(ReadObjectsOf(Note("", "1.1")).objects.size(), 1U);
  EXPECT_EQ(ReadObjectsOf(Note("", "1.0")).objects.size(), 1U);
  const LogCapture log;
  EXPECT_EQ(ReadObjectsOf(Note("", "1.2")).result, TAMU_PARSE_ERROR);
  EXPECT_EQ(log.texts(),
            std::vector<std::string>{"TAMU:  Error - vNote version '1.2' is not supported"});
}

// Kept on purpose.
TEST(VnoteReadBody, AVersionInsideANestedBlockCountsAsSeenAndIsNotChecked) {
  const ObjectReading reading =
      ReadObjectsOf("BEGIN:VNOTE\r\nBEGIN:X\r\nVERSION:9.9\r\nBODY:no\r\nEND:X\r\nEND:VNOTE\r\n");
  ASSERT_EQ(reading.objects.size(), 1U);
  EXPECT_EQ(reading.objects[0].written, "BEGIN:VNOTE\nVERSION:\nBODY:\nEND:VNOTE\n");
}

TEST(VnoteReadBody, NestedBlocksAreSkippedToTheirEnd) {
  const ObjectReading reading = ReadObjectsOf(Note(
      "BEGIN:A\r\nBEGIN:B\r\nX-IRMC-LUID:no\r\nEND:B\r\nBODY:no\r\nEND:A\r\nCLASS:PUBLIC\r\n"));
  ASSERT_EQ(reading.objects.size(), 1U);
  EXPECT_EQ(reading.objects[0].written,
            "BEGIN:VNOTE\nVERSION:1.1\nBODY:\nCLASS:PUBLIC\nEND:VNOTE\n");
}

TEST(VnoteReadBody, VersionAndIdentifierAreCutToTheirFields) {
  const std::string version = "1." + std::string(23, '0');
  const std::string luid(600, 'x');
  const ObjectReading reading = ReadObjectsOf(Note("X-IRMC-LUID:" + luid + "\r\n", version + "1"));
  EXPECT_EQ(reading.objects.at(0).version, version);
  EXPECT_EQ(reading.objects[0].luid, luid.substr(0, 511));
  const LogCapture log;
  ReadObjectsOf(Note("", "2" + version));
  EXPECT_TRUE(
      log.Has("TAMU:  Error - vNote version '2" + version.substr(0, 24) + "' is not supported"));
}

TEST(VnoteReadBody, AllComponentsAreKept) {
  const ObjectReading reading = ReadObjectsOf(Note("BODY:a;b;c;d;e;f;g;h;i;j;k;l\r\n"));
  EXPECT_EQ(reading.objects.at(0).written,
            "BEGIN:VNOTE\nVERSION:1.1\nBODY:a;b;c;d;e;f;g;h;i;j;k;l\nEND:VNOTE\n");
}

TEST(VnoteReadBody, WithoutEndOrVersionItIsAnError) {
  for (const char* content :
       {"BEGIN:VNOTE\r\nVERSION:1.1\r\nBODY:a\r\n", "BEGIN:VNOTE\r\nBODY:a\r\nEND:VNOTE\r\n"}) {
    const LogCapture log;
    const ObjectReading reading = ReadObjectsOf(content);
    EXPECT_EQ(reading.result, TAMU_PARSE_ERROR);
    EXPECT_TRUE(reading.objects.empty());
    EXPECT_EQ(log.texts(), std::vector<std::string>{kMissing});
  }
}

TEST(VnoteReadBody, BlankLinesAndUnknownPropertiesWarn) {
  const LogCapture log;
  EXPECT_EQ(ReadObjectsOf(Note("\r\nX-FOO:1\r\n")).objects.at(0).status, TAMU_PARSE_WARNING);
  EXPECT_EQ(log.texts(), (std::vector<std::string>{
                             "TAMU:  Warning - Parser encounted a blank line in vNote",
                             "TAMU:  Warning - Parser encountered unknown property: 'X-FOO'"}));
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kError);
  EXPECT_EQ(log.lines()[1].severity, LogSeverity::kInformation);
}

TEST(VnoteReadBody, BlanksInNamesAndParametersGoAndThoseInValuesStay) {
  const ObjectReading reading = ReadObjectsOf(Note("SUM MARY; X = Y :a b;c\r\nSUMMARY:second\r\n"));
  EXPECT_EQ(reading.objects.at(0).written,
            "BEGIN:VNOTE\nVERSION:1.1\nSUMMARY;X=Y:a b;c\nSUMMARY:second\nBODY:\nEND:VNOTE\n");
}

TEST(VnoteRead, WhenAnyAllocationFailsNothingIsLeftAndReadingEnds) {
  const ScratchFolder folder;
  const std::u16string path = folder.Put("a", Note("BODY;X=Y:a\r\n") + Note());
  for (const bool and_after : {false, true}) {
    for (std::uint64_t n = 1;; ++n) {
      ASSERT_LT(n, 100U);
      const std::size_t before = MEM_LiveBlocks();
      MEM_FailNth(n, and_after);
      TAMU_ReadObjects(reinterpret_cast<const TamuWchar*>(path.c_str()), nullptr, nullptr);
      const bool struck = MEM_FailureStruck();
      MEM_FailNth(0);
      EXPECT_EQ(MEM_LiveBlocks(), before) << n;
      if (!struck) break;
    }
  }
}

std::string Written(const ObjectRecord& record, bool write_luid) {
  const ScratchFolder folder;
  File file;
  EXPECT_EQ(FILE_Open(folder.Wide("out").c_str(), u"wb", &file), 0U);
  EXPECT_EQ(VNOTE_Write(&file, record, write_luid), TAMU_OK);
  EXPECT_EQ(FILE_Close(&file, u"out"), 0U);
  return folder.Get("out");
}

TEST(VnoteWrite, PropertiesStandInTheirOrder) {
  ObjectRecord record{};
  for (std::size_t offset = 544; offset <= 564; offset += 4) {
    auto* const field = reinterpret_cast<Ref<Property>*>(record.bytes + offset);
    PROP_SetFromText(std::to_string(offset).c_str(), "", kAnyComponents, PROP_Append(field));
  }
  std::strcpy(record.note.luid, "7");
  const std::string head =
      "BEGIN:VNOTE\nVERSION:\nDCREATED:544\nLAST-MODIFIED:548\nSUMMARY:564\nBODY:560\nCATEGORIES:"
      "552\nCLASS:556\n";
  EXPECT_EQ(Written(record, true), head + "X-IRMC-LUID:7\nEND:VNOTE\n");
  EXPECT_EQ(Written(record, false), head + "END:VNOTE\n");
  RECORD_Free(KIND_NOTE, &record);
}

TEST(VnoteWrite, ANoteWithoutBodyHasAnEmptyBodyLine) {
  const ObjectRecord record{};
  EXPECT_EQ(Written(record, true), "BEGIN:VNOTE\nVERSION:\nBODY:\nEND:VNOTE\n");
}

TEST(VnoteWriteLine, NoMemoryIsLogged) {
  const ScratchFolder folder;
  File file;
  ASSERT_EQ(FILE_Open(folder.Wide("out").c_str(), u"wb", &file), 0U);
  const LogCapture log;
  MEM_FailNth(1);
  EXPECT_EQ(VNOTE_WriteLine(&file, "C", "", "z"), 1U);
  MEM_FailNth(0);
  EXPECT_EQ(log.texts(),
            std::vector<std::string>{"TAMU:  Insufficient memory to generate vNote string"});
}

}  // namespace
}  // namespace tamu
