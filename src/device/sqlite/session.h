// device/sqlite/session.h - the connection under a database, for this folder's own files.
#ifndef TAMU_DEVICE_SQLITE_SESSION_H_
#define TAMU_DEVICE_SQLITE_SESSION_H_

// SOCI's header declares SQLite's functions in a namespace of its own.
#include <soci/soci.h>
#include <soci/sqlite3/soci-sqlite3.h>

namespace tamu::device {

[[nodiscard]] inline sqlite_api::sqlite3* ConnectionOf(soci::session& session) {
  return static_cast<soci::sqlite3_session_backend*>(session.get_backend())->conn_;
}

}  // namespace tamu::device

#endif  // TAMU_DEVICE_SQLITE_SESSION_H_
