// store/read_back.h - whether an object comes back from a file as it was before it was written.
//   Errors     texts for people; std::bad_alloc.
#ifndef TAMU_TOOLS_STORE_READ_BACK_H_
#define TAMU_TOOLS_STORE_READ_BACK_H_

#include <string>
#include <vector>

#include "system/scratch_file.h"
#include "tamu/tamu.h"

namespace tamu::tool {

class ReadBack {
 public:
  // Ready to work; false, with the reason, when there is no place for a temporary file.
  [[nodiscard]] bool Prepare(std::string* problem) { return scratch_.Make(problem); }

  struct Outcome {
    std::vector<std::string> differences;  // texts for people, none when it comes back as it is
    // A reader of a file with this object in it goes on behind it.
    bool goes_on = true;
  };
  // Writes the object by itself and reads it again. Texts that would join the next line are closed
  // in the record, which is then what has to be written.
  [[nodiscard]] Outcome Try(ObjectKind kind, ObjectRecord* record);

 private:
  ScratchFile scratch_;
};

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_STORE_READ_BACK_H_
