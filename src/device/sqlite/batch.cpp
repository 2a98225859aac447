#include "device/batch.h"

#include <utility>

#include "device/sqlite/stores.h"

namespace tamu::device {

using platform::HRESULT;
namespace hr = platform::hr;

Batch::Batch() noexcept = default;

Batch::~Batch() {
  if (stores_ != nullptr) static_cast<void>(Rollback());
}

HRESULT Batch::Begin() noexcept {
  if (stores_ != nullptr) return hr::kUnexpected;
  std::shared_ptr<Stores> stores;
  HRESULT result = OpenStores(&stores);
  if (platform::Succeeded(result)) result = stores->database().BeginBatch();
  if (platform::Succeeded(result)) stores_ = std::move(stores);
  return result;
}

HRESULT Batch::Commit() noexcept {
  if (stores_ == nullptr) return hr::kUnexpected;
  return std::exchange(stores_, nullptr)->database().CommitBatch();
}

HRESULT Batch::Rollback() noexcept {
  if (stores_ == nullptr) return hr::kUnexpected;
  return std::exchange(stores_, nullptr)->database().RollbackBatch();
}

}  // namespace tamu::device
