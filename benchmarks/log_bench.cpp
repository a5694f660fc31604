// A log call for a level that is off.
#include <benchmark/benchmark.h>
#include <txlogu/txlogu.h>

#ifdef VL_PEER_SPDLOG
#include <spdlog/sinks/null_sink.h>
#include <spdlog/spdlog.h>
#endif

namespace {

void logDisabled(benchmark::State& state) {
  const wchar_t* function = L"vlSysISO8601ToSystemTime";
  int result = 87;
  benchmark::DoNotOptimize(function);
  for (auto _ : state) {
    benchmark::DoNotOptimize(result);
    txlogLog(L"txhostkit", TXLOG_EXIT, L"%s (%d)", function, result);
  }
}
BENCHMARK(logDisabled)->Name("log call, level off|ours");

#ifdef VL_PEER_SPDLOG
void logDisabledSpdlog(benchmark::State& state) {
  const auto logger = spdlog::null_logger_mt("off");
  logger->set_level(spdlog::level::err);
  const char* function = "vlSysISO8601ToSystemTime";
  int result = 87;
  benchmark::DoNotOptimize(function);
  for (auto _ : state) {
    benchmark::DoNotOptimize(result);
    logger->debug("{} ({})", function, result);
  }
  spdlog::drop("off");
}
BENCHMARK(logDisabledSpdlog)->Name("log call, level off|spdlog");
#endif

}  // namespace
