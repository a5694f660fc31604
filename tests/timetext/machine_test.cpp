// Zones and seasons of the machine, and what is missing of it. Native only.
#include <gtest/gtest.h>

#include <support/allocfault.h>

#include "conversion.h"

namespace timetext {
namespace {

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

TEST_F(OnMachine, OneCopyASectionIsAllocatedAndNothingElse) {
  if (!support::kCountsMalloc) {
    GTEST_SKIP() << "malloc is the sanitizer's";
  }
  support::AllocFault none(0);
  vlSysISO8601ToSystemTime(L"2013-03-28T12:34:56+01:00", nullptr);
  SYSTEMTIME time;
  vlSysISO8601ToSystemTime(L"2013-03-28T12:34:56+01:00", &time);
  none.end();
  EXPECT_EQ(none.allocations(), 3u);
}

}  // namespace
}  // namespace timetext
