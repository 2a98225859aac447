#include "core/records.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "core/file.h"
#include "core/memory.h"
#include "core/wide.h"
#include "platform/files.h"
#include "support/log_capture.h"
#include "support/properties.h"

namespace tamu {
namespace {

using testing::LogCapture;
using testing::Texts;
using testing::TextsOf;

bool IsZero(const ObjectRecord& record) {
  return std::all_of(std::begin(record.bytes), std::end(record.bytes),
                     [](std::uint8_t byte) { return byte == 0; });
}

// A record between guards, so that a byte too many shows.
struct GuardedRecord {
  std::array<std::uint8_t, 16> before;
  ObjectRecord record;
  std::array<std::uint8_t, 16> after;
  GuardedRecord() {
    before.fill(0xA5);
    std::memset(record.bytes, 0, sizeof record.bytes);
    after.fill(0xA5);
  }
  [[nodiscard]] bool GuardsHold() const {
    return std::count(before.begin(), before.end(), 0xA5) == 16 &&
           std::count(after.begin(), after.end(), 0xA5) == 16;
  }
};

void Fill(Ref<Property>* field, const char* value) {
  PROP_SetFromText(value, "HOME;WORK", kAnyComponents, PROP_Append(field));
}

TEST(RecordFree, ZeroedRecordsOfEveryKindStayZeroAndNothingElseIsTouched) {
  for (const ObjectKind kind : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 0xFFFFFFFFU}) {
    GuardedRecord guarded;
    RECORD_Free(kind, &guarded.record);
    EXPECT_TRUE(IsZero(guarded.record)) << kind;
    EXPECT_TRUE(guarded.GuardsHold()) << kind;
  }
}

TEST(RecordFree, UnknownKindIsOnlyZeroed) {
  GuardedRecord guarded;
  std::memset(guarded.record.bytes, 0xFF, sizeof guarded.record.bytes);
  RECORD_Free(6, &guarded.record);
  EXPECT_TRUE(IsZero(guarded.record));
  EXPECT_TRUE(guarded.GuardsHold());
}

TEST(RecordFree, ContactFreesAllSeventeenChains) {
  const std::size_t before = MEM_LiveBlocks();
  ObjectRecord record{};
  for (std::size_t offset = 544; offset < 612; offset += 4) {
    auto* const field = reinterpret_cast<Ref<Property>*>(record.bytes + offset);
    Fill(field, "a;b;c");
    Fill(field, "second");
  }
  RECORD_Free(KIND_CONTACT, &record);
  EXPECT_EQ(MEM_LiveBlocks(), before);
  EXPECT_TRUE(IsZero(record));
}

TEST(RecordFree, EventFreesItsThirteenPropertiesAndNotTheToDosOwn) {
  const std::size_t before = MEM_LiveBlocks();
  ObjectRecord record{};
  record.event.component = COMPONENT_EVENT;
  for (std::size_t offset = 544; offset < 604; offset += 4) {
    Fill(reinterpret_cast<Ref<Property>*>(record.bytes + offset), "x");
  }
  Property* const completed = record.event.prop_completed;
  Property* const due = record.event.prop_due;
  RECORD_Free(KIND_CALENDAR, &record);
  EXPECT_TRUE(IsZero(record));
  PROP_Free(completed);
  PROP_Free(due);
  EXPECT_EQ(MEM_LiveBlocks(), before);
}

TEST(RecordFree, ToDoFreesItsThirteenPropertiesAndNotTheEventsOwn) {
  const std::size_t before = MEM_LiveBlocks();
  ObjectRecord record{};
  record.todo.component = COMPONENT_TODO;
  for (std::size_t offset = 544; offset < 600; offset += 4) {
    Fill(reinterpret_cast<Ref<Property>*>(record.bytes + offset), "x");
  }
  Property* const dtend = record.todo.prop_dtend;
  RECORD_Free(KIND_CALENDAR, &record);
  PROP_Free(dtend);
  EXPECT_EQ(MEM_LiveBlocks(), before);
}

TEST(RecordFree, CalendarOfNoComponentKeepsItsChainsAndIsZeroed) {
  const std::size_t before = MEM_LiveBlocks();
  for (const std::uint8_t component : {std::uint8_t{0}, std::uint8_t{3}, std::uint8_t{255}}) {
    ObjectRecord record{};
    record.event.component = component;
    Fill(&record.event.prop_summary, "x");
    Property* const kept = record.event.prop_summary;
    RECORD_Free(KIND_CALENDAR, &record);
    EXPECT_TRUE(IsZero(record));
    EXPECT_EQ(TextsOf(kept->values), Texts({"x"}));
    PROP_Free(kept);
  }
  EXPECT_EQ(MEM_LiveBlocks(), before);
}

TEST(RecordFree, NoteFreesItsSixChains) {
  const std::size_t before = MEM_LiveBlocks();
  ObjectRecord record{};
  for (std::size_t offset = 544; offset <= 564; offset += 4) {
    Fill(reinterpret_cast<Ref<Property>*>(record.bytes + offset), "x");
  }
  RECORD_Free(KIND_NOTE, &record);
  EXPECT_EQ(MEM_LiveBlocks(), before);
}

TEST(RecordFree, AToDosAlarmStandsWhereAnEventKeepsItsLocation) {
  ObjectRecord record{};
  Fill(&record.todo.prop_dalarm, "19990101T080000");
  EXPECT_EQ(TextsOf(record.event.prop_location->values), Texts({"19990101T080000"}));
  EXPECT_EQ(record.event.prop_dalarm, nullptr);
  record.todo.component = COMPONENT_TODO;
  RECORD_Free(KIND_CALENDAR, &record);
}

TEST(BodyFreeParts, TextsPartsAndTemporaryFilesGo) {
  const std::size_t before = MEM_LiveBlocks();
  ObjectRecord record{};
  BodyPart& first = record.message.body;
  first.text = MEM_CopyText("body").release();
  char16_t path[kTempPathUnits];
  ASSERT_EQ(FILE_TempFilename(nullptr, path), 0U);
  std::memcpy(first.temp_file, path, sizeof path);
  BodyPart* const second = MEM_New<BodyPart>().release();
  char16_t second_path[kTempPathUnits];
  ASSERT_EQ(FILE_TempFilename(nullptr, second_path), 0U);
  std::memcpy(second->temp_file, second_path, sizeof second_path);
  second->text = MEM_CopyText("part").release();
  first.next = second;
  const LogCapture log;
  RECORD_Free(KIND_MSG_SENT, &record);
  EXPECT_EQ(MEM_LiveBlocks(), before);
  EXPECT_TRUE(IsZero(record));
  EXPECT_TRUE(log.lines().empty());
  File file;
  EXPECT_FALSE(file.Open(path, u"rb"));
  EXPECT_FALSE(file.Open(second_path, u"rb"));
}

TEST(BodyFreeParts, EmptyTemporaryFileNameDeletesNothing) {
  platform::DeleteFileW.ResetCount();
  ObjectRecord record{};
  record.message.body.text = MEM_CopyText("body").release();
  RECORD_Free(KIND_MSG_INBOX, &record);
  EXPECT_EQ(platform::DeleteFileW.calls(), 0U);
}

TEST(BodyFreeParts, AFileThatCannotBeDeletedIsLoggedAndTheFreeingGoesOn) {
  const std::size_t before = MEM_LiveBlocks();
  ObjectRecord record{};
  BodyPart& first = record.message.body;
  const char16_t missing[] = u"/nowhere/x";
  std::memcpy(first.temp_file, missing, sizeof missing);
  first.next = MEM_New<BodyPart>().release();
  const LogCapture log;
  RECORD_Free(KIND_MSG_OUTBOX, &record);
  EXPECT_EQ(log.texts(), (std::vector<std::string>{"TAMU:  Unable to remove file (file=/nowhere/x)",
                                                   "TAMU:  Error: 0x00000003"}));
  EXPECT_EQ(MEM_LiveBlocks(), before);
}

TEST(PropAppend, NodesAreZeroedAndInOrder) {
  Ref<Property> head = nullptr;
  Property* const first = PROP_Append(&head);
  Property* const second = PROP_Append(&head);
  EXPECT_EQ(head, first);
  EXPECT_EQ(first->next, second);
  EXPECT_EQ(second->next, nullptr);
  EXPECT_EQ(second->flags, 0U);
  EXPECT_EQ(second->code_page, 0U);
  PROP_Free(head);
}

TEST(PropAppend, NullFieldGivesNull) { EXPECT_EQ(PROP_Append(nullptr), nullptr); }

TEST(PropAppend, ChainIsUnchangedWhenMemoryRunsOut) {
  Ref<Property> head = nullptr;
  Property* const first = PROP_Append(&head);
  MEM_FailNth(1);
  EXPECT_EQ(PROP_Append(&head), nullptr);
  MEM_FailNth(0);
  EXPECT_EQ(head, first);
  EXPECT_EQ(first->next, nullptr);
  PROP_Free(head);
}

TEST(PropFree, ALongChainNeedsNoStack) {
  const std::size_t before = MEM_LiveBlocks();
  Ref<Property> head = nullptr;
  PropertyChainEnd end;
  for (int i = 0; i < 300000; ++i) end.Append(&head);
  PROP_Free(head);
  EXPECT_EQ(MEM_LiveBlocks(), before);
}

TEST(PropertyChainEnd, AppendingDoesNotWalkTheChain) {
  Ref<Property> head = nullptr;
  PropertyChainEnd end;
  const std::uint64_t before = g_list_steps;
  for (int i = 0; i < 1000; ++i) end.Append(&head);
  EXPECT_EQ(g_list_steps, before);
  EXPECT_EQ(testing::ChainLength(head), 1000U);
  PROP_Free(head);
}

}  // namespace
}  // namespace tamu
