// store/import_batch.h - the saves of an import, many at a time: faster, and each batch is kept as a
// whole or not at all.
//   Errors     texts for people; std::bad_alloc.
#ifndef TAMU_TOOLS_STORE_IMPORT_BATCH_H_
#define TAMU_TOOLS_STORE_IMPORT_BATCH_H_

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "device/batch.h"
#include "store/import_counts.h"

namespace tamu::tool {

// An object whose fate is sealed with its batch.
struct PendingObject {
  StoredKind kind;
  Fate fate;
  std::uint32_t line;
  std::string label;
  std::string detail;  // of the fate: an id
};

class ImportBatch {
 public:
  // Opens a batch when none is open; waits while another program writes, calling `waiting` before
  // each further wait, which returns false to give up. False, with the reason.
  [[nodiscard]] bool Open(const std::function<bool()>& waiting, std::string* problem);
  [[nodiscard]] bool is_open() const noexcept { return open_; }

  // The object's work has succeeded so far.
  void Add(PendingObject object) { pending_.push_back(std::move(object)); }
  // It is time to close it: it has its size, or has kept other programs waiting for a while.
  [[nodiscard]] bool IsFull() const;

  // Ends the batch. True when all of it is kept for good; else nothing is, with the reason, or
  // none when what failed has said it before. `*objects` are those that were added.
  [[nodiscard]] bool Close(std::vector<PendingObject>* objects, std::string* problem);

  // The next object is a batch of its own, so that what can be kept is; those behind it that are
  // kept grow again.
  void SetSingle() noexcept { most_objects_ = 1; }

 private:
  using Clock = std::chrono::steady_clock;

  device::Batch batch_;
  bool open_ = false;
  // Measured with 100,000 contacts: twice as fast as 100, and larger ones are hardly faster.
  static constexpr std::size_t kMostObjects = 1000;
  std::size_t most_objects_ = kMostObjects;
  Clock::time_point opened_;
  std::vector<PendingObject> pending_;
};

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_STORE_IMPORT_BATCH_H_
