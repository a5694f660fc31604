// Zones and seasons of the machine, and what is missing of it. Native only.
#include "conversion.h"

namespace timetext {
namespace {

using OnMachine = MachineTest;

TEST_F(OnMachine, LocalTextsAreShiftedByTheOffsetOfThePresentSeason) {
  // Daylight time of one hour begins and ends by these rules.
  const TIME_ZONE_INFORMATION berlin = {-60, {}, {0, 10, 0, 5, 3, 0, 0, 0}, 0, {}, {0, 3, 0, 5, 2, 0, 0, 0}, -60};
  const TIME_ZONE_INFORMATION sydney = {-600, {}, {0, 4, 0, 1, 3, 0, 0, 0}, 0, {}, {0, 10, 0, 1, 2, 0, 0, 0}, -60};
  constexpr Fields kJanuary = {2013, 1, 0, 15, 12, 0, 0, 0}, kJuly = {2013, 7, 0, 15, 12, 0, 0, 0};
  const struct {
    const TIME_ZONE_INFORMATION& zone;
    const Fields& now;
    const wchar_t* text;
    Fields utc;
  } rows[] = {
      {berlin, kJanuary, L"2013-03-28T12:34:56", {2013, 3, 4, 28, 11, 34, 56, 0}},
      {berlin, kJuly, L"2013-03-28T12:34:56", {2013, 3, 4, 28, 10, 34, 56, 0}},
      {berlin, kJuly, L"2013-01-01", {2012, 12, 1, 31, 22, 0, 0, 0}},
      {sydney, kJanuary, L"2013-03-28T12:34:56", {2013, 3, 4, 28, 1, 34, 56, 0}},
      {sydney, kJuly, L"2013-03-28T12:34:56", {2013, 3, 4, 28, 2, 34, 56, 0}},
  };
  for (const auto& row : rows) {
    machine().clock().setZone(row.zone);
    machine().clock().setTicks(static_cast<std::uint64_t>(*oracle::ticksOf(row.now)));
    EXPECT_EQ(toFields(row.text).value, row.utc) << testing::PrintToString(row.text);
  }
}

TEST_F(OnMachine, WithoutTheZoneConversionATextWithOffsetFails) {
  LogCapture log;
  const auto expectFailure = [&](int result, const wchar_t* error) {
    EXPECT_EQ(toFields(L"2013-03-28T12+01").result, static_cast<DWORD>(result));
    EXPECT_TRUE(log.was(reading({{L"Date", 0}, {L"Time", 0}, {L"TimeZone", 0}}, result, {failed(error)})));
    expectNothingOpen();
  };
  machine().modules().removeEntryPoint(L"kernel32.dll", "TzSpecificLocalTimeToSystemTime");
  expectFailure(127, L"vlSysISO8601ToSystemTime GetProcAddress TzSpecificLocalTimeToSystemTime() Failed");
  machine().modules().remove(L"kernel32.dll");
  expectFailure(126, L"vlSysISO8601ToSystemTime : LoadLibrary(kernel32.dll) failed");
  EXPECT_EQ(toFields(L"2013-03-28T12Z").result, DWORD{ERROR_SUCCESS});
}

}  // namespace
}  // namespace timetext
