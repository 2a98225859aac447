#include "store/import_batch.h"

#include <algorithm>
#include <thread>
#include <utility>

#include "store/error_lines.h"
#include "store/store_lines.h"

namespace tamu::tool {
namespace {

constexpr std::chrono::milliseconds kLongest{1000};
// Each wait is some ten seconds.
constexpr int kMostWaits = 30;
// Others that wait look about ten times a second whether it is their turn: behind a batch there is a
// twentieth of its time for them.
constexpr int kShareForOthers = 20;

std::string ReasonOf(const ErrorLines& logged) { return STORELINES_From(logged).failure; }

}  // namespace

bool ImportBatch::Open(const std::function<bool()>& waiting, std::string* problem) {
  for (int waits = 0; !open_; ++waits) {
    const ErrorLines logged;
    const platform::HRESULT result = batch_.Begin();
    open_ = platform::Succeeded(result);
    if (open_) {
      opened_ = Clock::now();
      break;
    }
    const bool again = result == platform::hr::kLocked && waits < kMostWaits && waiting();
    if (again) continue;
    *problem = ReasonOf(logged);
    if (problem->empty()) *problem = "the device cannot be written";
    return false;
  }
  return true;
}

bool ImportBatch::IsFull() const {
  return pending_.size() >= most_objects_ || Clock::now() - opened_ >= kLongest;
}

bool ImportBatch::Close(std::vector<PendingObject>* objects, std::string* problem) {
  objects->clear();
  problem->clear();
  std::swap(*objects, pending_);
  if (!std::exchange(open_, false)) return true;
  const ErrorLines logged;
  const bool kept = platform::Succeeded(batch_.Commit());
  if (!kept) {
    *problem = ReasonOf(logged);
    return false;
  }
  most_objects_ = std::min(most_objects_ * 2, kMostObjects);
  if (objects->size() > 1) {
    std::this_thread::sleep_for((Clock::now() - opened_) / kShareForOthers);
  }
  return true;
}

}  // namespace tamu::tool
