// The device of a build without a database: it has no stores.
#include "device/batch.h"
#include "device/health.h"
#include "platform/linux/class_table.h"

namespace tamu::platform {

const DeviceProvider& ProvidedDevice() noexcept {
  static constexpr DeviceProvider kNone{{}, nullptr};
  return kNone;
}

}  // namespace tamu::platform

namespace tamu::device {

Batch::Batch() noexcept = default;
Batch::~Batch() = default;
platform::HRESULT Batch::Begin() noexcept { return platform::hr::kNotImplemented; }
platform::HRESULT Batch::Commit() noexcept { return platform::hr::kUnexpected; }
platform::HRESULT Batch::Rollback() noexcept { return platform::hr::kUnexpected; }

platform::HRESULT HEALTH_Examine(DatabaseHealth* health) noexcept {
  *health = {};
  return platform::hr::kNotImplemented;
}

}  // namespace tamu::device
