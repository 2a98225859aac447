// card_scan.h - the lines of a vCard once more, for what its record does not tell.
//   Reads as the library's reader does, line by line, and keeps nothing of a card.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_CARD_SCAN_H_
#define TAMU_TOOLS_CARD_SCAN_H_

#include "core/file.h"
#include "losses.h"

namespace tamu::tool {

// Which of the lines that a card needs it has.
struct CardParts {
  bool version = false;
  bool n = false;
  bool end = false;
};

// Looks the card through at whose BEGIN line the file stands. `losses` may be null.
CardParts CARD_Scan(File* file, Losses* losses);

// The same from behind its BEGIN line.
CardParts CARD_ScanBody(File* file, Losses* losses);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_CARD_SCAN_H_
