// The readers of time text: whatever the input, the functions agree with each other.
//
// An input is two texts, parted by the first line end.
#include <cstdint>
#include <cstring>
#include <cwchar>

#include <vlhostkit/timetext.h>

#include "fuzz.h"

namespace {

bool isOneForm(const wchar_t (&text)[21]) {
  return text[20] == L'\0' && std::wcslen(text) == 20;
}

bool sameFields(const SYSTEMTIME& a, const SYSTEMTIME& b) {
  return a.wYear == b.wYear && a.wMonth == b.wMonth && a.wDay == b.wDay && a.wHour == b.wHour &&
         a.wMinute == b.wMinute && a.wSecond == b.wSecond;
}

struct Parsed {
  DWORD fieldsResult;
  DWORD ticksResult;
  LONGLONG ticks;
};

Parsed parse(const wchar_t* text) {
  SYSTEMTIME time;
  std::memset(&time, 0xbd, sizeof time);
  LARGE_INTEGER value;
  std::memset(&value, 0xbd, sizeof value);
  const LONGLONG untouched = value.QuadPart;
  const Parsed parsed = {vlSysISO8601ToSystemTime(text, &time), vlSysISO8601ToLargeInteger(text, &value),
                         value.QuadPart};
  CHECK(parsed.fieldsResult == ERROR_SUCCESS || parsed.fieldsResult == ERROR_INVALID_PARAMETER);
  if (parsed.fieldsResult != ERROR_SUCCESS) {
    CHECK(parsed.ticksResult == parsed.fieldsResult && value.QuadPart == untouched);
    return parsed;
  }
  CHECK(time.wMonth <= 12 && time.wDay <= 31 && time.wMilliseconds == 0);
  FILETIME fileTime{};
  const bool inCalendar = SystemTimeToFileTime(&time, &fileTime) != FALSE;
  CHECK((parsed.ticksResult == ERROR_SUCCESS) == inCalendar);
  CHECK(!inCalendar ||
        (value.u.LowPart == fileTime.dwLowDateTime && static_cast<DWORD>(value.u.HighPart) == fileTime.dwHighDateTime));
  CHECK(inCalendar || value.QuadPart == untouched);

  wchar_t form[21];
  DWORD chars = 21;
  SYSTEMTIME copy = time;
  CHECK(vlSysSystemTimeToISO8601(&copy, form, &chars) == ERROR_SUCCESS && chars == 21 && isOneForm(form));
  if (time.wYear <= 9999 && time.wHour <= 99 && time.wMinute <= 99 && time.wSecond <= 99) {
    SYSTEMTIME again;
    CHECK(vlSysISO8601ToSystemTime(form, &again) == ERROR_SUCCESS && sameFields(time, again));
    if (inCalendar) {
      wchar_t ofTicks[21];
      CHECK(vlSysLargeIntegerToISO8601(&value, ofTicks, &chars) == ERROR_SUCCESS && std::wcscmp(form, ofTicks) == 0);
      CHECK(vlSysCompareISO8601(text, text) == 0 && vlSysCompareISO8601(text, form) == 0);
    }
  }
  return parsed;
}

void compare(const wchar_t* first, const Parsed& a, const wchar_t* second, const Parsed& b) {
  const int result = vlSysCompareISO8601(first, second);
  if (a.ticksResult != ERROR_SUCCESS || b.ticksResult != ERROR_SUCCESS) {
    CHECK(result == static_cast<int>(ERROR_INVALID_PARAMETER));
  } else {
    CHECK(result == (a.ticks > b.ticks) - (a.ticks < b.ticks));
    CHECK(vlSysCompareISO8601(second, first) == -result);  // NOLINT(readability-suspicious-call-argument): reversed
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::machine();
  fuzz::Input input(data, size);
  const fuzz::Block<wchar_t> first(fuzz::text<wchar_t>(input.line()));
  const fuzz::Block<wchar_t> second(fuzz::text<wchar_t>(input.rest()));
  compare(first.data(), parse(first.data()), second.data(), parse(second.data()));
  return 0;
}
