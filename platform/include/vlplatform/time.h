/// Times, tick counts and the machine's time zone, with the platform's calendar rules: years 1601 to 30827, days as
/// the month has them, tick counts below 2^63. Failures of the BOOL functions leave ERROR_INVALID_PARAMETER.
#ifndef VLPLATFORM_TIME_H
#define VLPLATFORM_TIME_H

#include <vlplatform/basetypes.h>

struct SYSTEMTIME {
  WORD wYear;
  WORD wMonth;
  WORD wDayOfWeek;
  WORD wDay;
  WORD wHour;
  WORD wMinute;
  WORD wSecond;
  WORD wMilliseconds;
};

struct FILETIME {
  DWORD dwLowDateTime;
  DWORD dwHighDateTime;
};

/// A date with wYear 0 is a rule: the wDay-th wDayOfWeek of wMonth, 5 for the last one.
struct TIME_ZONE_INFORMATION {
  LONG Bias;
  WCHAR StandardName[32];
  SYSTEMTIME StandardDate;
  LONG StandardBias;
  WCHAR DaylightName[32];
  SYSTEMTIME DaylightDate;
  LONG DaylightBias;
};

#define TIME_ZONE_ID_INVALID 0xFFFFFFFFu
#define TIME_ZONE_ID_UNKNOWN 0u
#define TIME_ZONE_ID_STANDARD 1u
#define TIME_ZONE_ID_DAYLIGHT 2u

extern "C" {
VLPLATFORM_API void GetSystemTime(SYSTEMTIME* time);
VLPLATFORM_API void GetLocalTime(SYSTEMTIME* time);
VLPLATFORM_API void GetSystemTimeAsFileTime(FILETIME* time);
VLPLATFORM_API BOOL SystemTimeToFileTime(const SYSTEMTIME* time, FILETIME* fileTime);
VLPLATFORM_API BOOL FileTimeToSystemTime(const FILETIME* fileTime, SYSTEMTIME* time);
VLPLATFORM_API BOOL LocalFileTimeToFileTime(const FILETIME* local, FILETIME* utc);
VLPLATFORM_API LONG CompareFileTime(const FILETIME* first, const FILETIME* second);
VLPLATFORM_API DWORD GetTimeZoneInformation(TIME_ZONE_INFORMATION* zone);
VLPLATFORM_API BOOL TzSpecificLocalTimeToSystemTime(const TIME_ZONE_INFORMATION* zone, const SYSTEMTIME* local,
                                                    SYSTEMTIME* utc);
}

#endif
