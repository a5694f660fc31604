#include <gtest/gtest.h>

#include <cstdlib>
#include <cwchar>

#include <support/guardedbuffer.h>

#include "conversion.h"

namespace timetext {
namespace {

constexpr DWORD kSmall = ERROR_INSUFFICIENT_BUFFER;
constexpr std::size_t kChars = 21;
using Buffer = support::GuardedBuffer<wchar_t>;

const SYSTEMTIME kTime = {2013, 3, 4, 28, 12, 34, 56, 999};

class Formatting : public support::MachineTest {};

// The form printed without a bound, then cut.
std::wstring expectedText(const SYSTEMTIME& time) {
  wchar_t wide[64];
  std::swprintf(wide, 64, L"%04d-%02d-%02dT%02d:%02d:%02dZ", time.wYear, time.wMonth, time.wDay, time.wHour,
                time.wMinute, time.wSecond);
  return std::wstring(wide).substr(0, kChars - 1);
}

TEST_F(Formatting, PrintsAnyFieldsInsideItsBound) {
  constexpr WORD kMost = 65535;
  for (const SYSTEMTIME& fields :
       {kTime, SYSTEMTIME{}, SYSTEMTIME{800, 3, 1, 1, 0, 0, 0, 1}, SYSTEMTIME{9999, 99, 99, 99, 99, 99, 99, 99},
        SYSTEMTIME{10000, 1, 0, 2, 3, 4, 5, 6}, SYSTEMTIME{2013, 100, 0, 2, 3, 4, 5, 6},
        SYSTEMTIME{2013, 1, 0, 2, 3, 4, 100, 6}, SYSTEMTIME{7, 1, 0, kMost, 3, kMost, 5, 6},
        SYSTEMTIME{kMost, kMost, kMost, kMost, kMost, kMost, kMost, kMost}}) {
    SYSTEMTIME time = fields;
    Buffer buffer(kChars);
    DWORD chars = kChars;
    EXPECT_EQ(vlSysSystemTimeToISO8601(&time, buffer.data(), &chars), DWORD{ERROR_SUCCESS});
    EXPECT_TRUE(buffer.guardsIntact());
    ASSERT_EQ(buffer.data()[kChars - 1], L'\0');
    EXPECT_EQ(std::wstring(buffer.data()), expectedText(fields));
    EXPECT_EQ(std::wcslen(buffer.data()), kChars - 1);
    Fields expected = oracle::fieldsOf(fields);
    expected[2] = expected[7] = 0;
    EXPECT_EQ(oracle::fieldsOf(time), expected);
  }
  EXPECT_EQ(expectedText(kTime), L"2013-03-28T12:34:56Z");
  EXPECT_EQ(expectedText({}), L"0000-00-00T00:00:00Z");
}

TEST_F(Formatting, CapacityOf21IsEnoughAndNeeded) {
  for (const DWORD capacity : {0u, 20u, 21u, 100u, 0xFFFFFFFFu}) {
    const DWORD result = capacity < kChars ? kSmall : DWORD{ERROR_SUCCESS};
    SYSTEMTIME time = kTime;
    Buffer buffer(100);
    DWORD chars = capacity;
    EXPECT_EQ(vlSysSystemTimeToISO8601(&time, buffer.data(), &chars), result) << capacity;
    const bool printed = result == ERROR_SUCCESS;
    EXPECT_EQ(chars, printed ? kChars : capacity);
    EXPECT_TRUE(buffer.untouched(printed ? kChars : 0)) << capacity;
    EXPECT_EQ(time.wMilliseconds, printed ? 0 : kTime.wMilliseconds);
    EXPECT_EQ(time.wDayOfWeek, printed ? 0 : kTime.wDayOfWeek);
  }
}

TEST_F(Formatting, NullArgumentsTouchNothing) {
  support::LogCapture log;
  const std::pair<int, const wchar_t*> entry = {TXLOG_ENTRY, L"vlSysSystemTimeToISO8601"};
  const std::pair<int, const wchar_t*> exit = {TXLOG_EXIT, L"vlSysSystemTimeToISO8601: returns nRet = 0x57"};
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
    EXPECT_TRUE(log.was(records({entry, exit})));
  }
}

TEST_F(Formatting, FramesNest) {
  static const LARGE_INTEGER value = {};
  const std::pair<std::wstring, DWORD (*)(LPWSTR, DWORD*)> variants[] = {
      {L"vlSysCurrentTimeToISO8601", &vlSysCurrentTimeToISO8601},
      {L"vlSysCurrentLocalTimeToISO8601", &vlSysCurrentLocalTimeToISO8601},
      {L"vlSysLargeIntegerToISO8601",
       [](LPWSTR buffer, DWORD* chars) { return vlSysLargeIntegerToISO8601(&value, buffer, chars); }}};
  support::LogCapture log;
  for (const auto& [name, call] : variants) {
    const auto expectRecords = [&, &name = name](const wchar_t* result, bool nested) {
      std::vector<support::LogRecord> expected = {{L"txhostkit", TXLOG_ENTRY, name}};
      if (nested) {
        expected.push_back({L"txhostkit", TXLOG_ENTRY, L"vlSysSystemTimeToISO8601"});
        expected.push_back(
            {L"txhostkit", TXLOG_EXIT, std::wstring(L"vlSysSystemTimeToISO8601: returns nRet = ") + result});
      }
      expected.push_back({L"txhostkit", TXLOG_EXIT, name + L": returns nRet = " + result});
      EXPECT_TRUE(log.was(expected));
    };
    Buffer buffer(kChars);
    DWORD chars = 20;
    EXPECT_EQ(call(buffer.data(), &chars), kSmall);
    expectRecords(L"0x7a", true);
    EXPECT_EQ(call(buffer.data(), nullptr), kInvalid);
    expectRecords(L"0x57", true);
    EXPECT_EQ(call(nullptr, &chars), kInvalid);
    expectRecords(L"0x57", false);
    EXPECT_EQ(chars, 20u);
    EXPECT_TRUE(buffer.untouched());
    chars = kChars;
    EXPECT_EQ(call(buffer.data(), &chars), DWORD{ERROR_SUCCESS});
    expectRecords(L"0x0", true);
    EXPECT_TRUE(buffer.guardsIntact());
  }
}

std::wstring textOf(LONGLONG ticks, DWORD expected = ERROR_SUCCESS) {
  LARGE_INTEGER value;
  value.QuadPart = ticks;
  Buffer buffer(kChars);
  DWORD chars = 100;
  EXPECT_EQ(vlSysLargeIntegerToISO8601(&value, buffer.data(), &chars), expected);
  EXPECT_EQ(value.QuadPart, ticks);
  if (expected != ERROR_SUCCESS) {
    EXPECT_TRUE(buffer.untouched());
    EXPECT_EQ(chars, 100u);
    return {};
  }
  EXPECT_TRUE(buffer.guardsIntact());
  return buffer.data();
}

TEST_F(Formatting, TickCounts) {
  EXPECT_EQ(textOf(0), L"1601-01-01T00:00:00Z");
  for (LONGLONG ticks = 0; ticks < 0x7FFF000000000000; ticks += 0x0000800123456789) {
    ASSERT_EQ(textOf(ticks), expectedText(oracle::timeOf(*oracle::fieldsOfTicks(ticks))));
  }
  for (const LONGLONG negative : {LONGLONG{-1}, INT64_MIN}) {
    SetLastError(support::kUntouchedError);
    textOf(negative, kInvalid);
    EXPECT_EQ(GetLastError(), kInvalid);
  }
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
  const auto ticksOf = [](DWORD (*call)(LPWSTR, DWORD*)) {
    wchar_t buffer[kChars];
    DWORD chars = kChars;
    EXPECT_EQ(call(buffer, &chars), DWORD{ERROR_SUCCESS});
    return ToTicks(buffer).ticks;
  };
  // The texts drop the fraction of their second.
  const LONGLONG begin = now() / oracle::kTicksPerSecond * oracle::kTicksPerSecond;
  const LONGLONG utc = ticksOf(&vlSysCurrentTimeToISO8601);
  const LONGLONG local = ticksOf(&vlSysCurrentLocalTimeToISO8601);
  const LONGLONG end = now();
  EXPECT_LE(begin, utc);
  EXPECT_LE(utc, end);
  const LONGLONG shift = oracle::presentBias() * oracle::kTicksPerMinute;
  EXPECT_LE(begin - shift, local);
  EXPECT_LE(local, end - shift);
}

}  // namespace
}  // namespace timetext
