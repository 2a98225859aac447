#include "store/storing.h"

#include <array>

#include "core/wide.h"
#include "display_text.h"
#include "object_view.h"
#include "store/error_lines.h"
#include "store/note_file.h"
#include "store/recognition.h"
#include "store/store_lines.h"
#include "text/date.h"

namespace tamu::tool {
namespace {

// An item's id has 8 digits, a message's two for each byte of its entry id.
constexpr std::size_t kIdLength = 4096;

// Why the device refuses to save an event, as far as its dates tell; "" when they do not.
std::string DatesProblem(const EventShape& event) {
  if (event.component != COMPONENT_EVENT) return {};
  const DateValue end = DATE_FromProperty(event.prop_dtend);
  if (!end.valid || DATE_IsNone(end)) return {};
  const DateValue start = DATE_FromProperty(event.prop_dtstart);
  if (!start.valid || DATE_IsNone(start)) {
    return "it has an end (DTEND) and no start (DTSTART), and the device keeps no event that ends "
           "before it starts";
  }
  return end.days < start.days ? "it ends (DTEND) before it starts (DTSTART)" : "";
}

std::string FailureText(ObjectKind kind, TamuResult result, const ObjectRecord& record,
                        const StoreLines& lines) {
  if (!lines.failure.empty()) return lines.failure;
  if (kind == KIND_CALENDAR && result == TAMU_GENERAL_PIM_ERROR) {
    if (std::string problem = DatesProblem(record.event); !problem.empty()) return problem;
  }
  return DISPLAY_Line(AsUtf16(TAMU_CodeToString(result)));
}

// What a call of the library came to.
StoreOutcome OutcomeOf(ObjectKind kind, TamuResult result, const ObjectRecord& record,
                       const ErrorLines& logged) {
  StoreOutcome outcome;
  StoreLines lines = STORELINES_From(logged);
  outcome.reached_device = true;
  outcome.remarks = std::move(lines.remarks);
  if (result != TAMU_OK) {
    outcome.failure = FailureText(kind, result, record, lines);
  } else if (!lines.failure.empty()) {
    outcome.failure = KIND_IsMessage(kind) ? "stored incompletely: " + lines.failure
                                           : "stored, but not all of it: " + lines.failure;
  }
  return outcome;
}

// The device keeps one text of a message.
void RemarkOnParts(const MessageShape& message, std::vector<std::string>* remarks) {
  std::uint64_t parts = message.body.text == nullptr && message.body.temp_file[0] != 0 ? 1 : 0;
  for (const BodyPart* part = message.body.next; part != nullptr; part = part->next) ++parts;
  if (parts == 0) return;
  remarks->push_back(KIND_Count(parts, {"part of it was", "parts of it were"}) +
                     " left out: the device keeps the first text alone");
}

StoreOutcome OutcomeOfNote(bool written, std::string problem) {
  StoreOutcome outcome;
  if (!written) outcome.failure = std::move(problem);
  return outcome;
}

}  // namespace

FindOutcome STORE_Find(ObjectKind kind, ObjectRecord* record) {
  const ErrorLines logged;
  FindOutcome outcome;
  std::array<char, kIdLength> id{};
  // The library would write a title of any length, and in the ANSI code page.
  const bool is_note = kind == KIND_NOTE;
  const bool found = TAMU_FindObject(kind, record, is_note ? nullptr : id.data(), 0) != 0;
  if (found) {
    outcome.found = Found::kYes;
    outcome.id = is_note ? DISPLAY_ToUtf8(NOTE_StoredTitle(&record->note)) : id.data();
    return outcome;
  }
  // Nothing found and nothing asked have the same result.
  const StoreLines lines = STORELINES_From(logged);
  if (!lines.failure.empty()) {
    outcome.found = Found::kFailed;
    outcome.problem = lines.failure;
  }
  return outcome;
}

StoreOutcome STORE_Add(ObjectKind kind, ObjectRecord* record) {
  if (kind == KIND_NOTE) {
    std::string problem;
    const bool written = NOTEFILE_Write(record, NoteTarget::kNew, &problem);
    return OutcomeOfNote(written, std::move(problem));
  }
  const ErrorLines logged;
  const TamuResult result = TAMU_AddObject(kind, record, nullptr);
  StoreOutcome outcome = OutcomeOf(kind, result, *record, logged);
  if (KIND_IsMessage(kind)) RemarkOnParts(record->message, &outcome.remarks);
  return outcome;
}

StoreOutcome STORE_Update(ObjectKind kind, const std::string& id, ObjectRecord* record) {
  if (kind == KIND_NOTE) {
    std::string problem;
    const bool written = NOTEFILE_Write(record, NoteTarget::kReplaced, &problem);
    return OutcomeOfNote(written, std::move(problem));
  }
  const ErrorLines logged;
  const TamuResult result = TAMU_ModifyObject(kind, id.c_str(), record);
  StoreOutcome outcome = OutcomeOf(kind, result, *record, logged);
  if (!KIND_IsMessage(kind)) return outcome;
  const MessageShape& message = record->message;
  RemarkOnParts(message, &outcome.remarks);
  if (message.to[0] != '\0' || message.cc[0] != '\0') {
    outcome.remarks.emplace_back("its recipients were added beside those that it had");
  }
  return outcome;
}

StoreOutcome STORE_UpdateNote(const std::u16string& old_title, ObjectRecord* record) {
  std::string problem;
  if (NOTE_StoredTitle(&record->note) == old_title) return STORE_Update(KIND_NOTE, "", record);
  // The old one goes when the new one is there.
  if (!NOTEFILE_Write(record, NoteTarget::kNew, &problem)) {
    return OutcomeOfNote(false, std::move(problem));
  }
  const bool deleted = NOTEFILE_Delete(old_title, &problem);
  return OutcomeOfNote(deleted, "it is stored, but the old note is still there: " + problem);
}

}  // namespace tamu::tool
