#include "device/health.h"

#include <sys/stat.h>

#include <new>

#include "device/sqlite/statement.h"
#include "device/sqlite/stores.h"

namespace tamu::device {
namespace {

using platform::HRESULT;
namespace hr = platform::hr;

std::uint64_t SizeOf(const std::string& file) noexcept {
  struct stat status = {};
  return ::stat(file.c_str(), &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
}

// The check gives one row "ok", or a row for each damage.
void ReadDamages(Database& database, std::vector<std::string>* damages) {
  Statement check(database, "pragma integrity_check(100)", "", "t");
  check.RunForRows([&] {
    if (check.Utf8(0) != "ok") damages->push_back(check.Utf8(0));
    return true;
  });
}

HRESULT Examine(Database& database, DatabaseHealth* health) {
  health->file = database.file();
  health->size = SizeOf(health->file) + SizeOf(health->file + "-wal");
  return database.Read([&] {
    Statement version(database, "pragma user_version", "", "i");
    if (version.RunForRow()) health->version = version.Integer(0);
    Statement engine(database, "select 'SQLite ' || sqlite_version()", "", "t");
    if (engine.RunForRow()) health->engine = engine.Utf8(0);
    ReadDamages(database, &health->damages);
    return hr::kOk;
  });
}

}  // namespace

HRESULT HEALTH_Examine(DatabaseHealth* health) noexcept {
  *health = {};
  std::shared_ptr<Stores> stores;
  const HRESULT opened = OpenStores(&stores);
  if (platform::Failed(opened)) return opened;
  try {
    return Examine(stores->database(), health);
  } catch (const std::bad_alloc&) {
    return hr::kOutOfMemory;
  }
}

}  // namespace tamu::device
