// device/health.h - what state the embedded device's database is in.
//   Errors     results of com.h; kNotImplemented in a build without a database.
//   Threads    none.
#ifndef TAMU_DEVICE_HEALTH_H_
#define TAMU_DEVICE_HEALTH_H_

#include <cstdint>
#include <string>
#include <vector>

#include "platform/com.h"

namespace tamu::device {

struct DatabaseHealth {
  std::string file;          // as the system spells it
  std::uint64_t size = 0;    // bytes, what still waits in its log beside it included
  std::int64_t version = 0;  // of its tables
  std::string engine;        // "SQLite 3.40.1"
  // What is wrong inside it, in the engine's words, at most a hundred texts; none when it is whole.
  std::vector<std::string> damages;
};

// Looks at every page of the database, which is opened, and made when it is missing. Fails as
// opening does, with the log line that says why.
[[nodiscard]] platform::HRESULT HEALTH_Examine(DatabaseHealth* health) noexcept;

}  // namespace tamu::device

#endif  // TAMU_DEVICE_HEALTH_H_
