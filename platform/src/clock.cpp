#include <vlplatform/machine/allocations.h>
#include <vlplatform/machine/clock.h>

#include <chrono>

#include "calendar.h"
#include "zone.h"

namespace vlplatform {

void Clock::reset() {
  const std::lock_guard lock(mutex_);
  ticks_.reset();
  zone_.reset();
}

void Clock::setTicks(std::uint64_t ticks) {
  const std::lock_guard lock(mutex_);
  ticks_ = ticks;
}

void Clock::setZone(const TIME_ZONE_INFORMATION& zone) {
  const std::lock_guard lock(mutex_);
  zone_ = zone;
}

std::uint64_t Clock::ticks() const {
  const std::lock_guard lock(mutex_);
  if (ticks_) {
    return *ticks_;
  }
  using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, kTicksPerSecond>>;
  const auto sinceUnixEpoch = std::chrono::system_clock::now().time_since_epoch();
  return static_cast<std::uint64_t>(kUnixEpochTicks + std::chrono::duration_cast<Ticks>(sinceUnixEpoch).count());
}

// The C library may read its zone files here.
TIME_ZONE_INFORMATION Clock::zone() const {
  const OwnAllocations own;
  const auto now = static_cast<std::int64_t>(ticks());
  const std::lock_guard lock(mutex_);
  return zone_ ? *zone_ : thisComputersZone(now);
}

LONG Clock::bias() const {
  const OwnAllocations own;
  const auto now = static_cast<std::int64_t>(ticks());
  const std::lock_guard lock(mutex_);
  return zone_ ? biasIn(*zone_, periodOf(*zone_, now, false)) : thisComputersBias(now);
}

}  // namespace vlplatform
