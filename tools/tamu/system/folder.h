// system/folder.h - what can be done in a folder.
#ifndef TAMU_TOOLS_SYSTEM_FOLDER_H_
#define TAMU_TOOLS_SYSTEM_FOLDER_H_

#include <string>

namespace tamu::tool {

// Makes a file in the folder and deletes it again. False, with the system's reason, when it cannot
// be made.
[[nodiscard]] bool FOLDER_TakesFiles(const std::string& folder, std::string* reason);

// Brings everything that was written in the folder to disk. False, with the system's reason, when
// that fails.
[[nodiscard]] bool FOLDER_BringToDisk(const std::string& folder, std::string* reason);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_SYSTEM_FOLDER_H_
