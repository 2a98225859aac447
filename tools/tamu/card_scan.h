// card_scan.h - the lines of a vCard file once more, for what its records do not tell.
//   Reads as the library's reader does, line by line, and keeps nothing of a card.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_CARD_SCAN_H_
#define TAMU_TOOLS_CARD_SCAN_H_

#include <cstdint>
#include <map>
#include <string>

#include "core/file.h"

namespace tamu::tool {

// Which of the lines that a card needs it has.
struct CardParts {
  bool version = false;
  bool n = false;
  bool end = false;
};

// Looks the card through whose BEGIN line the file stands at.
[[nodiscard]] CardParts CARD_FindParts(File* file);

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

// What reading cards and writing them again leaves out.
struct CardLosses {
  NameCounts unknown;        // properties without a place in the record
  NameCounts components;     // values with more filled components than are kept
  NameCounts parameters;     // parameter texts that were cut
  std::uint64_t nested = 0;  // objects inside cards
};

// Looks through the cards from the file's start to `end_offset`, where a card ends.
[[nodiscard]] CardLosses CARD_FindLosses(File* file, std::uint64_t end_offset);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_CARD_SCAN_H_
