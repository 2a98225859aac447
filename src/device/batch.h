// device/batch.h - many saves of the embedded device as one: all of them are kept, or none.
//   Between Begin and Commit every change of items and messages of this process belongs to the
//   batch; nothing of it counts as saved before Commit has succeeded. Saves in a batch are many
//   times faster.
//   Errors     results of com.h; kNotImplemented in a build without a database. After a failure of
//              the database itself the batch is lost: what follows fails until it has ended.
//   Threads    none.
#ifndef TAMU_DEVICE_BATCH_H_
#define TAMU_DEVICE_BATCH_H_

#include <memory>

#include "platform/com.h"

namespace tamu::device {

class Stores;

class Batch {
 public:
  Batch() noexcept;
  ~Batch();  // without Commit: Rollback
  Batch(const Batch&) = delete;
  Batch& operator=(const Batch&) = delete;

  // kUnexpected when this process has a batch open already.
  [[nodiscard]] platform::HRESULT Begin() noexcept;
  // Ends the batch, also when it fails: then nothing of it was kept. kUnexpected when none is open.
  [[nodiscard]] platform::HRESULT Commit() noexcept;
  [[nodiscard]] platform::HRESULT Rollback() noexcept;

 private:
  std::shared_ptr<Stores> stores_;  // while it is open
};

}  // namespace tamu::device

#endif  // TAMU_DEVICE_BATCH_H_
