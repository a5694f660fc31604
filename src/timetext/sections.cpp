#include "timetext/sections.h"

#include <cstddef>

#include "frame/callframe.h"

namespace {

constexpr bool isDigit(wchar_t c) {
  return c >= L'0' && c <= L'9';
}

// A section of digits and its own punctuation, which may stand anywhere: the forms test its place.
class Section {
 public:
  // Ill-formed sections have length 0, which no form has.
  Section(LPCWSTR text, wchar_t punctuation) : text_(text) {
    LPCWSTR end = text;
    while (isDigit(*end) || *end == punctuation) {
      ++end;
    }
    length_ = *end == L'\0' ? static_cast<std::size_t>(end - text) : 0;
  }

  std::size_t length() const { return length_; }
  wchar_t operator[](std::size_t index) const { return text_[index]; }

  // The number in the two or four characters from `position`: an optional sign, digits up to the first other
  // character.
  WORD twoDigits(std::size_t position) const { return number<0, 1>(text_ + position); }
  WORD fourDigits(std::size_t position) const { return number<0, 1, 2, 3>(text_ + position); }

 private:
  template <std::size_t... Index>
  static WORD number(const wchar_t* slice) {
    if (!(isDigit(slice[Index]) && ...)) {
      return irregularNumber(slice, sizeof...(Index));
    }
    unsigned value = 0;
    ((value = value * 10 + static_cast<unsigned>(slice[Index] - L'0')), ...);
    return static_cast<WORD>(value);
  }

  // With punctuation inside; the sign can only be the date's.
  static WORD irregularNumber(const wchar_t* slice, std::size_t width) {
    const bool negative = slice[0] == L'-';
    int value = 0;
    for (std::size_t i = negative ? 1 : 0; i < width && isDigit(slice[i]); ++i) {
      value = value * 10 + (slice[i] - L'0');
    }
    return static_cast<WORD>(negative ? -value : value);
  }

  LPCWSTR text_;
  std::size_t length_;
};

constexpr WORD kLastMonth = 12;
constexpr WORD kLastDay = 31;

bool setYear(const Section& section, SYSTEMTIME* time) {
  time->wYear = section.fourDigits(0);
  return true;
}

bool setMonth(const Section& section, std::size_t position, SYSTEMTIME* time) {
  time->wMonth = section.twoDigits(position);
  return time->wMonth <= kLastMonth;
}

bool setDay(const Section& section, std::size_t position, SYSTEMTIME* time) {
  time->wDay = section.twoDigits(position);
  return time->wDay <= kLastDay;
}

bool parseDate(const Section& section, SYSTEMTIME* time) {
  switch (section.length()) {
    case 4:
      return setYear(section, time);
    case 7:
      return section[4] == L'-' && setYear(section, time) && setMonth(section, 5, time);
    case 8:
      return setMonth(section, 4, time) && setDay(section, 6, time) && setYear(section, time);
    case 10:
      return section[4] == L'-' && section[7] == L'-' && setDay(section, 8, time) && setYear(section, time) &&
             setMonth(section, 5, time);
    default:
      return false;
  }
}

bool parseTime(const Section& section, SYSTEMTIME* time) {
  switch (section.length()) {
    case 2:
      time->wHour = section.twoDigits(0);
      return true;
    case 4:
      time->wHour = section.twoDigits(0);
      time->wMinute = section.twoDigits(2);
      return true;
    case 5:
      if (section[2] != L':') {
        return false;
      }
      time->wHour = section.twoDigits(0);
      time->wMinute = section.twoDigits(3);
      return true;
    case 6:
      time->wHour = section.twoDigits(0);
      time->wMinute = section.twoDigits(2);
      time->wSecond = section.twoDigits(4);
      return true;
    case 8:
      if (section[2] != L':' || section[5] != L':') {
        return false;
      }
      time->wHour = section.twoDigits(0);
      time->wMinute = section.twoDigits(3);
      time->wSecond = section.twoDigits(6);
      return true;
    default:
      return false;
  }
}

bool parseOffset(const Section& section, bool positive, LONG* offset) {
  WORD minutes = 0;
  switch (section.length()) {
    case 2:
      break;
    case 4:
      minutes = section.twoDigits(2);
      break;
    case 5:
      if (section[2] != L':') {
        return false;
      }
      minutes = section.twoDigits(3);
      break;
    default:
      return false;
  }
  const WORD hours = section.twoDigits(0);
  constexpr WORD kLastHourEast = 13;
  constexpr WORD kLastHourWest = 12;
  constexpr WORD kLastMinute = 59;
  if (hours > (positive ? kLastHourEast : kLastHourWest) || minutes > kLastMinute) {
    return false;
  }
  *offset = hours * 60 + minutes;
  if (!positive) {
    *offset = -*offset;
  }
  return true;
}

}  // namespace

DWORD vlSysParseISO8601Date(LPCWSTR section, SYSTEMTIME* time) {
  DWORD result = ERROR_INVALID_PARAMETER;
  const vl::CallFrame frame(vl::kTag, L"vlSysParseISO8601Date", vl::ExitWith(L"vlSysParseISO8601Date (%d)", result));
  if (section != nullptr && time != nullptr && parseDate(Section(section, L'-'), time)) {
    result = ERROR_SUCCESS;
  }
  return result;
}

DWORD vlSysParseISO8601Time(LPCWSTR section, SYSTEMTIME* time) {
  DWORD result = ERROR_INVALID_PARAMETER;
  const vl::CallFrame frame(vl::kTag, L"vlSysParseISO8601Time", vl::ExitWith(L"vlSysParseISO8601Time (%d)", result));
  if (section != nullptr && time != nullptr && parseTime(Section(section, L':'), time)) {
    result = ERROR_SUCCESS;
  }
  return result;
}

DWORD vlSysParseISO8601TimeZone(LPCWSTR section, SYSTEMTIME* time, bool positive, TIME_ZONE_INFORMATION* zone) {
  DWORD result = ERROR_INVALID_PARAMETER;
  const vl::CallFrame frame(vl::kTag, L"vlSysParseISO8601TimeZone",
                            vl::ExitWith(L"vlSysParseISO8601TimeZone (%d)", result));
  LONG offset = 0;
  if (section != nullptr && time != nullptr && zone != nullptr &&
      parseOffset(Section(section, L':'), positive, &offset)) {
    zone->Bias = -offset;
    zone->DaylightDate.wMonth = 0;
    zone->StandardName[0] = L'\0';
    result = ERROR_SUCCESS;
  }
  return result;
}
