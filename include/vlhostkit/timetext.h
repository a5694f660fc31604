/// ISO 8601 time text: a fixed subset, to and from SYSTEMTIME and tick counts, and the comparison of two texts.
///
/// All functions are free of state and may run on any number of threads at once. They report by result: 0
/// (ERROR_SUCCESS), one of the numbers named below, or the last-error value of the platform call that failed. None
/// throws. Texts are NUL-terminated.
///
/// Accepted texts are `date`, `date separator time` and `date separator time zone`:
///
///   date       YYYY, YYYY-MM, YYYYMMDD, YYYY-MM-DD
///   separator  the first "T" (upper case) or blank of the text
///   time       hh, hhmm, hh:mm, hhmmss, hh:mm:ss
///   zone       "+", "-" or "Z", then nothing (UTC) or an offset hh, hhmm, hh:mm from -12:59 to +13:59;
///              "Z" with an offset counts as "+"
///
/// A text without zone is a time of the machine's local zone, shifted by the zone's present offset as the platform's
/// LocalFileTimeToFileTime does. There are no fractions, no week dates and no ordinal dates. Digits are ASCII digits
/// only: a digit of another script is no digit here, on any machine.
///
/// The text parsers test characters, lengths, the month (at most 12) and the day (at most 31) only. The calendar is
/// tested where the platform converts: texts without zone, texts with an offset, and everything that becomes a tick
/// count or is compared. A text in UTC goes straight into the fields, so "2013-02-31T00:00:00Z" converts to a
/// SYSTEMTIME with day 31, and "2013T00:00:00Z" to one with month and day 0.
#ifndef VLHOSTKIT_TIMETEXT_H
#define VLHOSTKIT_TIMETEXT_H

#include <vlhostkit/types.h>

extern "C" {

/// Converts `text` to UTC in `time`.
///
/// Returns 0, or
///   87   `text` or `time` is null (`time` stays as it was), or the text is ill-formed;
///   8    out of memory;
///   266  a section of the text could not be copied;
///   otherwise the platform's number for fields that no calendar has, or for a missing
///   TzSpecificLocalTimeToSystemTime, which a text with an offset needs.
/// After a failure other than a null pointer `time` holds some of the fields and is of no use.
///
/// wMilliseconds is 0. wDayOfWeek is filled for texts without zone and with an offset, and 0 for texts in UTC.
VLHOSTKIT_API DWORD vlSysISO8601ToSystemTime(LPCWSTR text, SYSTEMTIME* time);

/// Converts `text` to a tick count: 100-nanosecond units since 1 January 1601 UTC, as in a FILETIME.
///
/// Returns the numbers of vlSysISO8601ToSystemTime, with the platform's number also for a text in UTC whose fields no
/// calendar has. `value` is written on success only.
VLHOSTKIT_API DWORD vlSysISO8601ToLargeInteger(LPCWSTR text, LARGE_INTEGER* value);

/// Prints `time` as "YYYY-MM-DDThh:mm:ssZ": always 20 characters and the terminator.
///
/// `chars` holds the capacity of `buffer` in characters, terminator included, and must be at least 21; 21 is stored
/// in it on success. On success wDayOfWeek and wMilliseconds of `time` are set to 0.
///
/// Returns 0, or 87 for a null pointer, or 122 for a capacity below 21, in which case nothing is written: there is no
/// size query, a caller provides 21 characters.
///
/// No field is tested. Fields that print wider than their form (a year above 9999, another field above 99) push the
/// rest to the right: the buffer then holds the first 20 characters of the wide form and a terminator. Never more
/// than 21 characters are written.
///
///     wchar_t text[21];
///     DWORD chars = 21;
///     if (vlSysSystemTimeToISO8601(&time, text, &chars) == ERROR_SUCCESS) { ... }
VLHOSTKIT_API DWORD vlSysSystemTimeToISO8601(SYSTEMTIME* time, LPWSTR buffer, DWORD* chars);

/// Prints the current UTC time. Buffer and results as in vlSysSystemTimeToISO8601.
VLHOSTKIT_API DWORD vlSysCurrentTimeToISO8601(LPWSTR buffer, DWORD* chars);

/// Prints the machine's wall clock in the same one form: the digits are those of the local time although the text
/// ends in "Z". For people to read; the functions here would take such a text for UTC. Buffer and results as in
/// vlSysSystemTimeToISO8601.
VLHOSTKIT_API DWORD vlSysCurrentLocalTimeToISO8601(LPWSTR buffer, DWORD* chars);

/// Prints a tick count (see vlSysISO8601ToLargeInteger). Buffer and results as in vlSysSystemTimeToISO8601; a value
/// that the platform does not accept, a negative one above all, gives the platform's number.
VLHOSTKIT_API DWORD vlSysLargeIntegerToISO8601(const LARGE_INTEGER* value, LPWSTR buffer, DWORD* chars);

/// Compares two texts as points in time, whatever zone each names.
///
/// Returns -1 if `first` is the earlier, 0 if they are the same, 1 if `first` is the later. Any other value is an
/// error: those of vlSysISO8601ToSystemTime, of `first` before `second`; then 87 where one is no date of a calendar.
VLHOSTKIT_API int vlSysCompareISO8601(LPCWSTR first, LPCWSTR second);

}  // extern "C"

#endif
