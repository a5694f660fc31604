#include <vlplatform/machine/clock.h>

#include <chrono>

#include "calendar.h"
#include "zone.h"

namespace vlplatform {

std::uint64_t Clock::ticks() const {
  if (const auto ticks = facts_.get(&Facts::ticks)) {
    return *ticks;
  }
  using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, kTicksPerSecond>>;
  const auto sinceUnixEpoch = std::chrono::system_clock::now().time_since_epoch();
  return static_cast<std::uint64_t>(kUnixEpochTicks + std::chrono::duration_cast<Ticks>(sinceUnixEpoch).count());
}

// The C library may read its zone files in both.

TIME_ZONE_INFORMATION Clock::zone() const {
  const auto now = static_cast<std::int64_t>(ticks());
  return facts_.with([&](const Facts& facts) { return facts.zone ? *facts.zone : thisComputersZone(now); });
}

LONG Clock::bias() const {
  const auto now = static_cast<std::int64_t>(ticks());
  return facts_.with([&](const Facts& facts) {
    return facts.zone ? biasIn(*facts.zone, periodOf(*facts.zone, now, false)) : thisComputersBias(now);
  });
}

}  // namespace vlplatform
