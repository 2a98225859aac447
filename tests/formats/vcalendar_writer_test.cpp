#include "formats/vcalendar_writer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "core/memory.h"
#include "core/records.h"
#include "support/log_capture.h"
#include "support/scratch_folder.h"
#include "text/property.h"

namespace tamu {
namespace {

using testing::LogCapture;
using testing::ScratchFolder;

std::string Written(const ObjectRecord& record, bool write_luid = true) {
  const ScratchFolder folder;
  File file;
  EXPECT_EQ(FILE_Open(folder.Wide("out").c_str(), u"wb", &file), 0U);
  EXPECT_EQ(VCAL_Write(&file, record, write_luid), TAMU_OK);
  EXPECT_EQ(FILE_Close(&file, u"out"), 0U);
  return folder.Get("out");
}

class VcalWrite : public ::testing::Test {
 protected:
  ~VcalWrite() override { RECORD_Free(KIND_CALENDAR, &record_); }
  // Fills every chain field with its own offset.
  void FillAll(std::size_t end) {
    for (std::size_t offset = 544; offset < end; offset += 4) {
      auto* const field = reinterpret_cast<Ref<Property>*>(record_.bytes + offset);
      PROP_SetFromText(std::to_string(offset).c_str(), "", kAnyComponents, PROP_Append(field));
    }
  }
  ObjectRecord record_{};
};

TEST_F(VcalWrite, ARecordWithoutComponentIsThreeLines) {
  std::strcpy(record_.event.version, "1.0");
  EXPECT_EQ(Written(record_), "BEGIN:VCALENDAR\nVERSION:1.0\nEND:VCALENDAR\n");
  record_.event.component = 3;
  EXPECT_EQ(Written(record_), "BEGIN:VCALENDAR\nVERSION:1.0\nEND:VCALENDAR\n");
}

TEST_F(VcalWrite, AnEventWithoutPropertiesHasItsAlwaysLines) {
  record_.event.component = COMPONENT_EVENT;
  EXPECT_EQ(Written(record_),
            "BEGIN:VCALENDAR\nVERSION:\nBEGIN:VEVENT\nSUMMARY:\nDESCRIPTION:\nDTSTART:\nDTEND:"
            "\nPRIORITY:\n"
            "X-BLUETOOTH-ALLDAYEVENT:FALSE\nEND:VEVENT\nEND:VCALENDAR\n");
}

TEST_F(VcalWrite, AToDoWithoutPropertiesHasItsAlwaysLines) {
  record_.todo.component = COMPONENT_TODO;
  EXPECT_EQ(Written(record_),
            "BEGIN:VCALENDAR\nVERSION:\nBEGIN:VTODO\nCATEGORIES:\nCOMPLETED:\nDESCRIPTION:\nDUE:"
            "\nPRIORITY:\n"
            "STATUS:\nSUMMARY:\nEND:VTODO\nEND:VCALENDAR\n");
}

TEST_F(VcalWrite, AnEventsPropertiesStandInTheirOrderAndToDosOwnAreLeftOut) {
  record_.event.component = COMPONENT_EVENT;
  std::strcpy(record_.event.luid, "7");
  record_.event.all_day = 2;
  FillAll(604);
  EXPECT_EQ(
      Written(record_),
      "BEGIN:VCALENDAR\nVERSION:\nBEGIN:VEVENT\nSUMMARY:576\nDESCRIPTION:552\nDTSTART:568\nDTEND:"
      "560\n"
      "CLASS:580\nPRIORITY:564\nSTATUS:572\nLOCATION:584\nCATEGORIES:544\nDALARM:588\nRRULE:"
      "592\nEXDATE:596\n"
      "ATTENDEE:600\nX-IRMC-LUID:7\nX-BLUETOOTH-ALLDAYEVENT:TRUE\nEND:VEVENT\nEND:VCALENDAR\n");
  PROP_Free(record_.event.prop_completed);
  PROP_Free(record_.event.prop_due);
}

TEST_F(VcalWrite, AToDosPropertiesStandInTheirOrderAndEventsOwnAreLeftOut) {
  record_.todo.component = COMPONENT_TODO;
  std::strcpy(record_.todo.luid, "7");
  FillAll(600);
  EXPECT_EQ(Written(record_),
            "BEGIN:VCALENDAR\nVERSION:\nBEGIN:VTODO\nCATEGORIES:544\nCLASS:580\nCOMPLETED:"
            "548\nDESCRIPTION:552\n"
            "DTSTART:568\nDUE:556\nPRIORITY:564\nSTATUS:572\nSUMMARY:576\nDALARM:584\nRRULE:"
            "588\nEXDATE:592\n"
            "ATTENDEE:596\nX-IRMC-LUID:7\nEND:VTODO\nEND:VCALENDAR\n");
  PROP_Free(record_.todo.prop_dtend);
}

TEST_F(VcalWrite, TheLuidIsWrittenOnlyWhenAskedFor) {
  record_.todo.component = COMPONENT_TODO;
  std::strcpy(record_.todo.luid, "7");
  EXPECT_EQ(Written(record_, false).find("LUID"), std::string::npos);
}

TEST_F(VcalWrite, TwoAttendeesAreTwoLinesInChainOrder) {
  record_.event.component = COMPONENT_EVENT;
  PROP_SetFromText("one", "", 1, PROP_Append(&record_.event.prop_attendee));
  PROP_SetFromText("two", "", 1, PROP_Append(&record_.event.prop_attendee));
  PROP_SetFromText("x", "", 1, PROP_Append(&record_.event.prop_exdate));
  EXPECT_NE(Written(record_).find("EXDATE:x\nATTENDEE:one\nATTENDEE:two\n"), std::string::npos);
}

TEST(VcalWriteLine, WithAndWithoutParametersAndWithoutMemory) {
  const ScratchFolder folder;
  File file;
  ASSERT_EQ(FILE_Open(folder.Wide("out").c_str(), u"wb", &file), 0U);
  EXPECT_EQ(VCAL_WriteLine(&file, "A", "", "x"), 0U);
  EXPECT_EQ(VCAL_WriteLine(&file, "B", "P", "y"), 0U);
  const LogCapture log;
  MEM_FailNth(1);
  EXPECT_EQ(VCAL_WriteLine(&file, "C", "", "z"), 1U);
  MEM_FailNth(0);
  FILE_Close(&file, u"out");
  EXPECT_EQ(folder.Get("out"), "A:x\nB;P:y\n");
  EXPECT_EQ(log.texts(),
            std::vector<std::string>{"TAMU:  Insufficient memory to generate vCalendar string"});
}

}  // namespace
}  // namespace tamu
