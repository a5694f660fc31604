// Zones and seasons of the machine, and platform calls and allocations that fail. Native only.
#include <gtest/gtest.h>

#include <cwchar>
#include <functional>

#include <support/allocfault.h>
#include <support/faultsweep.h>
#include <support/guardedbuffer.h>

#include "conversion.h"

namespace timetext {
namespace {

using vlplatform::FaultSpan;

class OnMachine : public support::MachineTest {
 protected:
  struct Zone {
    LONG bias;
    SYSTEMTIME daylight;  // when daylight time of one hour begins and ends, as rules
    SYSTEMTIME standard;
  };
  static constexpr Zone kBerlin = {-60, {0, 3, 0, 5, 2, 0, 0, 0}, {0, 10, 0, 5, 3, 0, 0, 0}};
  static constexpr Zone kSydney = {-600, {0, 10, 0, 1, 2, 0, 0, 0}, {0, 4, 0, 1, 3, 0, 0, 0}};

  static void setMachine(const Zone& zone, const Fields& now) {
    TIME_ZONE_INFORMATION information{};
    information.Bias = zone.bias;
    information.DaylightBias = -60;
    information.DaylightDate = zone.daylight;
    information.StandardDate = zone.standard;
    machine().clock().setZone(information);
    machine().clock().setTicks(static_cast<std::uint64_t>(*oracle::ticksOf(now)));
  }
};

constexpr Fields kJanuary = {2013, 1, 0, 15, 12, 0, 0, 0};
constexpr Fields kJuly = {2013, 7, 0, 15, 12, 0, 0, 0};

TEST_F(OnMachine, LocalTextsAreShiftedByTheOffsetOfThePresentSeason) {
  const struct {
    const Zone& zone;
    const Fields& now;
    const wchar_t* text;
    Fields utc;
  } rows[] = {
      {kBerlin, kJanuary, L"2013-03-28T12:34:56", {2013, 3, 4, 28, 11, 34, 56, 0}},
      {kBerlin, kJuly, L"2013-03-28T12:34:56", {2013, 3, 4, 28, 10, 34, 56, 0}},
      {kBerlin, kJuly, L"2013-01-01", {2012, 12, 1, 31, 22, 0, 0, 0}},
      {kSydney, kJanuary, L"2013-03-28T12:34:56", {2013, 3, 4, 28, 1, 34, 56, 0}},
      {kSydney, kJuly, L"2013-03-28T12:34:56", {2013, 3, 4, 28, 2, 34, 56, 0}},
  };
  for (const auto& row : rows) {
    setMachine(row.zone, row.now);
    const ToFields time(row.text);
    EXPECT_EQ(time.result, DWORD{ERROR_SUCCESS});
    EXPECT_EQ(time.fields, row.utc) << testing::PrintToString(row.text);
  }
}

TEST_F(OnMachine, OnlyTextsThatAreNotInUtcNeedThePlatform) {
  ToFields(L"2013-03-28T12:34:56Z");
  ToFields(L"2013-02-31T99:00:00+");
  EXPECT_EQ(faults().calls(), 4u);
  EXPECT_EQ(faults().calls("memcpy_s"), 4u);

  faults().watch();
  ToFields(L"2013-03-28T12+01");
  EXPECT_EQ(faults().calls("LoadLibraryW"), 1u);
  EXPECT_EQ(faults().calls("GetProcAddress"), 1u);
  EXPECT_EQ(faults().calls("TzSpecificLocalTimeToSystemTime"), 1u);
  EXPECT_EQ(faults().calls("FreeLibrary"), 1u);
}

TEST_F(OnMachine, WithoutTheZoneConversionATextWithOffsetFails) {
  const auto expected = [](const wchar_t* error, const wchar_t* exit) {
    return records({{TXLOG_ENTRY, L"vlSysISO8601ToSystemTime"},
                    {TXLOG_ENTRY, L"vlSysParseISO8601Date"},
                    {TXLOG_EXIT, L"vlSysParseISO8601Date (0)"},
                    {TXLOG_ENTRY, L"vlSysParseISO8601Time"},
                    {TXLOG_EXIT, L"vlSysParseISO8601Time (0)"},
                    {TXLOG_ENTRY, L"vlSysParseISO8601TimeZone"},
                    {TXLOG_EXIT, L"vlSysParseISO8601TimeZone (0)"},
                    {TXLOG_ERROR, error},
                    {TXLOG_EXIT, exit}});
  };
  support::LogCapture log;
  machine().modules().removeEntryPoint(L"kernel32.dll", "TzSpecificLocalTimeToSystemTime");
  EXPECT_EQ(ToFields(L"2013-03-28T12+01").result, DWORD{ERROR_PROC_NOT_FOUND});
  EXPECT_TRUE(log.was(expected(L"vlSysISO8601ToSystemTime GetProcAddress TzSpecificLocalTimeToSystemTime() Failed",
                               L"vlSysISO8601ToSystemTime (127)")));
  expectNothingOpen();
  machine().modules().remove(L"kernel32.dll");
  EXPECT_EQ(ToFields(L"2013-03-28T12+01").result, DWORD{ERROR_MOD_NOT_FOUND});
  EXPECT_TRUE(log.was(
      expected(L"vlSysISO8601ToSystemTime : LoadLibrary(kernel32.dll) failed", L"vlSysISO8601ToSystemTime (126)")));
  EXPECT_EQ(ToFields(L"2013-03-28T12Z").result, DWORD{ERROR_SUCCESS});
}

// What an exit record shows before the result, and a call with all that it can write to.
struct Operation {
  std::wstring exit;
  DWORD success;
  std::function<DWORD()> call;
};

std::vector<Operation> operations() {
  static LARGE_INTEGER value;
  static wchar_t buffer[21];
  static DWORD chars = 21;
  static SYSTEMTIME time;
  std::vector<Operation> all = {
      {L"vlSysSystemTimeToISO8601: returns nRet = 0x", 0,
       [] { return vlSysSystemTimeToISO8601(&time, buffer, &chars); }},
      {L"vlSysCurrentTimeToISO8601: returns nRet = 0x", 0, [] { return vlSysCurrentTimeToISO8601(buffer, &chars); }},
      {L"vlSysCurrentLocalTimeToISO8601: returns nRet = 0x", 0,
       [] { return vlSysCurrentLocalTimeToISO8601(buffer, &chars); }},
      {L"vlSysLargeIntegerToISO8601: returns nRet = 0x", 0,
       [] { return vlSysLargeIntegerToISO8601(&value, buffer, &chars); }},
  };
  for (const wchar_t* const text : {L"2013-03-28T12:34:56Z", L"2013-03-28", L"2013-03-28T12:34:56+01:00"}) {
    all.push_back({L"vlSysISO8601ToSystemTime (", 0, [text] { return ToFields(text).result; }});
    all.push_back({L"vlSysISO8601ToLargeInteger (", 0, [text] {
                     const ToTicks converted(text);
                     EXPECT_EQ(converted.ticks == kUntouchedTicks, converted.result != ERROR_SUCCESS);
                     return converted.result;
                   }});
    all.push_back({L"vlSysCompareISO8601: returns nRet = 0x", static_cast<DWORD>(-1),
                   [text] { return static_cast<DWORD>(vlSysCompareISO8601(text, L"2014-03-28T00-01")); }});
  }
  return all;
}

support::LogRecord exitOf(const Operation& operation, DWORD result) {
  wchar_t number[32];
  std::swprintf(number, 32, operation.exit.ends_with(L'x') ? L"%x" : L"%d)", result);
  return {L"txhostkit", TXLOG_EXIT, operation.exit + number};
}

TEST_F(OnMachine, EveryPlatformCallThatFailsEndsTheOperation) {
  const std::string withoutFailure = "FreeLibrary CompareFileTime GetSystemTime GetLocalTime";
  support::LogCapture log;
  int faultsReached = 0;
  const auto all = operations();
  for (std::size_t i = 0; i < all.size(); ++i) {
    const Operation& operation = all[i];
    const auto run = [&](auto arm) {
      arm();
      return operation.call();
    };
    faultsReached +=
        support::sweepFaults(std::to_string(i), run, [&](DWORD result, const std::string& failed, FaultSpan span) {
          const bool decisive = withoutFailure.find(failed) == std::string::npos;
          if (span == FaultSpan::once) {
            EXPECT_EQ(result, !decisive              ? operation.success
                              : failed == "memcpy_s" ? DWORD{ERROR_CANNOT_COPY}
                                                     : support::kSweepCode);
          }
          const auto records = log.take();
          ASSERT_FALSE(records.empty());
          EXPECT_EQ(records.back(), exitOf(operation, result));
          expectNothingOpen();
        });
  }
  RecordProperty("faults", faultsReached);
  if (!support::isWholeSweep()) {
    return;
  }
  EXPECT_GT(faultsReached, 50);
}

TEST_F(OnMachine, EveryAllocationThatFailsGivesOutOfMemory) {
  if (!support::kCountsMalloc) {
    GTEST_SKIP() << "malloc is the sanitizer's";
  }
  support::LogCapture log;
  for (const Operation& operation : operations()) {
    for (std::uint64_t n = 1;; ++n) {
      support::AllocFault fault(n);
      const DWORD result = operation.call();
      const bool failed = fault.end();
      EXPECT_EQ(result, failed ? ERROR_NOT_ENOUGH_MEMORY : operation.success)
          << testing::PrintToString(operation.exit) << ", " << n;
      const auto records = log.take();
      ASSERT_FALSE(records.empty());
      EXPECT_EQ(records.back(), exitOf(operation, result)) << testing::PrintToString(operation.exit) << ", " << n;
      if (!failed) {
        break;
      }
    }
  }
  // One copy a section, and nothing else.
  support::AllocFault none(0);
  vlSysISO8601ToSystemTime(L"2013-03-28T12:34:56+01:00", nullptr);
  SYSTEMTIME time;
  vlSysISO8601ToSystemTime(L"2013-03-28T12:34:56+01:00", &time);
  none.end();
  EXPECT_EQ(none.allocations(), 3u);
}

}  // namespace
}  // namespace timetext
