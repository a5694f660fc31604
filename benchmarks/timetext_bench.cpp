// Time text beside the C library's functions on narrow text and a general date library. Logging is off.
#include <benchmark/benchmark.h>

#include <vlhostkit/vlhostkit.h>
#include <ctime>

#ifdef VL_PEER_DATE
#include <date/date.h>

#include <sstream>
#endif

namespace {

void parse(benchmark::State& state, const wchar_t* text) {
  SYSTEMTIME time;
  for (auto _ : state) {
    benchmark::DoNotOptimize(vlSysISO8601ToSystemTime(text, &time));
    benchmark::DoNotOptimize(time);
  }
}
BENCHMARK_CAPTURE(parse, utc, L"2013-03-28T12:34:56Z")->Name("parse ...Z|ours");
BENCHMARK_CAPTURE(parse, offset, L"2013-03-28T12:34:56+01:00")->Name("parse ...+01:00|ours");
BENCHMARK_CAPTURE(parse, local, L"2013-03-28T12:34:56")->Name("parse local time|ours");

void parseStrptime(benchmark::State& state, const char* text, const char* format) {
  std::tm time{};
  for (auto _ : state) {
    benchmark::DoNotOptimize(strptime(text, format, &time));
    benchmark::DoNotOptimize(time);
  }
}
BENCHMARK_CAPTURE(parseStrptime, utc, "2013-03-28T12:34:56Z", "%Y-%m-%dT%H:%M:%SZ")->Name("parse ...Z|strptime");
BENCHMARK_CAPTURE(parseStrptime, offset, "2013-03-28T12:34:56+01:00", "%Y-%m-%dT%H:%M:%S%z")
    ->Name("parse ...+01:00|~strptime, fields only");

// What the offset form does, with the C library: fields and offset, then UTC fields with their day of the week.
std::time_t utcOf(const char* text) {
  std::tm time{};
  benchmark::DoNotOptimize(strptime(text, "%Y-%m-%dT%H:%M:%S%z", &time));
  return timegm(&time) - time.tm_gmtoff;
}
std::time_t utcOfLocal(const char* text) {
  std::tm time{};
  time.tm_isdst = -1;
  benchmark::DoNotOptimize(strptime(text, "%Y-%m-%dT%H:%M:%S", &time));
  return std::mktime(&time);
}
void parseToUtc(benchmark::State& state, std::time_t (*parser)(const char*), const char* text) {
  for (auto _ : state) {
    const std::time_t utc = parser(text);
    std::tm fields{};
    benchmark::DoNotOptimize(gmtime_r(&utc, &fields));
    benchmark::DoNotOptimize(fields);
  }
}
BENCHMARK_CAPTURE(parseToUtc, offset, utcOf, "2013-03-28T12:34:56+01:00")
    ->Name("parse ...+01:00|strptime, timegm, gmtime_r");
BENCHMARK_CAPTURE(parseToUtc, local, utcOfLocal, "2013-03-28T12:34:56")
    ->Name("parse local time|strptime, mktime, gmtime_r");

void format(benchmark::State& state) {
  SYSTEMTIME time{2013, 3, 4, 28, 12, 34, 56, 0};
  wchar_t text[21];
  for (auto _ : state) {
    DWORD chars = 21;
    benchmark::DoNotOptimize(vlSysSystemTimeToISO8601(&time, text, &chars));
    benchmark::DoNotOptimize(text);
  }
}
BENCHMARK(format)->Name("format a time|ours");

void formatStrftime(benchmark::State& state) {
  std::tm time{};
  time.tm_year = 113;
  time.tm_mon = 2;
  time.tm_mday = 28;
  char text[21];
  for (auto _ : state) {
    benchmark::DoNotOptimize(std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &time));
    benchmark::DoNotOptimize(text);
  }
}
BENCHMARK(formatStrftime)->Name("format a time|strftime");

void compare(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(vlSysCompareISO8601(L"2013-03-28T12:00:00Z", L"2013-03-28T13:00:00+01:00"));
  }
}
BENCHMARK(compare)->Name("compare two times|ours");

void compareStrptime(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(utcOf("2013-03-28T12:00:00Z") < utcOf("2013-03-28T13:00:00+01:00"));
  }
}
BENCHMARK(compareStrptime)->Name("compare two times|strptime, timegm");

#ifdef VL_PEER_DATE
void parseDateLibrary(benchmark::State& state, const char* text, const char* format) {
  std::istringstream in;
  date::sys_seconds time;
  for (auto _ : state) {
    in.clear();
    in.str(text);
    in >> date::parse(format, time);
    benchmark::DoNotOptimize(time);
  }
}
BENCHMARK_CAPTURE(parseDateLibrary, utc, "2013-03-28T12:34:56Z", "%FT%TZ")->Name("parse ...Z|date library");
BENCHMARK_CAPTURE(parseDateLibrary, offset, "2013-03-28T12:34:56+01:00", "%FT%T%Ez")
    ->Name("parse ...+01:00|date library");

void formatDateLibrary(benchmark::State& state) {
  const date::sys_seconds time = date::sys_days{date::year{2013} / 3 / 28} + std::chrono::hours{12};
  for (auto _ : state) {
    benchmark::DoNotOptimize(date::format("%FT%TZ", time));
  }
}
BENCHMARK(formatDateLibrary)->Name("format a time|date library");
#endif

}  // namespace
