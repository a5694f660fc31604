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
BENCHMARK_CAPTURE(parse, utc, L"2013-03-28T12:34:56Z");
BENCHMARK_CAPTURE(parse, offset, L"2013-03-28T12:34:56+01:00");
BENCHMARK_CAPTURE(parse, local, L"2013-03-28T12:34:56");

void parseStrptime(benchmark::State& state, const char* text, const char* format) {
  std::tm time{};
  for (auto _ : state) {
    benchmark::DoNotOptimize(strptime(text, format, &time));
    benchmark::DoNotOptimize(time);
  }
}
BENCHMARK_CAPTURE(parseStrptime, utc, "2013-03-28T12:34:56Z", "%Y-%m-%dT%H:%M:%SZ");
BENCHMARK_CAPTURE(parseStrptime, offset, "2013-03-28T12:34:56+01:00", "%Y-%m-%dT%H:%M:%S%z");

// What the offset form does, with the C library: fields and offset, then UTC fields with their day of the week.
void parseStrptimeToUtc(benchmark::State& state) {
  std::tm time{};
  for (auto _ : state) {
    benchmark::DoNotOptimize(strptime("2013-03-28T12:34:56+01:00", "%Y-%m-%dT%H:%M:%S%z", &time));
    const std::time_t utc = timegm(&time) - time.tm_gmtoff;
    std::tm fields{};
    benchmark::DoNotOptimize(gmtime_r(&utc, &fields));
    benchmark::DoNotOptimize(fields);
  }
}
BENCHMARK(parseStrptimeToUtc);

void format(benchmark::State& state) {
  SYSTEMTIME time{2013, 3, 4, 28, 12, 34, 56, 0};
  wchar_t text[21];
  for (auto _ : state) {
    DWORD chars = 21;
    benchmark::DoNotOptimize(vlSysSystemTimeToISO8601(&time, text, &chars));
    benchmark::DoNotOptimize(text);
  }
}
BENCHMARK(format);

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
BENCHMARK(formatStrftime);

void compare(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(vlSysCompareISO8601(L"2013-03-28T12:00:00Z", L"2013-03-28T13:00:00+01:00"));
  }
}
BENCHMARK(compare);

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
BENCHMARK_CAPTURE(parseDateLibrary, utc, "2013-03-28T12:34:56Z", "%FT%TZ");
BENCHMARK_CAPTURE(parseDateLibrary, offset, "2013-03-28T12:34:56+01:00", "%FT%T%Ez");

void formatDateLibrary(benchmark::State& state) {
  const date::sys_seconds time = date::sys_days{date::year{2013} / 3 / 28} + std::chrono::hours{12};
  for (auto _ : state) {
    benchmark::DoNotOptimize(date::format("%FT%TZ", time));
  }
}
BENCHMARK(formatDateLibrary);
#endif

}  // namespace
