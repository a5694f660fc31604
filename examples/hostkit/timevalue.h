/// Times as the program shows them: made by the library's functions, kept as text.
#ifndef HOSTKIT_TIMEVALUE_H
#define HOSTKIT_TIMEVALUE_H

#include <vlhostkit/timetext.h>

#include <string>

/// A text that the library printed, or the result that it gave instead.
struct TimeText {
  DWORD result;
  std::string text;
};

TimeText currentTimeText();
TimeText currentLocalTimeText();
TimeText textOfFields(SYSTEMTIME fields);
TimeText textOfTicks(LONGLONG ticks);

/// What the library makes of a text. The fields and the tick count have a result each: the calendar is tested for the
/// tick count only where the text is in UTC.
struct TimeValue {
  explicit TimeValue(const std::string& text);

  DWORD fieldsResult;
  SYSTEMTIME fields{};
  DWORD ticksResult;
  LONGLONG ticks = 0;
  /// The English name of the day, empty where the library leaves it out.
  std::string dayOfWeek;
};

#endif
