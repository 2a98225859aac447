// system/document_move.h - brings a note's file to its place in one step.
//   Errors     a text for people; std::bad_alloc.
#ifndef TAMU_TOOLS_SYSTEM_DOCUMENT_MOVE_H_
#define TAMU_TOOLS_SYSTEM_DOCUMENT_MOVE_H_

#include <cstdint>
#include <string>

namespace tamu::tool {

enum class Moved : std::uint8_t { kDone, kExists, kFailed };

// Moves a file to another name in its folder, with what it holds brought to disk. What has that name
// is replaced when `replace` says so, else that is kExists and nothing changes. Paths are the
// platform's (platform/files.h); `*problem` is set for kFailed.
[[nodiscard]] Moved DOCUMENT_Move(const std::u16string& from, const std::u16string& to,
                                  bool replace, std::string* problem);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_SYSTEM_DOCUMENT_MOVE_H_
