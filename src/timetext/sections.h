/// The three sections of an ISO 8601 text. Each parser is pure text logic over a NUL-terminated section of its own
/// and returns 0 or 87; the forms and limits are those of <vlhostkit/timetext.h>. Internal, with the frame of an
/// exported function.
#ifndef VL_TIMETEXT_SECTIONS_H
#define VL_TIMETEXT_SECTIONS_H

#include "platform.h"

/// Sets the date fields that the form has. A field that fails its limit leaves itself and those read before it stored.
DWORD vlSysParseISO8601Date(LPCWSTR section, SYSTEMTIME* time);

/// Sets the time fields that the form has; none has a limit.
DWORD vlSysParseISO8601Time(LPCWSTR section, SYSTEMTIME* time);

/// Sets Bias, DaylightDate.wMonth (no daylight time) and StandardName[0] of `zone`, and no other member. `time` must
/// not be null but is not used.
DWORD vlSysParseISO8601TimeZone(LPCWSTR section, SYSTEMTIME* time, bool positive, TIME_ZONE_INFORMATION* zone);

#endif
