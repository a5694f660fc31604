/// The machine's clock and time zone.
#ifndef VLPLATFORM_MACHINE_CLOCK_H
#define VLPLATFORM_MACHINE_CLOCK_H

#include <optional>

#include <vlplatform/machine/guarded.h>
#include <vlplatform/time.h>

namespace vlplatform {

/// Answers from this machine's clock and zone (as the C library knows them) until a test sets others. Thread-safe.
class VLPLATFORM_API Clock {
 public:
  void reset() { facts_.reset(); }
  /// Stops the clock at this tick count (100 ns since 1601, UTC).
  void setTicks(std::uint64_t ticks) { facts_.set(&Facts::ticks, ticks); }
  void setZone(const TIME_ZONE_INFORMATION& zone) { facts_.set(&Facts::zone, zone); }

  std::uint64_t ticks() const;
  TIME_ZONE_INFORMATION zone() const;
  /// Minutes to add to local time for UTC, by the zone's rules at the present moment.
  LONG bias() const;

 private:
  struct Facts {
    std::optional<std::uint64_t> ticks{};
    std::optional<TIME_ZONE_INFORMATION> zone{};
  };
  Guarded<Facts> facts_;
};

}  // namespace vlplatform

#endif
