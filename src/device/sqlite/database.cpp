#include "device/sqlite/database.h"

#include <errno.h>
#include <fcntl.h>
#include <time.h>
#include <unistd.h>

#include <array>
#include <exception>
#include <new>
#include <utility>

#include "device/sqlite/schema.h"
#include "device/sqlite/session.h"
#include "device/sqlite/statement.h"
#include "platform/linux/atomic_file.h"
#include "platform/linux/descriptor.h"
#include "platform/linux/errors.h"

namespace tamu::device {
namespace {

using platform::HRESULT;
namespace hr = platform::hr;

constexpr const char* kFileName = "/device.db";

// A file that exists is not touched: closing any descriptor of it would take the locks away that
// this process has on it.
void MakeFile(const std::string& file) {
  const int flags = O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC;
  const platform::Descriptor made(
      platform::Uninterrupted([&] { return ::open(file.c_str(), flags, 0600); }));
  if (!made && errno != EEXIST) throw FailureFromFileError(platform::ErrorForPath(errno, file));
}

std::int64_t MillisecondsNow() noexcept {
  timespec now = {};
  ::clock_gettime(CLOCK_MONOTONIC, &now);
  return std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1000000;
}

void SleepMilliseconds(int milliseconds) noexcept {
  const timespec pause = {milliseconds / 1000, long{milliseconds % 1000} * 1000000};
  ::nanosleep(&pause, nullptr);
}

// Why the last operation on the file or its log failed, as an errno value; 0 when it is not known.
int SystemErrorOf(sqlite_api::sqlite3* connection) noexcept {
  if (const int number = sqlite_api::sqlite3_system_errno(connection)) return number;
  for (const int which : {SQLITE_FCNTL_JOURNAL_POINTER, SQLITE_FCNTL_FILE_POINTER}) {
    sqlite_api::sqlite3_file* file = nullptr;
    int number = 0;
    if (sqlite_api::sqlite3_file_control(connection, "main", which, &file) == SQLITE_OK &&
        file != nullptr && file->pMethods != nullptr &&
        file->pMethods->xFileControl(file, SQLITE_FCNTL_LAST_ERRNO, &number) == SQLITE_OK &&
        number != 0) {
      return number;
    }
  }
  return 0;
}

}  // namespace

// SOCI opens a database by a text of options, in which some paths cannot be written. It opens one
// in memory, whose place the file's connection takes.
struct Database::Connection {
  Connection() : session(soci::sqlite3, ":memory:") {}
  soci::session session;
};

// A statement that begins or ends a transaction, straight over SQLite: SOCI may run out of memory
// when it has already taken effect.
class Control {
 public:
  Control(sqlite_api::sqlite3* connection, const std::string& sql) : connection_(connection) {
    const int code =
        sqlite_api::sqlite3_prepare_v2(connection, sql.c_str(), -1, &statement_, nullptr);
    if (code != SQLITE_OK) throw FailureFromCode(code, 0, sqlite_api::sqlite3_errmsg(connection));
  }
  ~Control() { sqlite_api::sqlite3_finalize(statement_); }
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  [[nodiscard]] bool Try() noexcept {
    const bool done = sqlite_api::sqlite3_step(statement_) == SQLITE_DONE;
    if (!done) code_ = sqlite_api::sqlite3_extended_errcode(connection_);
    if (!done) system_error_ = SystemErrorOf(connection_);
    sqlite_api::sqlite3_reset(statement_);
    return done;
  }
  void Run() {
    if (!Try()) throw FailureFromCode(code_, system_error_, "a transaction");
  }

 private:
  sqlite_api::sqlite3* connection_;
  sqlite_api::sqlite3_stmt* statement_ = nullptr;
  int code_ = SQLITE_OK;
  int system_error_ = 0;
};

// Savepoints have names of their own, so that undoing one that was not made undoes no other.
struct Database::Savepoint {
  Savepoint(sqlite_api::sqlite3* connection, const std::string& name)
      : begin(connection, "savepoint " + name),
        rollback(connection, "rollback to " + name),
        release(connection, "release " + name) {}
  Control begin;
  Control rollback;
  Control release;
};

struct Database::Controls {
  Controls(Database& database, sqlite_api::sqlite3* connection)
      : begin(connection, "begin"),
        begin_immediate(connection, "begin immediate"),
        commit(connection, "commit"),
        rollback(connection, "rollback"),
        savepoints{{{connection, "work_1"}, {connection, "work_2"}, {connection, "work_3"}}},
        data_version(database, "pragma data_version", "", "i") {}

  Control begin;
  Control begin_immediate;
  Control commit;
  Control rollback;
  std::array<Savepoint, 3> savepoints;
  Statement data_version;
};

Database::Database(std::string file) : file_(std::move(file)) {}

Database::~Database() {
  if (batch_) static_cast<void>(RollbackBatch());
}

soci::session& Database::session() noexcept { return connection_->session; }

HRESULT Database::Open(const std::string& folder, std::unique_ptr<Database>* database,
                       int busy_milliseconds) noexcept {
  database->reset();
  std::unique_ptr<Database> opened;
  try {
    opened.reset(new Database(folder + kFileName));
  } catch (const std::bad_alloc&) {
    return LogFailure(OutOfMemoryFailure(), std::string());
  }
  try {
    if (folder.empty()) throw FailureFromFileError(platform::kErrorPathNotFound);
    if (const std::uint32_t error = platform::MakeFolders(folder)) {
      throw FailureFromFileError(error);
    }
    MakeFile(opened->file_);
    opened->Connect(busy_milliseconds);
  } catch (...) {
    return opened->LogCurrentException();
  }
  if (const HRESULT result = PrepareSchema(*opened, SchemaSteps()); platform::Failed(result)) {
    return result;
  }
  const HRESULT result = opened->Read([&] {
    if (!HasTables(*opened)) throw DamagedFailure();
    Statement select(*opened, "select id from device", "", "i");
    if (!select.RunForRow()) throw DamagedFailure();
    opened->device_ = select.Integer(0);
    return hr::kOk;
  });
  if (platform::Succeeded(result)) *database = std::move(opened);
  return result;
}

void Database::Connect(int busy_milliseconds) {
  connection_ = std::make_unique<Connection>();
  auto& backend = *static_cast<soci::sqlite3_session_backend*>(session().get_backend());
  sqlite_api::sqlite3* file = nullptr;
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX;
  const int code = sqlite_api::sqlite3_open_v2(file_.c_str(), &file, flags, nullptr);
  std::swap(backend.conn_, file);
  sqlite_api::sqlite3_close(file);
  if (backend.conn_ == nullptr) throw std::bad_alloc();
  if (code != SQLITE_OK) {
    NoteError();
    throw FailureFromCode(error_code_, system_error_, nullptr);
  }
  sqlite_api::sqlite3_busy_timeout(backend.conn_, busy_milliseconds);
  longest_text_ =
      static_cast<std::size_t>(sqlite_api::sqlite3_limit(backend.conn_, SQLITE_LIMIT_LENGTH, -1));
  // A file that only may be read would open, and fail later.
  if (sqlite_api::sqlite3_db_readonly(backend.conn_, "main") == 1) {
    throw FailureFromCode(SQLITE_READONLY, 0, nullptr);
  }
  UseWriteAheadLog(busy_milliseconds);
  Configure();
  controls_ = std::make_unique<Controls>(*this, backend.conn_);
}

// Two processes that open a new database at once may find it locked without being made to wait.
void Database::UseWriteAheadLog(int busy_milliseconds) {
  constexpr int kPause = 5;
  const std::int64_t deadline = MillisecondsNow() + busy_milliseconds;
  for (;;) {
    try {
      static_cast<void>(Statement(*this, "pragma journal_mode = wal", "", "t").RunForRow());
      return;
    } catch (const soci::soci_error&) {
      const bool busy = (error_code_ & 0xFF) == SQLITE_BUSY;
      if (!busy || MillisecondsNow() >= deadline) throw;
    }
    SleepMilliseconds(kPause);
  }
}

void Database::Configure() {
  static_cast<void>(Statement(*this, "pragma synchronous = full", "").Run());
  static_cast<void>(Statement(*this, "pragma foreign_keys = on", "").Run());
  static_cast<void>(Statement(*this, "pragma trusted_schema = off", "").Run());
  // What a large import leaves of the log is cut down to this.
  static_cast<void>(Statement(*this, "pragma journal_size_limit = 16777216", "", "i").RunForRow());
}

void Database::NoteError() noexcept {
  sqlite_api::sqlite3* const connection = ConnectionOf(session());
  error_code_ = sqlite_api::sqlite3_extended_errcode(connection);
  system_error_ = 0;
  if ((error_code_ & 0xFF) != SQLITE_IOERR) return;
  system_error_ = SystemErrorOf(connection);
}

// What() of SOCI's errors has the statement's values in it; its message alone has none.
HRESULT Database::LogCurrentException() noexcept {
  try {
    try {
      throw;
    } catch (const Failure& failure) {
      return LogFailure(failure, file_);
    } catch (const soci::soci_error& error) {
      return LogFailure(
          FailureFromCode(error_code_, system_error_, error.get_error_message().c_str()), file_);
    }
  } catch (const std::bad_alloc&) {
    return LogFailure(OutOfMemoryFailure(), file_);
  } catch (...) {
    return LogFailure(Failure{}, file_);
  }
}

bool Database::InTransaction() noexcept {
  return sqlite_api::sqlite3_get_autocommit(ConnectionOf(session())) == 0;
}

// A failure that ended the transaction by itself leaves nothing to undo; where a step cannot be
// undone alone, all is.
void Database::Undo(Savepoint* savepoint) noexcept {
  if (!InTransaction()) return;
  if (savepoint != nullptr && savepoint->rollback.Try() && savepoint->release.Try()) return;
  static_cast<void>(controls_->rollback.Try());
}

HRESULT Database::Run(Access access, WorkCall call, void* work) noexcept {
  if (batch_ && platform::Failed(batch_failure_)) return batch_failure_;
  const bool nested = batch_ || depth_ > 0;
  const bool write = access == Access::kWrite;
  // A read would have to become a write in the middle, which fails when another process wrote.
  if (write && depth_ > 0 && !writing_ && !batch_) return hr::kUnexpected;
  Savepoint* savepoint = nullptr;
  if (nested && write) {
    if (depth_ >= static_cast<int>(controls_->savepoints.size())) return hr::kUnexpected;
    savepoint = &controls_->savepoints[static_cast<std::size_t>(depth_)];
  }
  const bool was_writing = std::exchange(writing_, writing_ || write);
  ++depth_;
  HRESULT result = hr::kFail;
  bool begun = !nested;
  try {
    if (!nested) {
      Undo(nullptr);  // what could not be undone for want of memory
      (write ? controls_->begin_immediate : controls_->begin).Run();
    } else if (savepoint != nullptr) {
      savepoint->begin.Run();
      begun = true;
    }
    result = call(work);
    if (platform::Succeeded(result)) {
      if (!nested) controls_->commit.Run();
      if (savepoint != nullptr) savepoint->release.Run();
    }
  } catch (...) {
    result = LogCurrentException();
  }
  if (platform::Failed(result) && begun) Undo(savepoint);
  --depth_;
  writing_ = was_writing;
  if (write) ++changes_;
  // Some failures end the whole transaction: then nothing of the batch is left.
  if (batch_ && !InTransaction()) batch_failure_ = platform::Failed(result) ? result : hr::kFail;
  return result;
}

HRESULT Database::BeginBatch() noexcept {
  if (batch_ || depth_ > 0) return hr::kUnexpected;
  try {
    Undo(nullptr);
    controls_->begin_immediate.Run();
  } catch (...) {
    const HRESULT result = LogCurrentException();
    Undo(nullptr);
    return result;
  }
  batch_ = true;
  batch_failure_ = hr::kOk;
  return hr::kOk;
}

HRESULT Database::EndBatch(bool commit) noexcept {
  if (!batch_ || depth_ > 0) return hr::kUnexpected;
  HRESULT result = commit ? batch_failure_ : hr::kOk;
  if (commit && platform::Succeeded(result)) {
    try {
      controls_->commit.Run();
    } catch (...) {
      result = LogCurrentException();
    }
  }
  Undo(nullptr);
  batch_ = false;
  batch_failure_ = hr::kOk;
  ++changes_;
  if (!commit || platform::Failed(result)) ++undone_batches_;
  return result;
}

HRESULT Database::CommitBatch() noexcept { return EndBatch(true); }

HRESULT Database::RollbackBatch() noexcept { return EndBatch(false); }

HRESULT Database::Version(std::uint64_t* version) noexcept {
  try {
    static_cast<void>(controls_->data_version.RunForRow());
  } catch (...) {
    return LogCurrentException();
  }
  const auto of_others = static_cast<std::uint32_t>(controls_->data_version.Integer(0));
  *version = std::uint64_t{of_others} << 32 | changes_;
  return hr::kOk;
}

}  // namespace tamu::device
