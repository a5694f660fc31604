// One call each, with everything that it could touch preset.
#ifndef VL_TESTS_TIMETEXT_CONVERSION_H
#define VL_TESTS_TIMETEXT_CONVERSION_H

#include <support/machinetest.h>
#include <support/records.h>
#include <vlhostkit/timetext.h>

#include "oracle.h"

namespace timetext {

using namespace support;
using oracle::Fields;

inline constexpr DWORD kInvalid = ERROR_INVALID_PARAMETER;
inline constexpr Fields kUntouched = {0xbdbd, 0xbdbd, 0xbdbd, 0xbdbd, 0xbdbd, 0xbdbd, 0xbdbd, 0xbdbd};
inline constexpr LONGLONG kUntouchedTicks = static_cast<LONGLONG>(0xbdbdbdbdbdbdbdbd);

template <class Value>
struct Conversion {
  DWORD result;
  DWORD lastError;
  Value value;
};
inline Conversion<Fields> toFields(const wchar_t* text) {
  SYSTEMTIME time = oracle::timeOf(kUntouched);
  SetLastError(kUntouchedError);
  const DWORD result = vlSysISO8601ToSystemTime(text, &time);
  return {result, GetLastError(), oracle::fieldsOf(time)};
}
inline Conversion<LONGLONG> toTicks(const wchar_t* text) {
  LARGE_INTEGER ticks;
  ticks.QuadPart = kUntouchedTicks;
  SetLastError(kUntouchedError);
  const DWORD result = vlSysISO8601ToLargeInteger(text, &ticks);
  return {result, GetLastError(), ticks.QuadPart};
}

// The records of vlSysISO8601ToSystemTime: its sections with their results, and what it says between them and its exit.
inline Log reading(const std::vector<std::pair<std::wstring, int>>& sections, int result, const Log& more = {}) {
  const std::wstring name = L"vlSysISO8601ToSystemTime";
  Log log = {entered(name)};
  for (const auto& [section, code] : sections) {
    const std::wstring parser = L"vlSysParseISO8601" + section;
    log = log + Log{entered(parser), left(parser + inParentheses(code))};
  }
  return log + more + Log{left(name + inParentheses(result))};
}

}  // namespace timetext

#endif
