#include <vlhostkit/timetext.h>

#include "frame/callframe.h"

namespace {

int compare(LPCWSTR first, LPCWSTR second) {
  SYSTEMTIME firstTime;
  SYSTEMTIME secondTime;
  DWORD result = vlSysISO8601ToSystemTime(first, &firstTime);
  if (result == ERROR_SUCCESS) {
    result = vlSysISO8601ToSystemTime(second, &secondTime);
  }
  if (result != ERROR_SUCCESS) {
    return static_cast<int>(result);
  }
  // Also the calendar check of texts in UTC.
  FILETIME firstTicks;
  FILETIME secondTicks;
  if (!SystemTimeToFileTime(&firstTime, &firstTicks) || !SystemTimeToFileTime(&secondTime, &secondTicks)) {
    return static_cast<int>(GetLastError());
  }
  return CompareFileTime(&firstTicks, &secondTicks);
}

}  // namespace

int vlSysCompareISO8601(LPCWSTR first, LPCWSTR second) {
  int result = ERROR_INVALID_PARAMETER;
  const vl::CallFrame frame(vl::kTag, L"vlSysCompareISO8601",
                            vl::ExitWith(L"vlSysCompareISO8601: returns nRet = 0x%x", result));
  if (first != nullptr && second != nullptr) {
    result = compare(first, second);
  }
  return result;
}
