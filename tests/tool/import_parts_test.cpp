// Parts of the import that need no device: counting, progress, what objects are recognised by, what
// the library logs.
#include <gtest/gtest.h>
#include <pty.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "core/records.h"
#include "pimstore/item_access.h"
#include "store/error_lines.h"
#include "store/import_counts.h"
#include "store/progress.h"
#include "store/recognition.h"
#include "store/store_lines.h"
#include "text/property_text.h"

namespace tamu::tool {
namespace {

TEST(ImportCounts, SaysNothingAboutWhatDidNotCome) {
  EXPECT_TRUE(ImportCounts().Texts(false).empty());
  ImportCounts counts;
  for (int i = 0; i < 12; ++i) counts.Add(StoredKind::kContact, Fate::kAdded);
  counts.Add(StoredKind::kContact, Fate::kUpdated);
  counts.Add(StoredKind::kContact, Fate::kSkipped);
  counts.Add(StoredKind::kContact, Fate::kFailed);
  counts.Add(StoredKind::kMessage, Fate::kFailed);
  EXPECT_EQ(counts.Texts(false),
            (std::vector<std::string>{
                "contacts: 12 added, 1 updated, 1 skipped (already there), 1 failed",
                "messages: 1 failed"}));
  EXPECT_EQ(counts.Texts(true).front(),
            "contacts: 12 would be added, 1 would be updated, 1 would be skipped (already there), "
            "1 would fail");
  EXPECT_EQ(counts.Of(Fate::kFailed), 2U);
}

TEST(ProgressLine, ShowsShareNumberAndRate) {
  EXPECT_EQ(PROGRESS_Line({"a.vcf", 12345, 42, 100}, 10600, 2.0),
            "a.vcf   42% [########------------] 12345 objects, 5300/s");
  EXPECT_EQ(PROGRESS_Line({"a.vcf", 1, 100, 100}, 1, 0.0),
            "a.vcf  100% [####################] 1 object");
}

TEST(ProgressLine, FitsALineWhateverTheNameIs) {
  const std::string name = std::string(100, 'x') + "\xC3\xA4\xC3\xA4.vcf";
  const std::string line = PROGRESS_Line({name, 100000000, 1, 3}, 100000000, 1000.0);
  EXPECT_LE(line.size(), 79U);
  EXPECT_TRUE(line.starts_with("...xx")) << line;
  EXPECT_EQ(PROGRESS_Line({"a.vcf", 5, 7, 0}, 5, 1.0), "a.vcf 5 objects, 5/s");
  EXPECT_NE(PROGRESS_Line({"a.vcf", 5, 200, 100}, 5, 1.0).find("100%"), std::string::npos);
}

// Runs `work` with a terminal as standard error and returns what appeared there.
template <typename Work>
std::string OnTerminal(Work work) {
  int terminal = -1;
  int stream = -1;
  if (::openpty(&terminal, &stream, nullptr, nullptr, nullptr) != 0) return "no terminal";
  std::fflush(stderr);
  const int before = ::dup(STDERR_FILENO);
  ::dup2(stream, STDERR_FILENO);
  work();
  std::fflush(stderr);
  ::dup2(before, STDERR_FILENO);
  ::close(before);
  // A mark, so that reading what is there does not wait for more.
  EXPECT_EQ(::write(stream, "$", 1), 1);
  std::string shown;
  char character = '\0';
  while (::read(terminal, &character, 1) == 1 && character != '$') shown += character;
  ::close(stream);
  ::close(terminal);
  return shown;
}

TEST(Progress, AppearsOnATerminalAndIsWiped) {
  const std::string shown = OnTerminal([] {
    Progress progress{std::chrono::milliseconds(0)};
    progress.Update({"a.vcf", 1, 50, 100});
  });
  EXPECT_TRUE(shown.starts_with("\r\x1b[Ka.vcf   50% [##########----------] 1 object")) << shown;
  EXPECT_TRUE(shown.ends_with("\r\x1b[K")) << shown;
}

TEST(Progress, StaysSilentDuringShortWork) {
  EXPECT_EQ(OnTerminal([] {
              Progress progress;
              progress.Update({"a.vcf", 1, 50, 100});
            }),
            "");
}

// The record of one note.
class NoteRecord {
 public:
  explicit NoteRecord(const char* title) { AppendAscii(&record_.note.prop_summary, title); }
  ~NoteRecord() { RECORD_Free(KIND_NOTE, &record_); }
  NoteRecord(const NoteRecord&) = delete;
  NoteRecord& operator=(const NoteRecord&) = delete;
  ObjectRecord* get() { return &record_; }

 private:
  ObjectRecord record_ = {{0}};
};

TEST(Recognition, NotesAreKnownByTheTitleOfTheirFile) {
  std::string missing;
  NoteRecord list("List: food");
  EXPECT_EQ(RECOGNITION_Key(KIND_NOTE, list.get(), &missing), u"List food");
  NoteRecord same("List food?");
  EXPECT_EQ(RECOGNITION_Key(KIND_NOTE, same.get(), &missing), u"List food");
}

TEST(Recognition, PartsOfNamesDoNotRunIntoEachOther) {
  ObjectRecord left = {{0}};
  ObjectRecord right = {{0}};
  Property* const one = PROP_Append(&left.contact.prop_n);
  PROP_SetWide(u"ab", one, 0, 0);
  PROP_SetWide(u"c", one, 0, 1);
  Property* const other = PROP_Append(&right.contact.prop_n);
  PROP_SetWide(u"a", other, 0, 0);
  PROP_SetWide(u"bc", other, 0, 1);
  std::string missing;
  const auto left_key = RECOGNITION_Key(KIND_CONTACT, &left, &missing);
  const auto right_key = RECOGNITION_Key(KIND_CONTACT, &right, &missing);
  EXPECT_TRUE(left_key.has_value() && right_key.has_value());
  EXPECT_NE(left_key, right_key);
  RECORD_Free(KIND_CONTACT, &left);
  RECORD_Free(KIND_CONTACT, &right);
}

TEST(StoreLines, WhatTheFileHasWrongIsNoFailureOfTheDevice) {
  const ErrorLines logged;
  LOG_Error("TAMU:  Error in date '%s' - cannot convert from 8601", "soon");
  LOG_Error("TAMU:  Error in date '%s' - cannot convert from 8601", "soon");
  LOG_Error("TAMU:  ERG_Parse failed (code=%d)", 1);
  const StoreLines lines = STORELINES_From(logged);
  EXPECT_EQ(lines.failure, "");
  EXPECT_EQ(lines.remarks,
            (std::vector<std::string>{
                "the date 'soon' cannot be read and was left out",
                "its recurrence rule cannot be read: it is stored as happening once"}));
}

TEST(StoreLines, AnythingElseIsAFailure) {
  const ErrorLines logged;
  LOG_Error("MAPI:  lpMessage->SetProps(PR_SUBJECT) failed with code: 0x%08x", 1);
  LOG_Error("TAMU:  device: %s (%s)", "no space left", "x.db");
  EXPECT_EQ(STORELINES_From(logged).failure,
            "lpMessage->SetProps(PR_SUBJECT) failed with code: 0x00000001; no space left (x.db)");
  EXPECT_TRUE(STORELINES_From(logged).remarks.empty());
}

}  // namespace
}  // namespace tamu::tool
