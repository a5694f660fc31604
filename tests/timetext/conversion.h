// One call each, with everything that it could touch preset.
#ifndef VL_TESTS_TIMETEXT_CONVERSION_H
#define VL_TESTS_TIMETEXT_CONVERSION_H

#include <cstring>
#include <initializer_list>
#include <string>
#include <vector>

#include <support/logcapture.h>
#include <support/machinetest.h>
#include <vlhostkit/timetext.h>

#include "oracle.h"

namespace timetext {

using oracle::Fields;

inline constexpr DWORD kInvalid = ERROR_INVALID_PARAMETER;
inline constexpr Fields kUntouched = {0xbdbd, 0xbdbd, 0xbdbd, 0xbdbd, 0xbdbd, 0xbdbd, 0xbdbd, 0xbdbd};
inline constexpr LONGLONG kUntouchedTicks = static_cast<LONGLONG>(0xbdbdbdbdbdbdbdbd);

struct ToFields {
  SYSTEMTIME time = oracle::timeOf(kUntouched);
  DWORD result;
  DWORD lastError;
  Fields fields;

  explicit ToFields(const wchar_t* text) {
    SetLastError(support::kUntouchedError);
    result = vlSysISO8601ToSystemTime(text, &time);
    lastError = GetLastError();
    fields = oracle::fieldsOf(time);
  }
};

struct ToTicks {
  DWORD result;
  DWORD lastError;
  LONGLONG ticks;

  explicit ToTicks(const wchar_t* text) {
    LARGE_INTEGER value;
    value.QuadPart = kUntouchedTicks;
    SetLastError(support::kUntouchedError);
    result = vlSysISO8601ToLargeInteger(text, &value);
    lastError = GetLastError();
    ticks = value.QuadPart;
  }
};

// Records of the family, as (level, text).
inline std::vector<support::LogRecord> records(std::initializer_list<std::pair<int, const wchar_t*>> list) {
  std::vector<support::LogRecord> result;
  for (const auto& [level, text] : list) {
    result.push_back({L"txhostkit", level, text});
  }
  return result;
}

}  // namespace timetext

#endif
