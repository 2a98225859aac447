// property_words.h - properties and their parameters in words for people.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_PROPERTY_WORDS_H_
#define TAMU_TOOLS_PROPERTY_WORDS_H_

#include <string>
#include <vector>

#include "object_view.h"

namespace tamu::tool {

// The types that the parameters name, for people and safe to show: "home", "mobile". Encodings and
// character sets are none.
[[nodiscard]] std::vector<std::string> WORDS_Types(const PropertyView& property);

// What has to be said about the decoding: an unknown character set, bytes without a meaning.
[[nodiscard]] std::vector<std::string> WORDS_Doubts(const PropertyView& property);

// "[base64, 1234 bytes]" in the place of a value that is no text.
[[nodiscard]] std::string WORDS_Base64(const PropertyView& property);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_PROPERTY_WORDS_H_
