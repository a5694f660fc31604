// Daylight time: rules, dates, and the computer's own zone against the C library.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

#include <support/machinetest.h>

#include "../timetext/oracle.h"

namespace {

using oracle::Fields;

constexpr SYSTEMTIME rule(WORD month, WORD weekday, WORD week, WORD hour) {
  return {0, month, weekday, week, hour, 0, 0, 0};
}

TIME_ZONE_INFORMATION zoneOf(LONG bias, const SYSTEMTIME& daylight, const SYSTEMTIME& standard) {
  return {bias, {}, standard, 0, {}, daylight, -60};
}

class Zones : public support::MachineTest {
 protected:
  static DWORD periodAt(std::int64_t ticks) {
    machine().clock().setTicks(static_cast<std::uint64_t>(ticks));
    TIME_ZONE_INFORMATION zone;
    return GetTimeZoneInformation(&zone);
  }
};

const TIME_ZONE_INFORMATION kBerlin = zoneOf(-60, rule(3, 0, 5, 2), rule(10, 0, 5, 3));
const TIME_ZONE_INFORMATION kSydney = zoneOf(-600, rule(10, 0, 1, 2), rule(4, 0, 1, 3));

TEST_F(Zones, PeriodsChangeOnTheMinute) {
  const struct {
    TIME_ZONE_INFORMATION zone;
    Fields change;  // UTC
    DWORD before;
    DWORD after;
  } rows[] = {
      {kBerlin, {2013, 3, 0, 31, 1, 0, 0, 0}, TIME_ZONE_ID_STANDARD, TIME_ZONE_ID_DAYLIGHT},
      {kBerlin, {2013, 10, 0, 27, 1, 0, 0, 0}, TIME_ZONE_ID_DAYLIGHT, TIME_ZONE_ID_STANDARD},
      {kSydney, {2013, 10, 0, 5, 16, 0, 0, 0}, TIME_ZONE_ID_STANDARD, TIME_ZONE_ID_DAYLIGHT},
      {kSydney, {2013, 4, 0, 6, 16, 0, 0, 0}, TIME_ZONE_ID_DAYLIGHT, TIME_ZONE_ID_STANDARD},
      {kSydney, {2013, 1, 0, 1, 0, 0, 0, 0}, TIME_ZONE_ID_DAYLIGHT, TIME_ZONE_ID_DAYLIGHT},
      // A change by date holds in its year.
      {zoneOf(0, {2013, 5, 0, 17, 6, 0, 0, 0}, {2013, 9, 0, 2, 0, 0, 0, 0}),
       {2013, 5, 0, 17, 6, 0, 0, 0},
       TIME_ZONE_ID_STANDARD,
       TIME_ZONE_ID_DAYLIGHT},
      {zoneOf(0, {}, {}), {2013, 7, 0, 31, 1, 0, 0, 0}, TIME_ZONE_ID_UNKNOWN, TIME_ZONE_ID_UNKNOWN},
  };
  for (const auto& row : rows) {
    machine().clock().setZone(row.zone);
    const std::int64_t change = *oracle::ticksOf(row.change);
    EXPECT_EQ(periodAt(change - 1), row.before) << testing::PrintToString(row.change);
    EXPECT_EQ(periodAt(change), row.after) << testing::PrintToString(row.change);
  }
}

// Every month of years that begin on each day of the week.
TEST_F(Zones, RulesFindTheirDay) {
  faults().reset();
  for (WORD year = 2000; year < 2028; ++year) {
    for (WORD month = 2; month <= 11; ++month) {
      for (WORD week = 1; week <= 5; ++week) {
        for (WORD weekday = 0; weekday < 7; ++weekday) {
          const auto monthOfYear = std::chrono::year(year) / month;
          const auto day = std::chrono::weekday(weekday);
          const std::chrono::year_month_day date = week == 5
                                                       ? std::chrono::sys_days(monthOfYear / day[std::chrono::last])
                                                       : std::chrono::sys_days(monthOfYear / day[week]);
          machine().clock().setZone(zoneOf(0, rule(month, weekday, week, 1), rule(12, 0, 1, 0)));
          const auto dayOfMonth = static_cast<WORD>(unsigned(date.day()));
          const std::int64_t change = *oracle::ticksOf({year, month, 0, dayOfMonth, 1, 0, 0, 0});
          ASSERT_EQ(periodAt(change - 1), TIME_ZONE_ID_STANDARD) << year << "-" << month;
          ASSERT_EQ(periodAt(change), TIME_ZONE_ID_DAYLIGHT) << year << "-" << month;
        }
      }
    }
  }
}

// Every day of a year of each zone, at another hour each.
TEST_F(Zones, ComputersZoneIsThatOfTheCLibrary) {
  const char* const before = std::getenv("TZ");
  const std::string kept = before != nullptr ? before : "";
  for (const char* const name : {"UTC", "Europe/Berlin", "Australia/Sydney", "America/New_York", "Asia/Kolkata",
                                 "Australia/Lord_Howe", "EST5EDT,M3.2.0,M11.1.0"}) {
    setenv("TZ", name, 1);
    tzset();
    faults().reset();
    machine().clock().reset();
    for (std::time_t time = 1'356'998'400; time < 1'388'534'400; time += 23 * 3600 - 1) {  // 2013
      std::tm expected{};
      localtime_r(&time, &expected);
      machine().clock().setTicks(static_cast<std::uint64_t>(time + 11'644'473'600) * 10'000'000);
      TIME_ZONE_INFORMATION zone;
      const DWORD period = GetTimeZoneInformation(&zone);
      ASSERT_EQ(machine().clock().bias(), -expected.tm_gmtoff / 60) << name << " " << time;
      ASSERT_EQ(period == TIME_ZONE_ID_DAYLIGHT, expected.tm_isdst > 0) << name << " " << time;
      const WCHAR* const zoneName = period == TIME_ZONE_ID_DAYLIGHT ? zone.DaylightName : zone.StandardName;
      ASSERT_EQ(std::wstring(zoneName),
                std::wstring(expected.tm_zone, expected.tm_zone + std::strlen(expected.tm_zone)));
    }
  }
  before != nullptr ? setenv("TZ", kept.c_str(), 1) : unsetenv("TZ");
  tzset();
}

}  // namespace
