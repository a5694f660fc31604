// The readers of time text: whatever the input, the functions agree with each other.
//
// An input is two texts, parted by the first line end. A byte is a character of its own; the byte 0x1B and the four
// behind it are one character of any value.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <memory>
#include <span>
#include <vector>

#include <vlhostkit/timetext.h>

#include <vlplatform/machine.h>

namespace {

#define CHECK(condition)                                                                  \
  do {                                                                                    \
    if (!(condition)) {                                                                   \
      std::fprintf(stderr, "%s:%d: does not hold: %s\n", __FILE__, __LINE__, #condition); \
      std::abort();                                                                       \
    }                                                                                     \
  } while (false)

// On the heap and of exact size, so that a read behind the terminator is seen.
using WideText = std::unique_ptr<wchar_t[]>;

WideText widen(std::span<const std::uint8_t> bytes) {
  constexpr std::uint8_t kEscape = 0x1B;
  constexpr std::size_t kEscaped = 5;
  std::vector<wchar_t> chars;
  for (std::size_t i = 0; i < bytes.size();) {
    if (bytes[i] == kEscape && bytes.size() - i >= kEscaped) {
      chars.push_back(static_cast<wchar_t>(std::uint32_t{bytes[i + 1]} << 24 | bytes[i + 2] << 16 | bytes[i + 3] << 8 |
                                           bytes[i + 4]));
      i += kEscaped;
    } else {
      chars.push_back(static_cast<wchar_t>(bytes[i++]));
    }
  }
  WideText text(new wchar_t[chars.size() + 1]);
  std::copy(chars.begin(), chars.end(), text.get());
  text[chars.size()] = L'\0';
  return text;
}

// A summer day in a zone two hours east of UTC with daylight time, whatever the computer's own.
void setMachine() {
  TIME_ZONE_INFORMATION zone{};
  zone.Bias = -60;
  zone.DaylightBias = -60;
  zone.DaylightDate = {0, 3, 0, 5, 2, 0, 0, 0};
  zone.StandardDate = {0, 10, 0, 5, 3, 0, 0, 0};
  vlplatform::machine().clock().setZone(zone);
  vlplatform::machine().clock().setTicks(130'200'000'000'000'000);  // August 2013
}

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
    CHECK(vlSysCompareISO8601(second, first) == -result);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool machineIsSet = (setMachine(), true);
  static_cast<void>(machineIsSet);
  const std::span<const std::uint8_t> input(data, size);
  const void* const lineEnd = size != 0 ? std::memchr(data, '\n', size) : nullptr;
  const std::size_t firstSize =
      lineEnd != nullptr ? static_cast<std::size_t>(static_cast<const std::uint8_t*>(lineEnd) - data) : size;
  const WideText first = widen(input.first(firstSize));
  const WideText second = widen(input.subspan(lineEnd != nullptr ? firstSize + 1 : size));
  compare(first.get(), parse(first.get()), second.get(), parse(second.get()));
  return 0;
}
