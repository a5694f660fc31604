#include "timevalue.h"

#include <array>

#include "text.h"

namespace {

template <class Print>
TimeText printed(Print print) {
  std::array<wchar_t, 21> buffer;
  auto chars = static_cast<DWORD>(buffer.size());
  const DWORD result = print(buffer.data(), &chars);
  return {result, result == ERROR_SUCCESS ? toUtf8({buffer.data(), chars - 1}) : std::string()};
}

// The library names no day for texts in UTC. Their marker, the first of its kind behind the date, ends the text.
bool isUtc(const std::string& text) {
  const std::size_t separator = text.find_first_of("T ");
  return separator != std::string::npos && text.find_first_of("+-Z", separator) == text.size() - 1;
}

const char* nameOfDay(WORD dayOfWeek) {
  constexpr std::array kNames{"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};
  return kNames.at(dayOfWeek);
}

}  // namespace

TimeText currentTimeText() {
  return printed(vlSysCurrentTimeToISO8601);
}

TimeText currentLocalTimeText() {
  return printed(vlSysCurrentLocalTimeToISO8601);
}

TimeText textOfFields(SYSTEMTIME fields) {
  return printed([&](LPWSTR buffer, DWORD* chars) { return vlSysSystemTimeToISO8601(&fields, buffer, chars); });
}

TimeText textOfTicks(LONGLONG ticks) {
  LARGE_INTEGER value;
  value.QuadPart = ticks;
  return printed([&](LPWSTR buffer, DWORD* chars) { return vlSysLargeIntegerToISO8601(&value, buffer, chars); });
}

TimeValue::TimeValue(const std::string& text) {
  const std::wstring wide = toWide(text);
  fieldsResult = vlSysISO8601ToSystemTime(wide.c_str(), &fields);
  LARGE_INTEGER value{};
  ticksResult = vlSysISO8601ToLargeInteger(wide.c_str(), &value);
  ticks = value.QuadPart;
  if (fieldsResult == ERROR_SUCCESS && !isUtc(text)) {
    dayOfWeek = nameOfDay(fields.wDayOfWeek);
  }
}
