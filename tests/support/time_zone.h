// support/time_zone.h - zones as POSIX rules, so that no test depends on installed zone data.
#ifndef TAMU_TESTS_SUPPORT_TIME_ZONE_H_
#define TAMU_TESTS_SUPPORT_TIME_ZONE_H_

#include "support/scratch_folder.h"

namespace tamu::testing {

inline constexpr const char* kUtcZone = "UTC0";
// UTC+1 all year.
inline constexpr const char* kPlusOneZone = "ONE-1";
// UTC-5 all year.
inline constexpr const char* kMinusFiveZone = "FIVE5";
// UTC+1, in summer UTC+2: 02:00 to 03:00 is left out on the last Sunday of March and comes twice on
// the last Sunday of October.
inline constexpr const char* kBerlinZone = "CET-1CEST,M3.5.0,M10.5.0/3";
// UTC-5, in summer UTC-4.
inline constexpr const char* kNewYorkZone = "EST5EDT,M3.2.0,M11.1.0";

// The device's zone while it lives.
class ScopedTimeZone : public ScopedEnvironment {
 public:
  explicit ScopedTimeZone(const char* rule) : ScopedEnvironment("TZ", rule) {}
};

}  // namespace tamu::testing

#endif  // TAMU_TESTS_SUPPORT_TIME_ZONE_H_
