#include <cstddef>

#include <vlhostkit/timetext.h>

#include "frame/callframe.h"

namespace {

constexpr DWORD kTextChars = 21;  // "YYYY-MM-DDThh:mm:ssZ" and the terminator

// Writes into a buffer of kTextChars; what does not fit is dropped, the terminator always has its place.
class BoundedText {
 public:
  explicit BoundedText(LPWSTR buffer) : next_(buffer), end_(buffer + kTextChars - 1) {}
  ~BoundedText() { *next_ = L'\0'; }
  BoundedText(const BoundedText&) = delete;
  BoundedText& operator=(const BoundedText&) = delete;

  void put(wchar_t c) {
    if (next_ != end_) {
      *next_++ = c;
    }
  }
  // Decimal, with leading zeros up to `width` digits.
  void put(WORD number, int width) {
    constexpr int kMostDigits = 5;
    wchar_t digits[kMostDigits];
    int count = 0;
    do {
      digits[count++] = static_cast<wchar_t>(L'0' + number % 10);
      number /= 10;
    } while (number != 0 || count < width);
    while (count > 0) {
      put(digits[--count]);
    }
  }

 private:
  LPWSTR next_;
  LPWSTR const end_;
};

void print(const SYSTEMTIME& time, LPWSTR buffer) {
  BoundedText text(buffer);
  text.put(time.wYear, 4);
  text.put(L'-');
  text.put(time.wMonth, 2);
  text.put(L'-');
  text.put(time.wDay, 2);
  text.put(L'T');
  text.put(time.wHour, 2);
  text.put(L':');
  text.put(time.wMinute, 2);
  text.put(L':');
  text.put(time.wSecond, 2);
  text.put(L'Z');
}

DWORD printNow(void(WINAPI* getNow)(SYSTEMTIME*), LPWSTR buffer, DWORD* chars) {
  if (buffer == nullptr) {
    return ERROR_INVALID_PARAMETER;
  }
  SYSTEMTIME now;
  getNow(&now);
  return vlSysSystemTimeToISO8601(&now, buffer, chars);
}

}  // namespace

DWORD vlSysSystemTimeToISO8601(SYSTEMTIME* time, LPWSTR buffer, DWORD* chars) {
  DWORD result = ERROR_INVALID_PARAMETER;
  const vl::CallFrame frame(vl::kTag, L"vlSysSystemTimeToISO8601",
                            vl::ExitWith(L"vlSysSystemTimeToISO8601: returns nRet = 0x%x", result));
  if (time == nullptr || buffer == nullptr || chars == nullptr) {
    return result;
  }
  if (*chars < kTextChars) {
    result = ERROR_INSUFFICIENT_BUFFER;
    return result;
  }
  *chars = kTextChars;
  print(*time, buffer);
  time->wDayOfWeek = 0;
  time->wMilliseconds = 0;
  result = ERROR_SUCCESS;
  return result;
}

DWORD vlSysCurrentTimeToISO8601(LPWSTR buffer, DWORD* chars) {
  DWORD result = ERROR_INVALID_PARAMETER;
  const vl::CallFrame frame(vl::kTag, L"vlSysCurrentTimeToISO8601",
                            vl::ExitWith(L"vlSysCurrentTimeToISO8601: returns nRet = 0x%x", result));
  result = printNow(&GetSystemTime, buffer, chars);
  return result;
}

DWORD vlSysCurrentLocalTimeToISO8601(LPWSTR buffer, DWORD* chars) {
  DWORD result = ERROR_INVALID_PARAMETER;
  const vl::CallFrame frame(vl::kTag, L"vlSysCurrentLocalTimeToISO8601",
                            vl::ExitWith(L"vlSysCurrentLocalTimeToISO8601: returns nRet = 0x%x", result));
  result = printNow(&GetLocalTime, buffer, chars);
  return result;
}

DWORD vlSysLargeIntegerToISO8601(const LARGE_INTEGER* value, LPWSTR buffer, DWORD* chars) {
  DWORD result = ERROR_INVALID_PARAMETER;
  const vl::CallFrame frame(vl::kTag, L"vlSysLargeIntegerToISO8601",
                            vl::ExitWith(L"vlSysLargeIntegerToISO8601: returns nRet = 0x%x", result));
  if (value == nullptr || buffer == nullptr) {
    return result;
  }
  const FILETIME ticks = {value->u.LowPart, static_cast<DWORD>(value->u.HighPart)};
  SYSTEMTIME time;
  result = FileTimeToSystemTime(&ticks, &time) ? vlSysSystemTimeToISO8601(&time, buffer, chars) : GetLastError();
  return result;
}
