#include "zone.h"

#include <algorithm>
#include <cstring>
#include <ctime>
#include <optional>

#include <vlplatform/errors.h>

#include "calendar.h"

namespace vlplatform {
namespace {

// The tick count of a change in `year`, on the wall clock that is valid before it.
std::int64_t ticksOfChange(const SYSTEMTIME& change, unsigned year) {
  SYSTEMTIME date = change;
  if (change.wYear == 0) {
    date.wYear = static_cast<WORD>(year);
    date.wDay = 1;
    std::int64_t firstOfMonth = 0;
    if (ticksOfFields(date, &firstOfMonth) != ERROR_SUCCESS) {
      return 0;
    }
    unsigned day = 1 + (change.wDayOfWeek + 7 - dayOfWeek(firstOfMonth)) % 7;
    for (unsigned week = 1; week < change.wDay && day + 7 <= daysInMonth(year, change.wMonth); ++week) {
      day += 7;
    }
    date.wDay = static_cast<WORD>(day);
  }
  std::int64_t ticks = 0;
  return ticksOfFields(date, &ticks) == ERROR_SUCCESS ? ticks : 0;
}

std::time_t unixTime(std::int64_t ticks) {
  return (ticks - kUnixEpochTicks) / kTicksPerSecond;
}

std::tm localFields(std::time_t seconds) {
  std::tm fields{};
  localtime_r(&seconds, &fields);
  return fields;
}

LONG biasOf(const std::tm& fields) {
  return static_cast<LONG>(-fields.tm_gmtoff / 60);
}

// The first second of the other offset in (from, to], found by halving.
std::time_t changeBetween(std::time_t from, std::time_t to) {
  const long before = localFields(from).tm_gmtoff;
  while (to - from > 1) {
    const std::time_t middle = from + (to - from) / 2;
    (localFields(middle).tm_gmtoff == before ? from : to) = middle;
  }
  return to;
}

void copyName(const char* name, WCHAR (&target)[32]) {
  const std::size_t length = std::min<std::size_t>(name != nullptr ? std::strlen(name) : 0, 31);
  std::copy_n(name, length, target);
  target[length] = L'\0';
}

}  // namespace

DWORD periodOf(const TIME_ZONE_INFORMATION& zone, std::int64_t ticks, bool local) {
  if (zone.DaylightDate.wMonth == 0 || zone.StandardDate.wMonth == 0) {
    return TIME_ZONE_ID_UNKNOWN;
  }
  // Each change is given on the clock that ends with it: compare on both clocks.
  const std::int64_t standardClock = local ? ticks : ticks - (zone.Bias + zone.StandardBias) * kTicksPerMinute;
  const std::int64_t daylightClock = local ? ticks : ticks - (zone.Bias + zone.DaylightBias) * kTicksPerMinute;
  SYSTEMTIME fields{};
  if (fieldsOfTicks(std::max<std::int64_t>(standardClock, 0), &fields) != ERROR_SUCCESS) {
    return TIME_ZONE_ID_UNKNOWN;
  }
  const std::int64_t daylightBegins = ticksOfChange(zone.DaylightDate, fields.wYear);
  const std::int64_t daylightEnds = ticksOfChange(zone.StandardDate, fields.wYear);
  const bool begun = standardClock >= daylightBegins;
  const bool ended = daylightClock >= daylightEnds;
  const bool daylight = daylightBegins < daylightEnds ? begun && !ended : begun || !ended;
  return daylight ? TIME_ZONE_ID_DAYLIGHT : TIME_ZONE_ID_STANDARD;
}

LONG biasIn(const TIME_ZONE_INFORMATION& zone, DWORD period) {
  switch (period) {
    case TIME_ZONE_ID_DAYLIGHT:
      return zone.Bias + zone.DaylightBias;
    case TIME_ZONE_ID_STANDARD:
      return zone.Bias + zone.StandardBias;
    default:
      return zone.Bias;
  }
}

LONG thisComputersBias(std::int64_t ticks) {
  tzset();
  return biasOf(localFields(unixTime(ticks)));
}

TIME_ZONE_INFORMATION thisComputersZone(std::int64_t ticks) {
  tzset();
  TIME_ZONE_INFORMATION zone{};
  const std::tm present = localFields(unixTime(ticks));
  zone.Bias = biasOf(present);
  copyName(present.tm_zone, zone.StandardName);

  // Look at the year day by day: a year with exactly one change each way has daylight time.
  std::tm newYear{};
  newYear.tm_year = present.tm_year;
  newYear.tm_mday = 1;
  newYear.tm_isdst = -1;
  const std::time_t begin = std::mktime(&newYear);
  constexpr std::time_t kDay = std::time_t{24} * 60 * 60;
  std::optional<std::time_t> toDaylight;
  std::optional<std::time_t> toStandard;
  for (int day = 0; day < 366; ++day) {
    const std::time_t from = begin + day * kDay;
    const bool daylightAfter = localFields(from + kDay).tm_isdst > 0;
    if ((localFields(from).tm_isdst > 0) != daylightAfter) {
      (daylightAfter ? toDaylight : toStandard) = changeBetween(from, from + kDay);
    }
  }
  if (!toDaylight || !toStandard) {
    return zone;
  }
  const auto wallClockBefore = [](std::time_t change, LONG bias) {
    SYSTEMTIME fields{};
    fieldsOfTicks(kUnixEpochTicks + change * kTicksPerSecond - bias * kTicksPerMinute, &fields);
    return fields;
  };
  const std::tm standard = localFields(*toStandard);
  const std::tm daylight = localFields(*toDaylight);
  zone.Bias = biasOf(standard);
  zone.DaylightBias = biasOf(daylight) - zone.Bias;
  zone.DaylightDate = wallClockBefore(*toDaylight, zone.Bias);
  zone.StandardDate = wallClockBefore(*toStandard, zone.Bias + zone.DaylightBias);
  copyName(standard.tm_zone, zone.StandardName);
  copyName(daylight.tm_zone, zone.DaylightName);
  return zone;
}

}  // namespace vlplatform
