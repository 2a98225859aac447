#include "device/com_object.h"

namespace tamu::device {
namespace {

std::int64_t live_objects = 0;

}  // namespace

std::int64_t LiveObjects() noexcept { return live_objects; }

namespace com_object_detail {

void CountObject(std::int64_t difference) noexcept { live_objects += difference; }

}  // namespace com_object_detail
}  // namespace tamu::device
