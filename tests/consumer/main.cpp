// A program that uses the installed package.
#include <vlhostkit/vlhostkit.h>

#include <cstdio>

int main() {
  SYSTEMTIME time{};
  const DWORD result = vlSysISO8601ToSystemTime(L"2013-03-28T18:30:05+02:00", &time);
  std::printf("result %lu, %d-%d-%d %d:%d:%d UTC\n", static_cast<unsigned long>(result), time.wYear, time.wMonth,
              time.wDay, time.wHour, time.wMinute, time.wSecond);
  const bool right = result == ERROR_SUCCESS && time.wYear == 2013 && time.wMonth == 3 && time.wDay == 28 &&
                     time.wHour == 16 && time.wMinute == 30 && time.wSecond == 5;
  // The sibling is no library that the loader takes: it has to lie where it is looked for.
  const HOSTKIT_UI_MODE mode = VL::Framework::vlGetUIMode();
  std::printf("mode %d\n", static_cast<int>(mode));
  return right && mode != HOSTKIT_UI_MODE_UNKNOWN ? 0 : 1;
}
