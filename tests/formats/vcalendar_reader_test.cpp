#include "formats/vcalendar_reader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/records.h"
#include "support/log_capture.h"
#include "support/object_reading.h"
#include "support/properties.h"

namespace tamu {
namespace {

using testing::LogCapture;
using testing::ObjectReading;
using testing::ReadObjectsOf;
using testing::ScratchFolder;

constexpr const char* kVersionMessage =
    "TAMU:  Error - vCalendar does not contain required VERSION property";
constexpr const char* kMandatory =
    "TAMU:  Warning - vCalendar does not contain all mandetory properties";

std::string Calendar(const std::string& lines) {
  return "BEGIN:VCALENDAR\r\nVERSION:1.0\r\n" + lines + "END:VCALENDAR\r\n";
}
std::string Event(const std::string& lines = "") {
  return "BEGIN:VEVENT\r\nDESCRIPTION:d\r\nDTSTART:20000101T000000\r\n" + lines + "END:VEVENT\r\n";
}
std::string ToDo(const std::string& lines = "") {
  return "BEGIN:VTODO\r\nCATEGORIES:c\r\nCOMPLETED:\r\nDESCRIPTION:d\r\nDUE:x\r\nPRIORITY:"
         "1\r\nSTATUS:s\r\n"
         "SUMMARY:y\r\n" +
         lines + "END:VTODO\r\n";
}

bool Has(const testing::ReadObject& object, const std::string& line) {
  return ("\n" + object.written).find("\n" + line + "\n") != std::string::npos;
}

TEST(VcalRead, TheComponentsOfAllCalendarsAreDelivered) {
  const ObjectReading reading = ReadObjectsOf(Calendar(Event() + ToDo()) + Calendar(ToDo()));
  EXPECT_EQ(reading.result, TAMU_OK);
  ASSERT_EQ(reading.objects.size(), 3U);
  for (const auto& object : reading.objects) {
    EXPECT_EQ(object.kind, KIND_CALENDAR);
    EXPECT_EQ(object.status, TAMU_PARSE_OK);
  }
  EXPECT_TRUE(Has(reading.objects[0], "BEGIN:VEVENT"));
  EXPECT_TRUE(Has(reading.objects[1], "BEGIN:VTODO"));
  EXPECT_TRUE(Has(reading.objects[2], "BEGIN:VTODO"));
}

TEST(VcalRead, AThirdObjectThatIsNoCalendarEndsTheReading) {
  for (const char* third : {"BEGIN:VCARD\r\n", "\r\n", "text\r\n", "BEGIN:vcalendar\r\n"}) {
    const LogCapture log;
    const ObjectReading reading =
        ReadObjectsOf(Calendar(Event()) + Calendar(Event()) + third + Calendar(Event()));
    EXPECT_EQ(reading.result, TAMU_OK) << third;
    EXPECT_EQ(reading.objects.size(), 2U) << third;
    EXPECT_TRUE(log.lines().empty()) << third;
  }
}

TEST(VcalRead, BlanksInTheBeginLineDoNotCount) {
  EXPECT_EQ(ReadObjectsOf(Calendar(Event()) + "BE GIN: VCALENDAR \r\nVERSION:1.0\r\n" + Event() +
                          "END:VCALENDAR\r\n")
                .objects.size(),
            2U);
}

TEST(VcalRead, AWarningSticksToLaterCalendarsResultsButNotTheirStatus) {
  const ObjectReading reading =
      ReadObjectsOf(Calendar(Event("X-FOO:1\r\n") + Event()) + Calendar(Event()));
  ASSERT_EQ(reading.objects.size(), 3U);
  EXPECT_EQ(reading.objects[0].status, TAMU_PARSE_WARNING);
  EXPECT_EQ(reading.objects[1].status, TAMU_PARSE_WARNING);
  EXPECT_EQ(reading.objects[2].status, TAMU_PARSE_OK);
}

TEST(VcalRead, AnErrorEndsTheFileAndEarlierComponentsStayDelivered) {
  const ObjectReading reading =
      ReadObjectsOf(Calendar(Event() + "BEGIN:VALARM\r\n" + Event()) + Calendar(Event()));
  EXPECT_EQ(reading.result, TAMU_PARSE_ERROR);
  EXPECT_EQ(reading.objects.size(), 1U);
}

TEST(VcalReadCalendar, AnUnknownBeginIsAnError) {
  const LogCapture log;
  EXPECT_EQ(ReadObjectsOf(Calendar("BEGIN:VALARM\r\nEND:VALARM\r\n")).result, TAMU_PARSE_ERROR);
  EXPECT_EQ(log.texts(), std::vector<std::string>{"TAMU:  Error - Unknown BEGIN tag in vCalendar"});
}

TEST(VcalReadCalendar, AVersionAbove10IsNotSupported) {
  const LogCapture log;
  EXPECT_EQ(
      ReadObjectsOf("BEGIN:VCALENDAR\r\nVERSION:2.0\r\n" + Event() + "END:VCALENDAR\r\n").result,
      TAMU_PARSE_ERROR);
  EXPECT_EQ(log.texts(),
            (std::vector<std::string>{"TAMU:  Error - vCalendar version '2.0' is not supported",
                                      kVersionMessage}));
}

TEST(VcalReadCalendar, AVersionBehindTheComponentIsTestedToo) {
  const LogCapture log;
  const ObjectReading reading =
      ReadObjectsOf("BEGIN:VCALENDAR\r\n" + Event() + "VERSION:abc\r\nEND:VCALENDAR\r\n");
  EXPECT_EQ(reading.result, TAMU_PARSE_ERROR);
  EXPECT_EQ(reading.objects.size(), 1U);
  EXPECT_EQ(log.texts(),
            std::vector<std::string>{"TAMU:  Error - vCalendar version 'abc' is not supported"});
}

TEST(VcalReadCalendar, OlderVersionsAreSupported) {
  EXPECT_EQ(ReadObjectsOf("BEGIN:VCALENDAR\r\nVERSION: 0.9\r\n" + Event() + "END:VCALENDAR\r\n")
                .objects.size(),
            1U);
}

// One message for every way in which a calendar is incomplete. Kept on purpose.
TEST(VcalReadCalendar, EveryWayToBeIncompleteIsTheVersionMessage) {
  for (const std::string& content :
       {std::string("BEGIN:VCALENDAR\r\n") + Event() + "END:VCALENDAR\r\n", Calendar(""),
        "BEGIN:VCALENDAR\r\nVERSION:1.0\r\n" + Event(), std::string("BEGIN:VCALENDAR\r\n")}) {
    const LogCapture log;
    EXPECT_EQ(ReadObjectsOf(content).result, TAMU_PARSE_ERROR) << content;
    EXPECT_EQ(log.texts(), std::vector<std::string>{kVersionMessage}) << content;
  }
}

TEST(VcalReadCalendar, AnyEndEndsIt) {
  EXPECT_EQ(ReadObjectsOf("BEGIN:VCALENDAR\r\nVERSION:1.0\r\n" + Event() + "END:VEVENT\r\n" +
                          Calendar(ToDo()))
                .objects.size(),
            2U);
}

TEST(VcalReadCalendar, TwentyFiveCharactersOfTheVersionAreKeptAndTested) {
  const std::string kept = "1." + std::string(23, '0');
  const ObjectReading reading = ReadObjectsOf("BEGIN:VCALENDAR\r\nVERSION: " + kept + "1\r\n" +
                                              Event() + "END:VCALENDAR\r\n");
  EXPECT_EQ(reading.objects.at(0).version, kept);
  const LogCapture log;
  ReadObjectsOf("BEGIN:VCALENDAR\r\nVERSION:2" + kept + "\r\n");
  EXPECT_TRUE(
      log.Has("TAMU:  Error - vCalendar version '2" + kept.substr(0, 24) + "' is not supported"));
}

TEST(VcalReadCalendar, IdentifiersAreCutToTheirField) {
  const std::string whole(600, 'x');
  const ObjectReading reading = ReadObjectsOf(
      Calendar("X-IRMC-LUID:" + whole + "\r\n" + Event() + Event("X-IRMC-LUID:" + whole + "\r\n")));
  ASSERT_EQ(reading.objects.size(), 2U);
  EXPECT_EQ(reading.objects[0].luid, whole.substr(0, 511));
  EXPECT_EQ(reading.objects[1].luid, whole.substr(0, 511));
}

TEST(VcalReadCalendar, BlankLinesAndUnknownPropertiesWarn) {
  const LogCapture log;
  const ObjectReading reading =
      ReadObjectsOf(Calendar("\r\nX-FOO:1\r\nDTSTART:ignored\r\n" + Event()));
  EXPECT_EQ(reading.objects.at(0).status, TAMU_PARSE_WARNING);
  EXPECT_EQ(log.texts(), (std::vector<std::string>{
                             "TAMU:  Warning - Parser encounted a blank line in vCalendar",
                             "TAMU:  Warning - vCalendar contains unknown property: 'X-FOO'"}));
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kError);
  EXPECT_EQ(log.lines()[1].severity, LogSeverity::kInformation);
}

// Version and identifier of the calendar go to its first component alone. Kept on purpose.
TEST(VcalReadCalendar, TheIdentifierAndVersionBelongToTheNextComponentAlone) {
  const ObjectReading reading = ReadObjectsOf(
      Calendar("X-IRMC-LUID: 4 2\r\n" + Event() + Event() + Event("X-IRMC-LUID:own\r\n")));
  ASSERT_EQ(reading.objects.size(), 3U);
  EXPECT_EQ(reading.objects[0].luid, "42");
  EXPECT_EQ(reading.objects[0].version, "1.0");
  EXPECT_EQ(reading.objects[1].luid, "");
  EXPECT_EQ(reading.objects[1].version, "");
  EXPECT_EQ(reading.objects[2].luid, "own");
}

TEST(VcalReadCalendar, WhatStandsBehindTheLastComponentIsNotTheNextCalendars) {
  const ObjectReading reading =
      ReadObjectsOf("BEGIN:VCALENDAR\r\n" + Event() +
                    "VERSION:1.0\r\nX-IRMC-LUID:late\r\nEND:VCALENDAR\r\nBEGIN:VCALENDAR\r\n" +
                    Event() + "VERSION:0.9\r\nX-IRMC-LUID:later\r\nEND:VCALENDAR\r\n");
  ASSERT_EQ(reading.objects.size(), 2U);
  EXPECT_EQ(reading.objects[1].luid, "");
  EXPECT_EQ(reading.objects[1].version, "");
}

TEST(VcalReadCalendar, AComponentsOwnIdentifierReplacesTheCalendars) {
  const ObjectReading reading =
      ReadObjectsOf(Calendar("X-IRMC-LUID:a\r\n" + Event("X-IRMC-LUID:b c\r\n")));
  EXPECT_EQ(reading.objects.at(0).luid, "b c");
}

TEST(VcalReadComponent, NestedObjectsAreSkippedToTheirEnd) {
  const LogCapture log;
  const ObjectReading reading =
      ReadObjectsOf(Calendar(ToDo("BEGIN:VEVENT\r\nSUMMARY:no\r\nBEGIN:X\r\nX-DEEP:1\r\nEND:"
                                  "X\r\nEND:VEVENT\r\nCLASS:PUBLIC\r\n")));
  EXPECT_EQ(reading.objects.at(0).written.find("SUMMARY:no"), std::string::npos);
  EXPECT_TRUE(Has(reading.objects[0], "CLASS:PUBLIC"));
  EXPECT_EQ(log.texts(), std::vector<std::string>{
                             "TAMU:  Warning - vCalendar contains unknown property: 'X-DEEP'"});
}

TEST(VcalReadComponent, AnythingNestedInAnEventIsSkippedToo) {
  for (const char* value : {"VALARM", "VEVENT", ""}) {
    const LogCapture log;
    const ObjectReading reading = ReadObjectsOf(
        Calendar(Event(std::string("BEGIN:") + value +
                       "\r\nSUMMARY:no\r\nX-IRMC-LUID:no\r\nEND:\r\nCLASS:PUBLIC\r\n")));
    ASSERT_EQ(reading.objects.size(), 1U) << value;
    EXPECT_EQ(reading.objects[0].status, TAMU_PARSE_OK);
    EXPECT_EQ(reading.objects[0].luid, "");
    EXPECT_TRUE(Has(reading.objects[0], "SUMMARY:"));
    EXPECT_TRUE(Has(reading.objects[0], "CLASS:PUBLIC"));
    EXPECT_TRUE(log.lines().empty());
  }
}

TEST(VcalReadComponent, AMissingEndIsAnErrorAndTheComponentIsNotDelivered) {
  const LogCapture log;
  const ObjectReading reading =
      ReadObjectsOf("BEGIN:VCALENDAR\r\nVERSION:1.0\r\nBEGIN:VEVENT\r\nDUE:1\r\nDTSTART:x\r\n");
  EXPECT_EQ(reading.result, TAMU_PARSE_ERROR);
  EXPECT_TRUE(reading.objects.empty());
  EXPECT_EQ(log.texts(),
            (std::vector<std::string>{kMandatory, "TAMU:  Error - vCalendar missing END tag"}));
}

TEST(VcalReadComponent, AnEventNeedsDescriptionAndStart) {
  for (const char* only : {"DTSTART:x\r\n", "DESCRIPTION:x\r\n"}) {
    const LogCapture log;
    const ObjectReading reading =
        ReadObjectsOf(Calendar(std::string("BEGIN:VEVENT\r\n") + only + "END:VEVENT\r\n"));
    EXPECT_EQ(reading.objects.at(0).status, TAMU_PARSE_WARNING) << only;
    ASSERT_EQ(log.texts(), std::vector<std::string>{kMandatory}) << only;
    EXPECT_EQ(log.lines()[0].severity, LogSeverity::kInformation);
  }
}

// A to-do needs seven properties, COMPLETED among them. Kept on purpose.
TEST(VcalReadComponent, AToDoWithOnlySummaryAndDueIsDeliveredWithAWarning) {
  const ObjectReading reading =
      ReadObjectsOf(Calendar("BEGIN:VTODO\r\nSUMMARY:a\r\nDUE:x\r\nEND:VTODO\r\n"));
  EXPECT_EQ(reading.objects.at(0).status, TAMU_PARSE_WARNING);
  const std::string names[] = {"CATEGORIES", "COMPLETED", "DESCRIPTION", "DUE",
                               "PRIORITY",   "STATUS",    "SUMMARY"};
  for (const std::string& left_out : names) {
    std::string lines;
    for (const std::string& name : names) {
      if (name != left_out) lines += name + ":1\r\n";
    }
    EXPECT_EQ(
        ReadObjectsOf(Calendar("BEGIN:VTODO\r\n" + lines + "END:VTODO\r\n")).objects.at(0).status,
        TAMU_PARSE_WARNING)
        << left_out;
  }
  EXPECT_EQ(ReadObjectsOf(Calendar(ToDo())).objects.at(0).status, TAMU_PARSE_OK);
}

TEST(VcalReadComponent, AllDayIsTrueInCapitalsAndNothingElse) {
  const std::pair<const char*, const char*> cases[] = {
      {"TRUE", "TRUE"}, {"true", "FALSE"}, {"FALSE", "FALSE"}, {" TRUE", "FALSE"}, {"", "FALSE"}};
  for (const auto& [value, written] : cases) {
    const ObjectReading reading =
        ReadObjectsOf(Calendar(Event(std::string("X-BLUETOOTH-ALLDAYEVENT:") + value + "\r\n")));
    EXPECT_TRUE(Has(reading.objects.at(0), std::string("X-BLUETOOTH-ALLDAYEVENT:") + written))
        << value;
  }
}

TEST(VcalReadComponent, TheLastAllDayLineCounts) {
  const ObjectReading reading = ReadObjectsOf(
      Calendar(Event("X-BLUETOOTH-ALLDAYEVENT:TRUE\r\nX-BLUETOOTH-ALLDAYEVENT:no\r\n")));
  EXPECT_TRUE(Has(reading.objects.at(0), "X-BLUETOOTH-ALLDAYEVENT:FALSE"));
}

TEST(VcalReadComponent, AToDoHasNeitherLocationNorAllDay) {
  const LogCapture log;
  const ObjectReading reading = ReadObjectsOf(
      Calendar(ToDo("LOCATION:here\r\nX-BLUETOOTH-ALLDAYEVENT:TRUE\r\nDALARM:a\r\n")));
  EXPECT_EQ(reading.objects.at(0).status, TAMU_PARSE_OK);
  EXPECT_TRUE(Has(reading.objects[0], "DALARM:a"));
  EXPECT_EQ(reading.objects[0].written.find("here"), std::string::npos);
  EXPECT_TRUE(log.lines().empty());
}

uint32_t KeepAllDay(ObjectKind, ObjectRecord* record, TamuResult, void* user) {
  *static_cast<std::uint8_t*>(user) = record->event.all_day;
  return 0;
}

TEST(VcalReadComponent, AToDosRecordIsZeroWhereAnEventsSaysAllDay) {
  const ScratchFolder folder;
  const std::u16string path = folder.Put("a", Calendar(ToDo("X-BLUETOOTH-ALLDAYEVENT:TRUE\r\n")));
  std::uint8_t all_day = 9;
  TAMU_ReadObjects(reinterpret_cast<const TamuWchar*>(path.c_str()), &KeepAllDay, &all_day);
  EXPECT_EQ(all_day, 0U);
}

TEST(VcalReadComponent, BlanksInNamesAndParametersGoAndThoseInValuesStay) {
  const ObjectReading reading = ReadObjectsOf(Calendar(Event("SUM MARY; X = Y :a b\r\n")));
  EXPECT_TRUE(Has(reading.objects.at(0), "SUMMARY;X=Y:a b"));
}

TEST(VcalReadComponent, RepeatedPropertiesAndAllComponentsAreKept) {
  const ObjectReading reading = ReadObjectsOf(Calendar(
      Event("ATTENDEE:one\r\nATTENDEE;ROLE=OWNER:two\r\nCATEGORIES:a;b;c;d;e;f;g;h;i;j;k;l\r\n")));
  EXPECT_NE(reading.objects.at(0).written.find("ATTENDEE:one\nATTENDEE;ROLE=OWNER:two\n"),
            std::string::npos);
  EXPECT_TRUE(Has(reading.objects[0], "CATEGORIES:a;b;c;d;e;f;g;h;i;j;k;l"));
}

TEST(VcalReadComponent, TheOtherKindsPropertiesAreReadAndFreed) {
  EXPECT_EQ(
      ReadObjectsOf(Calendar(Event("COMPLETED:1\r\nDUE:2\r\nDUE:3\r\n") + ToDo("DTEND:4\r\n")))
          .objects.size(),
      2U);
}

uint32_t SeeStrays(ObjectKind, ObjectRecord* record, TamuResult, void* user) {
  const bool event = record->event.component == COMPONENT_EVENT;
  *static_cast<bool*>(user) =
      event ? record->event.prop_completed != nullptr && record->event.prop_due != nullptr
            : record->todo.prop_dtend != nullptr;
  return 0;
}

TEST(VcalReadComponent, ACallbackSeesTheOtherKindsProperties) {
  for (const std::string& component : {Event("COMPLETED:1\r\nDUE:2\r\n"), ToDo("DTEND:4\r\n")}) {
    const ScratchFolder folder;
    bool seen = false;
    const std::u16string path = folder.Put("a", Calendar(component));
    TAMU_ReadObjects(reinterpret_cast<const TamuWchar*>(path.c_str()), &SeeStrays, &seen);
    EXPECT_TRUE(seen);
  }
}

uint32_t ConsumeRecord(ObjectKind kind, ObjectRecord* record, TamuResult, void*) {
  RECORD_Free(kind, record);
  return 0;
}

TEST(VcalReadComponent, NothingIsLeftWhenTheCallbackConsumesTheRecord) {
  const ScratchFolder folder;
  const std::u16string path =
      folder.Put("a", Calendar(Event("COMPLETED:1\r\nDUE:2\r\n") + ToDo("DTEND:1\r\n")));
  const std::size_t before = MEM_LiveBlocks();
  TAMU_ReadObjects(reinterpret_cast<const TamuWchar*>(path.c_str()), &ConsumeRecord, nullptr);
  EXPECT_EQ(MEM_LiveBlocks(), before);
}

TEST(VcalReadComponent, TheLineOnWhichAComponentBeginsIsKnown) {
  const ObjectReading reading = ReadObjectsOf(Calendar(Event() + ToDo()));
  EXPECT_EQ(reading.objects.at(0).begin_line, 3U);
  EXPECT_EQ(reading.objects.at(1).begin_line, 7U);
}

TEST(VcalRead, WhenAnyAllocationFailsNothingIsLeftAndReadingEnds) {
  const std::string content = Calendar(Event("ATTENDEE;X=Y:a\r\nDUE:1\r\n") + ToDo("DTEND:1\r\n"));
  for (const bool and_after : {false, true}) {
    for (std::uint64_t n = 1;; ++n) {
      ASSERT_LT(n, 300U);
      MEM_FailNth(n, and_after);
      const ScratchFolder folder;
      const std::size_t before = MEM_LiveBlocks();
      const std::u16string path = folder.Put("a", content);
      TAMU_ReadObjects(reinterpret_cast<const TamuWchar*>(path.c_str()), nullptr, nullptr);
      const bool struck = MEM_FailureStruck();
      MEM_FailNth(0);
      EXPECT_EQ(MEM_LiveBlocks(), before) << n;
      if (!struck) break;
    }
  }
}

uint32_t KeepStatus(ObjectKind, ObjectRecord*, TamuResult status, void* user) {
  static_cast<std::vector<TamuResult>*>(user)->push_back(status);
  return 0;
}

std::string NoMemoryFor(const std::string& line) {
  return "TAMU:  Memory allocation of " + std::to_string(line.size() + 1) +
         " bytes failed in 'FileLine'";
}

TEST(VcalRead, ALineWithoutMemoryIsAWarningInACalendarAndAnErrorInFrontOfOne) {
  const std::string begin = "BEGIN:VCALENDAR\r\n";
  const std::string in_calendar = "DUE:1\r\n";
  const std::string in_event = "SUMMARY:1\r\n";
  const std::string content =
      begin + in_calendar + "VERSION:1.0\r\n" + Event(in_event) + "END:VCALENDAR\r\n";
  const ScratchFolder folder;
  const std::u16string path = folder.Put("a", content + Calendar(Event()));
  int warnings = 0;
  std::vector<std::size_t> objects_before_errors;
  for (std::uint64_t n = 1;; ++n) {
    ASSERT_LT(n, 300U);
    const LogCapture log;
    std::vector<TamuResult> statuses;
    MEM_FailNth(n);
    const TamuResult result =
        TAMU_ReadObjects(reinterpret_cast<const TamuWchar*>(path.c_str()), &KeepStatus, &statuses);
    const bool struck = MEM_FailureStruck();
    MEM_FailNth(0);
    if (!struck) break;
    if (log.Has(NoMemoryFor(begin)) || log.Has(NoMemoryFor(""))) {
      EXPECT_EQ(result, TAMU_PARSE_ERROR);
      objects_before_errors.push_back(statuses.size());
    }
    if (log.Has(NoMemoryFor(in_calendar)) || log.Has(NoMemoryFor(in_event))) {
      EXPECT_EQ(result, TAMU_OK);
      EXPECT_EQ(statuses, (std::vector<TamuResult>{TAMU_PARSE_WARNING, TAMU_PARSE_OK}));
      ++warnings;
    }
  }
  EXPECT_EQ(warnings, 2);
  EXPECT_EQ(objects_before_errors, (std::vector<std::size_t>{0, 1, 2}));
}

TEST(VcalRead, AtTheEndOfTheFileThereIsNothingToRead) {
  const ScratchFolder folder;
  File file;
  ASSERT_EQ(FILE_Open(folder.Put("a", "").c_str(), u"rb", &file), 0U);
  EXPECT_LT(file.GetChar(), 0);
  const LogCapture log;
  EXPECT_EQ(VCAL_Read(&file, nullptr, nullptr), TAMU_PARSE_ERROR);
  EXPECT_TRUE(log.lines().empty());
  FILE_Close(&file, u"a");
}

TEST(VcalRead, TruncationAnywhereLeavesNothing) {
  const std::string content =
      Calendar(Event("DUE:1\r\nSUMMARY;QUOTED-PRINTABLE:a=0D=0A=\r\nb\r\n") + ToDo());
  for (std::size_t length = 0; length < content.size(); ++length)
    ReadObjectsOf(content.substr(0, length));
}

}  // namespace
}  // namespace tamu
