// A log call for a level that is off.
#include <txlogu/txlogu.h>

#include "row.h"

#ifdef VL_PEER_SPDLOG
#include <spdlog/sinks/null_sink.h>
#include <spdlog/spdlog.h>
#endif

using benchmark::DoNotOptimize;

[[maybe_unused]] static const bool rows = [] {
  row("log call, level off|ours", [function = L"vlSysISO8601ToSystemTime", result = 87]() mutable {
    DoNotOptimize(result);
    txlogLog(L"txhostkit", TXLOG_EXIT, L"%s (%d)", function, result);
  });
#ifdef VL_PEER_SPDLOG
  const auto logger = spdlog::null_logger_mt("off");
  logger->set_level(spdlog::level::err);
  row("log call, level off|spdlog", [logger, function = "vlSysISO8601ToSystemTime", result = 87]() mutable {
    DoNotOptimize(result);
    logger->debug("{} ({})", function, result);
  });
#endif
  return true;
}();
