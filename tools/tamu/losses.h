// losses.h - what reading objects and writing them again leaves out, counted for a summary.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_LOSSES_H_
#define TAMU_TOOLS_LOSSES_H_

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "core/file.h"
#include "formats/object_file.h"
#include "tamu/tamu.h"

namespace tamu::tool {

// How often something was left out, by the name of the property.
class NameCounts {
 public:
  void Add(const std::string& name);
  [[nodiscard]] bool empty() const noexcept { return counts_.empty(); }
  // "PHOTO (3), REV", by name.
  [[nodiscard]] std::string Text() const;

 private:
  std::map<std::string, std::uint64_t> counts_;
  std::uint64_t others_ = 0;  // of names that came when the map was full
};

struct Losses {
  NameCounts unknown;        // properties without a place in the record
  NameCounts misplaced;      // properties that are not written where they stand: "DUE of an event"
  NameCounts components;     // values with more filled components than are kept
  NameCounts parameters;     // parameter texts that were cut
  NameCounts values;         // values of a message that were cut
  std::uint64_t nested = 0;  // objects inside objects
  std::uint64_t cards = 0;   // cards of senders and recipients in messages
  std::uint64_t mails = 0;   // of a message, behind the first
  std::uint64_t parts = 0;   // of a mail, behind the first
  std::uint64_t frames = 0;  // content types of multipart mails, of which a text alone is left
  std::uint64_t attachments = 0;  // contents that reading put into temporary files

  // What there is to say, a text a line.
  [[nodiscard]] std::vector<std::string> Texts() const;
};

// Adds what the lines of a file hold that its records do not, from its start to `end_offset`, where
// an object ends.
void LOSSES_AddFile(const ObjectName& object_name, File* file, std::uint64_t end_offset,
                    Losses* losses);

// True for a mail whose first part has no content type of its own, so that the mail's stands there
// still. Written with it, the text alone would be looked through for parts, in vain.
[[nodiscard]] bool MESSAGE_SaysMultipart(const MessageShape& message) noexcept;

// Adds what a message's record holds that is not written.
void LOSSES_AddMessage(const MessageShape& message, Losses* losses);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_LOSSES_H_
