// device/sqlite/database.h - the device's database: one file, "device.db" in the device's folder.
//   Opening makes what is missing (the folder and the file for this user alone, the tables, newer
//   versions' changes of older tables). Writes are durable when they are reported: they survive the
//   death of the process and of the machine. Several processes may use one device; each waits for
//   the others for some seconds.
//   Errors     results of com.h: kLocked (another program has it for too long), kWriteProtected,
//              kCorrupt (damaged, or another program's database), kDiskFull, kAccessDenied,
//              kNewerVersion, kOutOfMemory, kFail, or the platform's number of a file error. Each
//              comes with exactly one line of the log. Results that the work itself gives are handed
//              on without one.
//   Threads    none.
#ifndef TAMU_DEVICE_SQLITE_DATABASE_H_
#define TAMU_DEVICE_SQLITE_DATABASE_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>

#include "device/sqlite/failure.h"
#include "platform/com.h"

namespace soci {
class session;
}

namespace tamu::device {

inline constexpr int kBusyMilliseconds = 10000;

class Database {
 public:
  // Opens the device in a folder (as the system spells it; "" is kPathNotFound's result).
  // `busy_milliseconds` is how long each operation waits for other processes.
  [[nodiscard]] static platform::HRESULT Open(const std::string& folder,
                                              std::unique_ptr<Database>* database,
                                              int busy_milliseconds = kBusyMilliseconds) noexcept;
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  // Runs `work`, a callable that uses statements and gives a result, over one state of the database.
  template <typename Work>
  [[nodiscard]] platform::HRESULT Read(Work&& work) noexcept {
    return Run(Access::kRead, &Call<Work>, &work);
  }

  // Runs `work` in a transaction of its own, or as one step of the open batch: all of its changes
  // are made when it gives a success, none when it gives a failure or throws.
  template <typename Work>
  [[nodiscard]] platform::HRESULT Write(Work&& work) noexcept {
    return Run(Access::kWrite, &Call<Work>, &work);
  }

  // Between the two, writes belong to one transaction, and none counts before CommitBatch has
  // succeeded. A failure of the database itself ends the batch: what follows, CommitBatch included,
  // fails with the same result. kUnexpected when a batch is open already, or none is.
  [[nodiscard]] platform::HRESULT BeginBatch() noexcept;
  [[nodiscard]] platform::HRESULT CommitBatch() noexcept;
  [[nodiscard]] platform::HRESULT RollbackBatch() noexcept;
  [[nodiscard]] bool InBatch() const noexcept { return batch_; }
  // How many batches have ended without being kept.
  [[nodiscard]] std::uint32_t UndoneBatches() const noexcept { return undone_batches_; }

  // A number that differs after any change, of this process (also one that was undone) or another.
  [[nodiscard]] platform::HRESULT Version(std::uint64_t* version) noexcept;

  // The id that every row of this device carries.
  [[nodiscard]] std::int64_t device() const noexcept { return device_; }
  [[nodiscard]] const std::string& file() const noexcept { return file_; }

  // For this folder's own files: the connection, the longest text in bytes, and a note of the
  // connection's error while it is fresh.
  [[nodiscard]] soci::session& session() noexcept;
  [[nodiscard]] std::size_t LongestText() const noexcept { return longest_text_; }
  void NoteError() noexcept;

 private:
  enum class Access : std::uint8_t { kRead, kWrite };
  struct Connection;
  struct Controls;
  struct Savepoint;
  using WorkCall = platform::HRESULT (*)(void* work);

  template <typename Work>
  static platform::HRESULT Call(void* work) {
    return (*static_cast<std::remove_reference_t<Work>*>(work))();
  }

  explicit Database(std::string file);
  void Connect(int busy_milliseconds);
  void Configure();
  void UseWriteAheadLog(int busy_milliseconds);
  platform::HRESULT Run(Access access, WorkCall call, void* work) noexcept;
  platform::HRESULT LogCurrentException() noexcept;
  void Undo(Savepoint* savepoint) noexcept;
  [[nodiscard]] bool InTransaction() noexcept;
  platform::HRESULT EndBatch(bool commit) noexcept;

  std::string file_;
  std::unique_ptr<Connection> connection_;
  std::unique_ptr<Controls> controls_;  // statements: they die before the connection
  int depth_ = 0;                       // of Read and Write within each other
  bool writing_ = false;
  bool batch_ = false;
  platform::HRESULT batch_failure_ = platform::hr::kOk;
  std::uint32_t changes_ = 0;
  std::uint32_t undone_batches_ = 0;
  std::int64_t device_ = 0;
  std::size_t longest_text_ = 0;
  int error_code_ = 0;
  int system_error_ = 0;
};

}  // namespace tamu::device

#endif  // TAMU_DEVICE_SQLITE_DATABASE_H_
