// Time text beside the C library's functions on narrow text and a general date library. Logging is off.
#include <vlhostkit/vlhostkit.h>
#include <ctime>

#include "row.h"

#ifdef VL_PEER_DATE
#include <date/date.h>

#include <sstream>
#endif

namespace {

using benchmark::DoNotOptimize;

auto parse(const wchar_t* text) {
  return [text, time = SYSTEMTIME{}]() mutable {
    DoNotOptimize(vlSysISO8601ToSystemTime(text, &time));
    DoNotOptimize(time);
  };
}

auto parseFields(const char* text, const char* format) {
  return [text, format, time = std::tm{}]() mutable {
    DoNotOptimize(strptime(text, format, &time));
    DoNotOptimize(time);
  };
}

// The same work with the C library: fields and offset, or those of a local time, as a point in time.
std::time_t utcOf(const char* text, bool local) {
  std::tm time{};
  time.tm_isdst = -1;
  DoNotOptimize(strptime(text, local ? "%Y-%m-%dT%H:%M:%S" : "%Y-%m-%dT%H:%M:%S%z", &time));
  return local ? std::mktime(&time) : timegm(&time) - time.tm_gmtoff;
}

// And then UTC fields with their day of the week.
auto parseToUtc(const char* text, bool local) {
  return [text, local] {
    const std::time_t utc = utcOf(text, local);
    std::tm fields{};
    DoNotOptimize(gmtime_r(&utc, &fields));
    DoNotOptimize(fields);
  };
}

#ifdef VL_PEER_DATE
void parseDateLibrary(const std::string& name, const char* text, const char* format) {
  row(name, [text, format, in = std::make_shared<std::istringstream>()] {
    date::sys_seconds time;
    in->clear();
    in->str(text);
    *in >> date::parse(format, time);
    DoNotOptimize(time);
  });
}
#endif

[[maybe_unused]] const bool rows = [] {
  row("parse ...Z|ours", parse(L"2013-03-28T12:34:56Z"));
  row("parse ...Z|strptime", parseFields("2013-03-28T12:34:56Z", "%Y-%m-%dT%H:%M:%SZ"));
  row("parse ...+01:00|ours", parse(L"2013-03-28T12:34:56+01:00"));
  row("parse ...+01:00|strptime, timegm, gmtime_r", parseToUtc("2013-03-28T12:34:56+01:00", false));
  row("parse ...+01:00|~strptime, fields only", parseFields("2013-03-28T12:34:56+01:00", "%Y-%m-%dT%H:%M:%S%z"));
  row("parse local time|ours", parse(L"2013-03-28T12:34:56"));
  row("parse local time|strptime, mktime, gmtime_r", parseToUtc("2013-03-28T12:34:56", true));
  row("compare two times|ours",
      [] { DoNotOptimize(vlSysCompareISO8601(L"2013-03-28T12:00:00Z", L"2013-03-28T13:00:00+01:00")); });
  row("compare two times|strptime, timegm",
      [] { DoNotOptimize(utcOf("2013-03-28T12:00:00Z", false) < utcOf("2013-03-28T13:00:00+01:00", false)); });
  row("format a time|ours", [time = SYSTEMTIME{2013, 3, 4, 28, 12, 34, 56, 0}]() mutable {
    wchar_t text[21];
    DWORD chars = 21;
    DoNotOptimize(vlSysSystemTimeToISO8601(&time, text, &chars));
    DoNotOptimize(text);
  });
  std::tm fields{};
  fields.tm_year = 113;
  fields.tm_mon = 2;
  fields.tm_mday = 28;
  row("format a time|strftime", [fields] {
    char text[21];
    DoNotOptimize(std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &fields));
    DoNotOptimize(text);
  });
#ifdef VL_PEER_DATE
  parseDateLibrary("parse ...Z|date library", "2013-03-28T12:34:56Z", "%FT%TZ");
  parseDateLibrary("parse ...+01:00|date library", "2013-03-28T12:34:56+01:00", "%FT%T%Ez");
  const date::sys_seconds time = date::sys_days{date::year{2013} / 3 / 28} + std::chrono::hours{12};
  row("format a time|date library", [time] { DoNotOptimize(date::format("%FT%TZ", time)); });
#endif
  return true;
}();

}  // namespace
