#include "calendar.h"

#include <array>

#include <vlplatform/errors.h>

namespace vlplatform {
namespace {

constexpr unsigned kFirstYear = 1601;
constexpr unsigned kLastYear = 30827;
constexpr std::array<std::uint16_t, 13> kDaysBeforeMonth = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365};

// Days from 1 January 1601, which opens a cycle of 400 years, so that the leap rules count from zero.
std::int64_t daysBeforeYear(unsigned year) {
  const std::int64_t years = static_cast<std::int64_t>(year) - kFirstYear;
  return years * 365 + years / 4 - years / 100 + years / 400;
}

unsigned daysBeforeMonth(unsigned year, unsigned month) {
  return kDaysBeforeMonth[month - 1] + (month > 2 && isLeapYear(year) ? 1u : 0u);
}

}  // namespace

bool isLeapYear(unsigned year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

unsigned daysInMonth(unsigned year, unsigned month) {
  if (month < 1 || month > 12) {
    return 0;
  }
  return kDaysBeforeMonth[month] - kDaysBeforeMonth[month - 1] + (month == 2 && isLeapYear(year) ? 1u : 0u);
}

unsigned dayOfWeek(std::int64_t ticks) {
  constexpr unsigned kMonday = 1;  // 1 January 1601
  return static_cast<unsigned>((ticks / kTicksPerDay + kMonday) % 7);
}

DWORD ticksOfFields(const SYSTEMTIME& time, std::int64_t* ticks) {
  if (time.wYear < kFirstYear || time.wYear > kLastYear || time.wDay < 1 ||
      time.wDay > daysInMonth(time.wYear, time.wMonth) || time.wHour > 23 || time.wMinute > 59 || time.wSecond > 59 ||
      time.wMilliseconds > 999) {
    return ERROR_INVALID_PARAMETER;
  }
  const std::int64_t days = daysBeforeYear(time.wYear) + daysBeforeMonth(time.wYear, time.wMonth) + time.wDay - 1;
  const std::int64_t seconds = (time.wHour * 60 + time.wMinute) * 60 + time.wSecond;
  *ticks = days * kTicksPerDay + seconds * kTicksPerSecond + time.wMilliseconds * (kTicksPerSecond / 1000);
  return ERROR_SUCCESS;
}

DWORD fieldsOfTicks(std::int64_t ticks, SYSTEMTIME* time) {
  if (ticks < 0) {
    return ERROR_INVALID_PARAMETER;
  }
  const std::int64_t days = ticks / kTicksPerDay;
  // An estimate by the mean length of a year, at most one year off.
  auto year = static_cast<unsigned>(kFirstYear + days * 400 / 146'097);
  while (daysBeforeYear(year + 1) <= days) {
    ++year;
  }
  while (daysBeforeYear(year) > days) {
    --year;
  }
  const auto dayOfYear = static_cast<unsigned>(days - daysBeforeYear(year));
  unsigned month = dayOfYear / 32 + 1;
  while (month < 12 && daysBeforeMonth(year, month + 1) <= dayOfYear) {
    ++month;
  }
  const auto milliseconds = static_cast<unsigned>(ticks % kTicksPerDay / (kTicksPerSecond / 1000));
  time->wYear = static_cast<WORD>(year);
  time->wMonth = static_cast<WORD>(month);
  time->wDayOfWeek = static_cast<WORD>(dayOfWeek(ticks));
  time->wDay = static_cast<WORD>(dayOfYear - daysBeforeMonth(year, month) + 1);
  time->wHour = static_cast<WORD>(milliseconds / 3'600'000);
  time->wMinute = static_cast<WORD>(milliseconds / 60'000 % 60);
  time->wSecond = static_cast<WORD>(milliseconds / 1000 % 60);
  time->wMilliseconds = static_cast<WORD>(milliseconds % 1000);
  return ERROR_SUCCESS;
}

}  // namespace vlplatform
