/// The platform's calendar: fields to tick counts (100 ns since 1601) and back, without state.
#ifndef VLPLATFORM_SRC_CALENDAR_H
#define VLPLATFORM_SRC_CALENDAR_H

#include <vlplatform/time.h>

namespace vlplatform {

inline constexpr std::int64_t kTicksPerSecond = 10'000'000;
inline constexpr std::int64_t kTicksPerMinute = 60 * kTicksPerSecond;
inline constexpr std::int64_t kTicksPerDay = kTicksPerMinute * 60 * 24;
/// Ticks from 1601 to 1970.
inline constexpr std::int64_t kUnixEpochTicks = 11'644'473'600 * kTicksPerSecond;

bool isLeapYear(unsigned year);
/// 0 for a month that does not exist.
unsigned daysInMonth(unsigned year, unsigned month);
/// 0 is Sunday.
unsigned dayOfWeek(std::int64_t ticks);

/// ERROR_INVALID_PARAMETER for fields that the calendar does not have; wDayOfWeek is not read.
DWORD ticksOfFields(const SYSTEMTIME& time, std::int64_t* ticks);
/// ERROR_INVALID_PARAMETER for a negative count.
DWORD fieldsOfTicks(std::int64_t ticks, SYSTEMTIME* time);

inline std::int64_t ticksOf(const FILETIME& time) {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime);
}
inline FILETIME fileTimeOf(std::int64_t ticks) {
  return {static_cast<DWORD>(ticks), static_cast<DWORD>(static_cast<std::uint64_t>(ticks) >> 32)};
}

}  // namespace vlplatform

#endif
