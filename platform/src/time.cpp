#include <vlplatform/time.h>

#include "calendar.h"
#include "gate.h"
#include "zone.h"

using namespace vlplatform;

void GetSystemTime(SYSTEMTIME* time) {
  gate("GetSystemTime");
  fieldsOfTicks(static_cast<std::int64_t>(machine().clock().ticks()), time);
}

void GetLocalTime(SYSTEMTIME* time) {
  gate("GetLocalTime");
  Clock& clock = machine().clock();
  fieldsOfTicks(static_cast<std::int64_t>(clock.ticks()) - clock.bias() * kTicksPerMinute, time);
}

void GetSystemTimeAsFileTime(FILETIME* time) {
  gate("GetSystemTimeAsFileTime");
  *time = fileTimeOf(static_cast<std::int64_t>(machine().clock().ticks()));
}

BOOL SystemTimeToFileTime(const SYSTEMTIME* time, FILETIME* fileTime) {
  if (gateFails("SystemTimeToFileTime")) {
    return FALSE;
  }
  std::int64_t ticks = 0;
  const DWORD code = ticksOfFields(*time, &ticks);
  if (code == ERROR_SUCCESS) {
    *fileTime = fileTimeOf(ticks);
  }
  return succeed(code);
}

BOOL FileTimeToSystemTime(const FILETIME* fileTime, SYSTEMTIME* time) {
  if (gateFails("FileTimeToSystemTime")) {
    return FALSE;
  }
  return succeed(fieldsOfTicks(ticksOf(*fileTime), time));
}

// The zone's present offset, not the one of the date: the platform's rule.
BOOL LocalFileTimeToFileTime(const FILETIME* local, FILETIME* utc) {
  if (gateFails("LocalFileTimeToFileTime")) {
    return FALSE;
  }
  *utc = fileTimeOf(ticksOf(*local) + machine().clock().bias() * kTicksPerMinute);
  return TRUE;
}

LONG CompareFileTime(const FILETIME* first, const FILETIME* second) {
  gate("CompareFileTime");
  const auto a = static_cast<std::uint64_t>(ticksOf(*first));
  const auto b = static_cast<std::uint64_t>(ticksOf(*second));
  return a < b ? -1 : (a > b ? 1 : 0);
}

DWORD GetTimeZoneInformation(TIME_ZONE_INFORMATION* zone) {
  if (gateFails("GetTimeZoneInformation")) {
    return TIME_ZONE_ID_INVALID;
  }
  Clock& clock = machine().clock();
  *zone = clock.zone();
  return periodOf(*zone, static_cast<std::int64_t>(clock.ticks()), false);
}

BOOL TzSpecificLocalTimeToSystemTime(const TIME_ZONE_INFORMATION* zone, const SYSTEMTIME* local, SYSTEMTIME* utc) {
  if (gateFails("TzSpecificLocalTimeToSystemTime")) {
    return FALSE;
  }
  std::int64_t ticks = 0;
  DWORD code = ticksOfFields(*local, &ticks);
  if (code == ERROR_SUCCESS) {
    // Only a null zone needs the machine's; the caller's has members that need not be set when there is no daylight
    // time, so it is read where it stands.
    LONG bias = 0;
    if (zone != nullptr) {
      bias = biasIn(*zone, periodOf(*zone, ticks, true));
    } else {
      const TIME_ZONE_INFORMATION present = machine().clock().zone();
      bias = biasIn(present, periodOf(present, ticks, true));
    }
    code = fieldsOfTicks(ticks + bias * kTicksPerMinute, utc);
  }
  return succeed(code);
}
