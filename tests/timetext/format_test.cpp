#include <cwchar>

#include <support/guardedbuffer.h>

#include "conversion.h"

namespace timetext {
namespace {

constexpr DWORD kChars = 21;
using Buffer = GuardedBuffer<wchar_t>;
using Formatting = MachineTest;

const SYSTEMTIME kTime = {2013, 3, 4, 28, 12, 34, 56, 999};
const std::wstring kPrint = L"vlSysSystemTimeToISO8601";

LogRecord leftWith(const std::wstring& name, const wchar_t* result) {
  return left(name + L": returns nRet = " + result);
}

// The form printed without a bound, then cut.
std::wstring expectedText(const SYSTEMTIME& time) {
  wchar_t wide[64];
  std::swprintf(wide, 64, L"%04d-%02d-%02dT%02d:%02d:%02dZ", time.wYear, time.wMonth, time.wDay, time.wHour,
                time.wMinute, time.wSecond);
  return std::wstring(wide).substr(0, kChars - 1);
}

TEST_F(Formatting, PrintsAnyFieldsInsideItsBound) {
  constexpr WORD kMost = 65535;
  const std::pair<Fields, const wchar_t*> rows[] = {{oracle::fieldsOf(kTime), L"2013-03-28T12:34:56Z"},
                                                    {{}, L"0000-00-00T00:00:00Z"},
                                                    {{800, 3, 1, 1, 0, 0, 0, 1}, L"0800-03-01T00:00:00Z"},
                                                    {{9999, 99, 99, 99, 99, 99, 99, 99}, L"9999-99-99T99:99:99Z"},
                                                    {{10000, 1, 0, 2, 3, 4, 5, 6}, L"10000-01-02T03:04:05"},
                                                    {{2013, 100, 0, 2, 3, 4, 5, 6}, L"2013-100-02T03:04:05"},
                                                    {{2013, 1, 0, 2, 3, 4, 100, 6}, L"2013-01-02T03:04:100"},
                                                    {{7, 1, 0, kMost, 3, kMost, 5, 6}, L"0007-01-65535T03:655"},
                                                    {{kMost, kMost, 0, kMost, kMost}, L"65535-65535-65535T65"}};
  for (const auto& [fields, text] : rows) {
    SYSTEMTIME time = oracle::timeOf(fields);
    Buffer buffer(kChars);
    DWORD chars = kChars;
    EXPECT_EQ(vlSysSystemTimeToISO8601(&time, buffer.data(), &chars), DWORD{ERROR_SUCCESS});
    EXPECT_TRUE(buffer.guardsIntact());
    EXPECT_EQ(std::wstring(buffer.data(), kChars), text + std::wstring(1, L'\0'));
    Fields expected = fields;
    expected[2] = expected[7] = 0;
    EXPECT_EQ(oracle::fieldsOf(time), expected);
  }
}

TEST_F(Formatting, CapacityOf21IsEnoughAndNeeded) {
  for (const DWORD capacity : {0u, 20u, 21u, 100u, 0xFFFFFFFFu}) {
    const bool fits = capacity >= kChars;
    SYSTEMTIME time = kTime;
    Buffer buffer(100);
    DWORD chars = capacity;
    EXPECT_EQ(vlSysSystemTimeToISO8601(&time, buffer.data(), &chars), fits ? 0u : 122u) << capacity;
    EXPECT_EQ(chars, fits ? kChars : capacity);
    EXPECT_TRUE(buffer.untouched(fits ? kChars : 0)) << capacity;
    EXPECT_TRUE(fits || oracle::fieldsOf(time) == oracle::fieldsOf(kTime));
  }
}

TEST_F(Formatting, NullArgumentsTouchNothing) {
  LogCapture log;
  for (unsigned null = 1; null < 8; ++null) {
    SYSTEMTIME time = kTime;
    Buffer buffer(kChars);
    DWORD chars = 100;
    EXPECT_EQ(vlSysSystemTimeToISO8601((null & 1) != 0 ? nullptr : &time, (null & 2) != 0 ? nullptr : buffer.data(),
                                       (null & 4) != 0 ? nullptr : &chars),
              kInvalid);
    EXPECT_EQ(chars, 100u);
    EXPECT_EQ(oracle::fieldsOf(time), oracle::fieldsOf(kTime));
    EXPECT_TRUE(buffer.untouched());
    EXPECT_TRUE(log.was({entered(kPrint), leftWith(kPrint, L"0x57")}));
  }
}

TEST_F(Formatting, FramesNest) {
  static const LARGE_INTEGER value = {};
  const std::pair<std::wstring, DWORD (*)(LPWSTR, DWORD*)> variants[] = {
      {L"vlSysCurrentTimeToISO8601", &vlSysCurrentTimeToISO8601},
      {L"vlSysCurrentLocalTimeToISO8601", &vlSysCurrentLocalTimeToISO8601},
      {L"vlSysLargeIntegerToISO8601",
       [](LPWSTR buffer, DWORD* chars) { return vlSysLargeIntegerToISO8601(&value, buffer, chars); }}};
  LogCapture log;
  for (const auto& [name, call] : variants) {
    Buffer buffer(kChars);
    DWORD small = 20, enough = kChars;
    const struct {
      wchar_t* text;
      DWORD* chars;
      DWORD result;
      const wchar_t* shown;
    } rows[] = {{buffer.data(), &small, 122, L"0x7a"},
                {buffer.data(), nullptr, 87, L"0x57"},
                {nullptr, &small, 87, L"0x57"},
                {buffer.data(), &enough, 0, L"0x0"}};
    for (const auto& row : rows) {
      EXPECT_TRUE(buffer.untouched() && small == 20);
      EXPECT_EQ(call(row.text, row.chars), row.result);
      const Log nested = row.text != nullptr ? Log{entered(kPrint), leftWith(kPrint, row.shown)} : Log();
      EXPECT_TRUE(log.was(Log{entered(name)} + nested + Log{leftWith(name, row.shown)}));
    }
    EXPECT_TRUE(buffer.guardsIntact());
  }
}

TEST_F(Formatting, TickCounts) {
  const auto expectText = [](LONGLONG ticks, DWORD result, const std::wstring& text) {
    LARGE_INTEGER value;
    value.QuadPart = ticks;
    Buffer buffer(kChars);
    DWORD chars = 100;
    SetLastError(kUntouchedError);
    ASSERT_EQ(vlSysLargeIntegerToISO8601(&value, buffer.data(), &chars), result);
    ASSERT_TRUE(buffer.untouched(result == 0 ? kChars : 0));
    ASSERT_TRUE(result != 0 ? chars == 100 && GetLastError() == result : buffer.data() == text) << ticks;
  };
  expectText(0, 0, L"1601-01-01T00:00:00Z");
  for (LONGLONG ticks = 0; ticks < 0x7FFF000000000000; ticks += 0x0000800123456789) {
    expectText(ticks, 0, expectedText(oracle::timeOf(*oracle::fieldsOfTicks(ticks))));
  }
  expectText(-1, kInvalid, L"");
  expectText(INT64_MIN, kInvalid, L"");
  DWORD chars = kChars;
  wchar_t buffer[kChars];
  EXPECT_EQ(vlSysLargeIntegerToISO8601(nullptr, buffer, &chars), kInvalid);
}

TEST_F(Formatting, CurrentTimesAreThoseOfThePlatformsClock) {
  const auto now = [] {
    FILETIME time;
    GetSystemTimeAsFileTime(&time);
    return static_cast<LONGLONG>(static_cast<std::uint64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime);
  };
  for (const auto& [call, bias] :
       {std::pair(&vlSysCurrentTimeToISO8601, 0), {&vlSysCurrentLocalTimeToISO8601, oracle::presentBias()}}) {
    // The text drops the fraction of its second.
    const LONGLONG begin = now() / oracle::kTicksPerSecond * oracle::kTicksPerSecond;
    wchar_t buffer[kChars];
    DWORD chars = kChars;
    EXPECT_EQ(call(buffer, &chars), DWORD{ERROR_SUCCESS});
    const LONGLONG utc = toTicks(buffer).value + bias * oracle::kTicksPerMinute;
    EXPECT_LE(begin, utc);
    EXPECT_LE(utc, now());
  }
}

}  // namespace
}  // namespace timetext
