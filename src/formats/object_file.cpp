#include "formats/object_file.h"

#include <cstring>

#include "core/log.h"
#include "formats/format_table.h"
#include "text/tokens.h"

namespace tamu {
namespace {

using FirstLine = std::array<char, 512>;  // with the terminator

// The first physical line, without its line end, as far as it fits; the file is rewound.
FirstLine PeekFirstLine(File* file) noexcept {
  FirstLine line;
  std::size_t length = 0;
  while (length < line.size() - 1) {
    const int character = file->GetChar();
    if (character < 0 || character == '\n') break;
    line[length++] = static_cast<char>(character);
  }
  line[length] = '\0';
  line[std::strcspn(line.data(), "\r")] = '\0';
  file->Rewind();
  return line;
}

}  // namespace

ObjectName OBJECTFILE_PeekName(File* file) noexcept {
  const FirstLine line = PeekFirstLine(file);
  std::array<char, std::tuple_size_v<FirstLine>> name;
  const char* const colon = STR_CopyUnescaped(name.data(), name.size(), line.data(), ":");
  const bool begins = std::strstr(name.data(), "BEGIN") != nullptr && *colon == ':';
  ObjectName object_name;
  STR_CopyUnescaped(object_name.data(), object_name.size(), begins ? colon + 1 : "", "");
  return object_name;
}

TamuResult OBJECTFILE_Read(File* file, ReadCallback callback, void* user) noexcept {
  const ObjectName object_name = OBJECTFILE_PeekName(file);
  const TamuResult result = FORMAT_Read(object_name.data(), file, callback, user);
  LOG_SetSourceLine(0);
  return result;
}

}  // namespace tamu
