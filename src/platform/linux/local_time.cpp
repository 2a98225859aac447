// platform/linux/local_time.cpp - file times between UTC and local time, by the C library's zone
// rules.
//   The C library only says what the offset is at an instant. mktime, which goes the other way, is
//   not asked: in a repeated or left out hour its answer depends on what it was asked before.
#include <time.h>

#include <limits>
#include <optional>

#include "platform/linux/civil_time.h"
#include "platform/linux/errors.h"
#include "platform/linux/file_ticks.h"
#include "platform/time.h"

namespace tamu::platform {
namespace {

static_assert(sizeof(time_t) == 8, "dates beyond 2038 need _TIME_BITS=64");

constexpr std::int64_t kStartSecond = kFileTimeStartDay * kSecondsPerDay;

// Seconds that local time is ahead of UTC at an instant, given in seconds since 1970. None when the
// year does not fit the C library's structure.
std::optional<std::int64_t> OffsetAt(std::int64_t instant) {
  const time_t when = instant;
  tm local{};
  if (::localtime_r(&when, &local) == nullptr) return std::nullopt;
  return local.tm_gmtoff;
}

// The offset that counts at a local time, given as if it was UTC. The offsets a day before and a
// day after differ only around a change; the one before comes first, so that a repeated hour is its
// first occurrence, and stays when neither is right, in the hour that is left out.
std::optional<std::int64_t> OffsetOfLocal(std::int64_t local) {
  const std::optional<std::int64_t> before = OffsetAt(local - kSecondsPerDay);
  const std::optional<std::int64_t> after = OffsetAt(local + kSecondsPerDay);
  if (!before || !after) return std::nullopt;
  if (OffsetAt(local - *before) == before) return before;
  return OffsetAt(local - *after) == after ? after : before;
}

std::int32_t Shift(std::int64_t ticks, std::int64_t seconds, FILETIME* out) {
  const std::int64_t shift = seconds * kTicksPerSecond;
  // Below 0 is before 1601; the sum of two such numbers never overflows downwards.
  if (shift > std::numeric_limits<std::int64_t>::max() - ticks || ticks + shift < 0) {
    return FailWith(kErrorInvalidParameter, 0);
  }
  *out = FileTimeOf(ticks + shift);
  return 1;
}

std::int32_t ToLocal(const FILETIME* utc, FILETIME* local) {
  const std::int64_t ticks = TicksOf(*utc);
  if (ticks < 0) return FailWith(kErrorInvalidParameter, 0);
  ::tzset();  // localtime_r alone would not notice that TZ has changed
  const std::optional<std::int64_t> offset = OffsetAt(kStartSecond + ticks / kTicksPerSecond);
  return offset ? Shift(ticks, *offset, local) : FailWith(kErrorInvalidParameter, 0);
}

std::int32_t ToUtc(const FILETIME* local, FILETIME* utc) {
  const std::int64_t ticks = TicksOf(*local);
  if (ticks < 0) return FailWith(kErrorInvalidParameter, 0);
  ::tzset();
  const std::optional<std::int64_t> offset = OffsetOfLocal(kStartSecond + ticks / kTicksPerSecond);
  return offset ? Shift(ticks, -*offset, utc) : FailWith(kErrorInvalidParameter, 0);
}

}  // namespace

constinit Service<std::int32_t(const FILETIME*, FILETIME*)> FileTimeToLocalFileTime{
    "FileTimeToLocalFileTime", &ToLocal, 0};
constinit Service<std::int32_t(const FILETIME*, FILETIME*)> LocalFileTimeToFileTime{
    "LocalFileTimeToFileTime", &ToUtc, 0};

}  // namespace tamu::platform
