// check/file_check.h - everything that is wrong in a file of objects.
//   One walk from its start to its end, past everything that ends the library's reading.
//   Errors     functions throw std::bad_alloc when memory runs out; read errors stay with the file.
#ifndef TAMU_TOOLS_CHECK_FILE_CHECK_H_
#define TAMU_TOOLS_CHECK_FILE_CHECK_H_

#include "check/report.h"
#include "core/file.h"

namespace tamu::tool {

// The file stands at its start and can go back.
void FILE_Check(File* file, Report* report);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_CHECK_FILE_CHECK_H_
