// The parsers of the sections, called directly.
#include <cstring>
#include <tuple>

#include "conversion.h"
#include "timetext/sections.h"

namespace timetext {
namespace {

using Sections = MachineTest;
constexpr WORD x = kUntouched[0];  // not stored

TEST_F(Sections, FieldsAreStoredUpToTheOneThatFails) {
  const struct {
    DWORD (*parse)(LPCWSTR, SYSTEMTIME*);
    const wchar_t* section;
    DWORD result;
    Fields fields;  // year, month, weekday, day, hour, minute, second, milliseconds
  } rows[] = {{vlSysParseISO8601Date, L"2013", 0, {2013, x, x, x, x, x, x, x}},
              {vlSysParseISO8601Date, L"2013-03", 0, {2013, 3, x, x, x, x, x, x}},
              {vlSysParseISO8601Date, L"20130328", 0, {2013, 3, x, 28, x, x, x, x}},
              {vlSysParseISO8601Date, L"2013-03-28", 0, {2013, 3, x, 28, x, x, x, x}},
              {vlSysParseISO8601Date, L"2013-13", 87, {2013, 13, x, x, x, x, x, x}},
              {vlSysParseISO8601Date, L"2013--1", 87, {2013, 65535, x, x, x, x, x, x}},
              {vlSysParseISO8601Date, L"20131332", 87, {x, 13, x, x, x, x, x, x}},
              {vlSysParseISO8601Date, L"2013-13-32", 87, {x, x, x, 32, x, x, x, x}},
              {vlSysParseISO8601Date, L"2013-03128", 87, kUntouched},
              {vlSysParseISO8601Date, L"2013103-28", 87, kUntouched},
              {vlSysParseISO8601Date, L"", 87, kUntouched},
              {vlSysParseISO8601Time, L"12", 0, {x, x, x, x, 12, x, x, x}},
              {vlSysParseISO8601Time, L"1234", 0, {x, x, x, x, 12, 34, x, x}},
              {vlSysParseISO8601Time, L"123456", 0, {x, x, x, x, 12, 34, 56, x}},
              {vlSysParseISO8601Time, L"12:34:56", 0, {x, x, x, x, 12, 34, 56, x}},
              {vlSysParseISO8601Time, L":1", 0, {x, x, x, x, 0, x, x, x}},
              {vlSysParseISO8601Time, L"12:34156", 87, kUntouched},
              {vlSysParseISO8601Time, L"12134:56", 87, kUntouched},
              {vlSysParseISO8601Time, L"", 87, kUntouched}};
  for (const auto& row : rows) {
    SYSTEMTIME time = oracle::timeOf(kUntouched);
    EXPECT_EQ(row.parse(row.section, &time), row.result) << testing::PrintToString(row.section);
    EXPECT_EQ(oracle::fieldsOf(time), row.fields) << testing::PrintToString(row.section);
  }
}

TEST_F(Sections, OffsetTouchesThreeMembersOfTheZoneAndNoTime) {
  for (const auto& [section, result, bias] : {std::tuple{L"05", 0u, 300},
                                              {L"5:30", 0u, 330},
                                              {L":130", 0u, 30},
                                              {L"12-30", 87u, 0},
                                              {L"12030", 87u, 0},
                                              {L"13", 87u, 0},
                                              {L"", 87u, 0}}) {
    SYSTEMTIME time = oracle::timeOf(kUntouched);
    TIME_ZONE_INFORMATION zone, expected;
    std::memset(&zone, 0xbd, sizeof zone);
    expected = zone;
    if (result == ERROR_SUCCESS) {
      expected.Bias = bias;
      expected.DaylightDate.wMonth = 0;
      expected.StandardName[0] = L'\0';
    }
    EXPECT_EQ(vlSysParseISO8601TimeZone(section, &time, false, &zone), result) << testing::PrintToString(section);
    EXPECT_EQ(std::memcmp(&zone, &expected, sizeof zone), 0) << testing::PrintToString(section);
    EXPECT_EQ(oracle::fieldsOf(time), kUntouched);
  }
}

TEST_F(Sections, NullArgumentsAreRefusedWithinTheFrame) {
  LogCapture log;
  SYSTEMTIME time = oracle::timeOf(kUntouched);
  TIME_ZONE_INFORMATION zone{};
  const auto expectRefused = [&](DWORD result, const std::wstring& name) {
    EXPECT_EQ(result, kInvalid);
    EXPECT_TRUE(log.was({entered(name), left(name + L" (87)")}));
  };
  expectRefused(vlSysParseISO8601Date(nullptr, &time), L"vlSysParseISO8601Date");
  expectRefused(vlSysParseISO8601Date(L"2013", nullptr), L"vlSysParseISO8601Date");
  expectRefused(vlSysParseISO8601Time(nullptr, &time), L"vlSysParseISO8601Time");
  expectRefused(vlSysParseISO8601Time(L"12", nullptr), L"vlSysParseISO8601Time");
  expectRefused(vlSysParseISO8601TimeZone(nullptr, &time, true, &zone), L"vlSysParseISO8601TimeZone");
  expectRefused(vlSysParseISO8601TimeZone(L"01", nullptr, true, &zone), L"vlSysParseISO8601TimeZone");
  expectRefused(vlSysParseISO8601TimeZone(L"01", &time, true, nullptr), L"vlSysParseISO8601TimeZone");
  EXPECT_EQ(oracle::fieldsOf(time), kUntouched);
}

}  // namespace
}  // namespace timetext
