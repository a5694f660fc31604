/// Time zone rules, without state.
#ifndef VLPLATFORM_SRC_ZONE_H
#define VLPLATFORM_SRC_ZONE_H

#include <vlplatform/time.h>

namespace vlplatform {

/// Whether `ticks` falls into daylight time, as TIME_ZONE_ID_...; `local` tells whether the count is the zone's wall
/// clock or UTC. TIME_ZONE_ID_UNKNOWN for a zone without daylight time.
DWORD periodOf(const TIME_ZONE_INFORMATION& zone, std::int64_t ticks, bool local);
/// Minutes to add to the zone's local time for UTC in that period.
LONG biasIn(const TIME_ZONE_INFORMATION& zone, DWORD period);
/// Minutes to add to the computer's own local time for UTC, at `ticks` (UTC).
LONG thisComputersBias(std::int64_t ticks);
/// The computer's own zone, as the C library knows it, with its changes in the year of `ticks` (UTC).
TIME_ZONE_INFORMATION thisComputersZone(std::int64_t ticks);

}  // namespace vlplatform

#endif
