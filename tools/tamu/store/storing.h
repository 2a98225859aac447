// store/storing.h - single objects into the device's stores, with what really became of them.
//   The library's results do not tell everything: what it logs is heard, and notes are read back.
//   The log's observer is taken over during each call and there is none afterwards.
//   Errors     texts for people; std::bad_alloc.
#ifndef TAMU_TOOLS_STORE_STORING_H_
#define TAMU_TOOLS_STORE_STORING_H_

#include <cstdint>
#include <string>
#include <vector>

#include "tamu/tamu.h"

namespace tamu::tool {

enum class Found : std::uint8_t { kNo, kYes, kFailed };

struct FindOutcome {
  Found found = Found::kNo;
  std::string id;       // as the library has it; of a note its title in UTF-8
  std::string problem;  // when the device could not be asked
};

// Looks for an object that has what the device finds it by (store/recognition.h).
[[nodiscard]] FindOutcome STORE_Find(ObjectKind kind, ObjectRecord* record);

struct StoreOutcome {
  std::string failure;               // "" for success
  std::vector<std::string> remarks;  // what was left out or is otherwise worth a warning
  // The library said how it went; a failure then may have lost the open batch.
  bool reached_device = false;
};

// Adds an object. A note is added only when none has its title.
[[nodiscard]] StoreOutcome STORE_Add(ObjectKind kind, ObjectRecord* record);

// Replaces what STORE_Find found, `id` being what it gave.
[[nodiscard]] StoreOutcome STORE_Update(ObjectKind kind, const std::string& id,
                                        ObjectRecord* record);

// Replaces the note with this title by one that may have another. Whatever fails, one of the two
// is there afterwards.
[[nodiscard]] StoreOutcome STORE_UpdateNote(const std::u16string& old_title, ObjectRecord* record);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_STORE_STORING_H_
