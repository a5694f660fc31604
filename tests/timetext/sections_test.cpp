// The parsers of the sections, called directly.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include <support/logcapture.h>
#include <support/machinetest.h>

#include "timetext/sections.h"

namespace timetext {
namespace {

constexpr DWORD kInvalid = ERROR_INVALID_PARAMETER;
constexpr WORD x = 0xbdbd;  // not stored

bool same(const SYSTEMTIME& a, const SYSTEMTIME& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

SYSTEMTIME untouchedTime() {
  return {x, x, x, x, x, x, x, x};
}

class Sections : public support::MachineTest {};

struct Row {
  const wchar_t* section;
  DWORD result;
  SYSTEMTIME time;  // year, month, weekday, day, hour, minute, second, milliseconds
};

template <class Parse, std::size_t Size>
void expectRows(Parse parse, const Row (&rows)[Size]) {
  for (const Row& row : rows) {
    SYSTEMTIME time = untouchedTime();
    EXPECT_EQ(parse(row.section, &time), row.result) << testing::PrintToString(row.section);
    EXPECT_TRUE(same(time, row.time)) << testing::PrintToString(row.section);
  }
}

TEST_F(Sections, DateStoresItsFieldsUpToTheOneThatFails) {
  expectRows(&vlSysParseISO8601Date, {{L"2013", 0, {2013, x, x, x, x, x, x, x}},
                                      {L"2013-03", 0, {2013, 3, x, x, x, x, x, x}},
                                      {L"20130328", 0, {2013, 3, x, 28, x, x, x, x}},
                                      {L"2013-03-28", 0, {2013, 3, x, 28, x, x, x, x}},
                                      {L"201-", 0, {201, x, x, x, x, x, x, x}},
                                      {L"2013-13", kInvalid, {2013, 13, x, x, x, x, x, x}},
                                      {L"2013--1", kInvalid, {2013, 65535, x, x, x, x, x, x}},
                                      {L"20131332", kInvalid, {x, 13, x, x, x, x, x, x}},
                                      {L"2013-13-32", kInvalid, {x, x, x, 32, x, x, x, x}},
                                      {L"2013-03128", kInvalid, untouchedTime()},
                                      {L"2013103-28", kInvalid, untouchedTime()},
                                      {L"", kInvalid, untouchedTime()}});
}

TEST_F(Sections, TimeStoresItsFields) {
  expectRows(&vlSysParseISO8601Time, {{L"12", 0, {x, x, x, x, 12, x, x, x}},
                                      {L"1234", 0, {x, x, x, x, 12, 34, x, x}},
                                      {L"123456", 0, {x, x, x, x, 12, 34, 56, x}},
                                      {L"12:34:56", 0, {x, x, x, x, 12, 34, 56, x}},
                                      {L":1", 0, {x, x, x, x, 0, x, x, x}},
                                      {L"12:34156", kInvalid, untouchedTime()},
                                      {L"12134:56", kInvalid, untouchedTime()},
                                      {L"", kInvalid, untouchedTime()}});
}

TEST_F(Sections, OffsetTouchesThreeMembersOfTheZoneAndNoTime) {
  TIME_ZONE_INFORMATION untouched;
  std::memset(&untouched, 0xbd, sizeof untouched);
  for (const auto& [section, result, bias] : {std::tuple{L"05", DWORD{ERROR_SUCCESS}, 300},
                                              {L"5:30", DWORD{ERROR_SUCCESS}, 330},
                                              {L":130", DWORD{ERROR_SUCCESS}, 30},
                                              {L"12-30", kInvalid, 0},
                                              {L"12030", kInvalid, 0},
                                              {L"13", kInvalid, 0},
                                              {L"", kInvalid, 0}}) {
    SYSTEMTIME time = untouchedTime();
    TIME_ZONE_INFORMATION zone = untouched;
    TIME_ZONE_INFORMATION expected = untouched;
    if (result == ERROR_SUCCESS) {
      expected.Bias = bias;
      expected.DaylightDate.wMonth = 0;
      expected.StandardName[0] = L'\0';
    }
    EXPECT_EQ(vlSysParseISO8601TimeZone(section, &time, false, &zone), result) << testing::PrintToString(section);
    EXPECT_EQ(std::memcmp(&zone, &expected, sizeof zone), 0) << testing::PrintToString(section);
    EXPECT_TRUE(same(time, untouchedTime()));
  }
}

TEST_F(Sections, NullArgumentsAreRefusedWithinTheFrame) {
  support::LogCapture log;
  SYSTEMTIME time = untouchedTime();
  TIME_ZONE_INFORMATION zone{};
  const auto frame = [](const wchar_t* name) {
    return std::vector<support::LogRecord>{{L"txhostkit", TXLOG_ENTRY, name},
                                           {L"txhostkit", TXLOG_EXIT, name + std::wstring(L" (87)")}};
  };
  const auto expectRefused = [&](DWORD result, const wchar_t* name) {
    EXPECT_EQ(result, kInvalid);
    EXPECT_TRUE(log.was(frame(name)));
  };
  expectRefused(vlSysParseISO8601Date(nullptr, &time), L"vlSysParseISO8601Date");
  expectRefused(vlSysParseISO8601Date(L"2013", nullptr), L"vlSysParseISO8601Date");
  expectRefused(vlSysParseISO8601Time(nullptr, &time), L"vlSysParseISO8601Time");
  expectRefused(vlSysParseISO8601Time(L"12", nullptr), L"vlSysParseISO8601Time");
  expectRefused(vlSysParseISO8601TimeZone(nullptr, &time, true, &zone), L"vlSysParseISO8601TimeZone");
  expectRefused(vlSysParseISO8601TimeZone(L"01", nullptr, true, &zone), L"vlSysParseISO8601TimeZone");
  expectRefused(vlSysParseISO8601TimeZone(L"01", &time, true, nullptr), L"vlSysParseISO8601TimeZone");
  EXPECT_TRUE(same(time, untouchedTime()));
}

}  // namespace
}  // namespace timetext
