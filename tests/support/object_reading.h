// support/object_reading.h - reads files of any format in tests: what the callback saw, as the
// writer puts it out again.
#ifndef TAMU_TESTS_SUPPORT_OBJECT_READING_H_
#define TAMU_TESTS_SUPPORT_OBJECT_READING_H_

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/file.h"
#include "core/memory.h"
#include "formats/format_table.h"
#include "formats/shared_record.h"
#include "platform/bstr.h"
#include "support/scratch_folder.h"
#include "tamu/tamu.h"

namespace tamu::testing {

struct ReadObject {
  ObjectKind kind;
  TamuResult status;
  std::string luid;
  std::string version;
  std::uint32_t begin_line;
  std::string written;  // line ends as LF
};

struct ObjectReading {
  TamuResult result = TAMU_OK;
  std::vector<ReadObject> objects;
};

inline uint32_t KeepReadObject(ObjectKind kind, ObjectRecord* record, TamuResult status,
                               void* user) {
  const ScratchFolder folder;
  File file;
  EXPECT_EQ(FILE_Open(folder.Wide("out").c_str(), u"wb", &file), 0U);
  EXPECT_EQ(FORMAT_Write(kind, &file, *record), TAMU_OK);
  FILE_Close(&file, u"out");
  const std::string version(record->note.version,
                            strnlen(record->note.version, TAMU_VERSION_WIDTH));
  static_cast<ObjectReading*>(user)->objects.push_back(
      {kind, status, record->note.luid, version, SHARED_BeginLine(), folder.Get("out")});
  return 0;
}

// Reads `content` through the exported function and checks that nothing is left.
inline ObjectReading ReadObjectsOf(const std::string& content) {
  const ScratchFolder folder;
  const std::u16string path = folder.Put("objects", content);
  const std::size_t blocks = MEM_LiveBlocks();
  const std::int64_t strings = platform::SysLiveStrings();
  ObjectReading reading;
  reading.result =
      TAMU_ReadObjects(reinterpret_cast<const TamuWchar*>(path.c_str()), &KeepReadObject, &reading);
  EXPECT_EQ(MEM_LiveBlocks(), blocks);
  EXPECT_EQ(platform::SysLiveStrings(), strings);
  for (const std::uint8_t byte : SHARED_Record()->bytes) {
    if (byte != 0) {
      ADD_FAILURE() << "the shared record is not clear";
      break;
    }
  }
  return reading;
}

}  // namespace tamu::testing

#endif  // TAMU_TESTS_SUPPORT_OBJECT_READING_H_
