#include "store/note_file.h"

#include "core/wide.h"
#include "device/ink/documents.h"
#include "device/ink/ink_encoder.h"
#include "display_text.h"
#include "pimstore/item_access.h"
#include "pimstore/notes.h"
#include "platform/last_error.h"
#include "store/error_lines.h"
#include "store/recognition.h"
#include "store/store_lines.h"
#include "system/document_move.h"
#include "system/process.h"

namespace tamu::tool {
namespace {

// A note's record with another title and the same body, which stays the other record's.
class PassingNote {
 public:
  PassingNote(const NoteShape& note, const std::string& title) {
    record_.note.prop_body = note.prop_body;
    AppendAscii(&record_.note.prop_summary, title);
  }
  ~PassingNote() { PROP_Free(record_.note.prop_summary); }
  PassingNote(const PassingNote&) = delete;
  PassingNote& operator=(const PassingNote&) = delete;

  [[nodiscard]] ObjectRecord* record() noexcept { return &record_; }

 private:
  ObjectRecord record_ = {{0}};
};

// No other program that runs uses it; one that was killed may have left it behind.
std::string PassingTitle() { return "tamu is writing " + PROCESS_Number(); }

// What is wrong with what was written; "" when it is the text.
std::string WrittenFault(const std::u16string& title, Property* body) {
  device::InkText written;
  if (const std::uint32_t error = device::DOCUMENTS_Read(title, &written)) {
    return std::string("its file cannot be read back: ") + platform::ErrorText(error);
  }
  const platform::BStr text = WideOf(body);
  if (!written.damaged && written.text == device::INK_CanonicalText(text.view())) return {};
  return "its file does not hold what was written to it; is the disk full?";
}

// Writes the note and looks at it; "" when all is well.
std::string WritePassing(const NoteShape& note, const std::string& title) {
  PassingNote passing(note, title);
  if (!passing.record()->note.prop_summary) return "memory ran out";
  {
    const ErrorLines logged;
    const TamuResult result = TAMU_AddObject(KIND_NOTE, passing.record(), nullptr);
    const StoreLines lines = STORELINES_From(logged);
    if (result != TAMU_OK) return DISPLAY_Line(AsUtf16(TAMU_CodeToString(result)));
    if (!lines.failure.empty()) return "its file cannot be written: " + lines.failure;
  }
  return WrittenFault(NOTE_StoredTitle(&passing.record()->note), note.prop_body);
}

std::u16string PathOf(const std::u16string& title) {
  return NOTE_PathFromTitle(title.c_str()).data();
}

}  // namespace

bool NOTEFILE_Write(ObjectRecord* record, NoteTarget target, std::string* problem) {
  if (WideOf(record->note.prop_summary).empty()) {
    *problem = "it has no title (SUMMARY), and the device keeps notes by title";
    return false;
  }
  const std::string passing = PassingTitle();
  const std::u16string passing_title(passing.begin(), passing.end());
  *problem = WritePassing(record->note, passing);
  if (problem->empty()) {
    const std::u16string path = PathOf(NOTE_StoredTitle(&record->note));
    switch (DOCUMENT_Move(PathOf(passing_title), path, target == NoteTarget::kReplaced, problem)) {
      case Moved::kDone:
        return true;
      case Moved::kExists:
        *problem = "the device has a note with this title, which it would replace";
        break;
      case Moved::kFailed:
        *problem = "its file cannot be brought to its place: " + *problem;
        break;
    }
  }
  static_cast<void>(device::DOCUMENTS_Delete(passing_title));
  return false;
}

bool NOTEFILE_Delete(const std::u16string& title, std::string* problem) {
  const std::uint32_t error = device::DOCUMENTS_Delete(title);
  if (error == 0) return true;
  *problem = error == platform::kErrorFileNotFound ? "there is none on the device"
                                                   : platform::ErrorText(error);
  return false;
}

}  // namespace tamu::tool
