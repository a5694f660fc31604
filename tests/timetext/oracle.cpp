#include "oracle.h"

#include <chrono>
#include <ctime>
#include <cwchar>
#include <initializer_list>
#include <map>
#include <string>

namespace oracle {
namespace {

constexpr int kFirstYear = 1601;
constexpr int kLastYear = 30827;
const std::chrono::sys_days kFirstDay = std::chrono::year(kFirstYear) / 1 / 1;

using Numbers = std::map<wchar_t, WORD>;

// The numbers of a section by their letters. A form has a letter for each character of a field, which stands for a
// digit or the section's punctuation; its own punctuation stands for itself.
std::optional<Numbers> match(std::wstring_view section, std::initializer_list<std::wstring_view> forms,
                             wchar_t punctuation) {
  if (section.find_first_not_of(std::wstring(L"0123456789") + punctuation) != std::wstring_view::npos) {
    return std::nullopt;
  }
  for (const std::wstring_view form : forms) {
    if (form.size() == section.size()) {
      std::map<wchar_t, std::wstring> slices;
      for (std::size_t i = 0; i < form.size(); ++i) {
        slices[form[i]] += section[i];
      }
      const bool inPlace = slices[punctuation].find_first_not_of(punctuation) == std::wstring::npos;
      Numbers numbers;
      for (const auto& [letter, slice] : slices) {
        numbers[letter] = static_cast<WORD>(std::wcstol(slice.c_str(), nullptr, 10));
      }
      return inPlace ? std::optional(numbers) : std::nullopt;
    }
  }
  return std::nullopt;
}

// Of fields that came into being by a shift.
std::optional<Fields> shifted(const Fields& fields, int bias) {
  const std::optional<std::int64_t> ticks = ticksOf(fields);
  return ticks ? fieldsOfTicks(*ticks + bias * kTicksPerMinute) : std::nullopt;
}

}  // namespace

std::optional<std::int64_t> ticksOf(const Fields& fields) {
  const auto [year, month, dayOfWeek, day, hour, minute, second, millisecond] = fields;
  const auto date = std::chrono::year(year) / month / day;
  if (!date.ok() || year < kFirstYear || year > kLastYear || hour > 23 || minute > 59 || second > 59 ||
      millisecond > 999) {
    return std::nullopt;
  }
  return (std::chrono::sys_days(date) - kFirstDay).count() * kTicksPerDay +
         (hour * 3600 + minute * 60 + second) * kTicksPerSecond + millisecond * (kTicksPerSecond / 1000);
}

std::optional<Fields> fieldsOfTicks(std::int64_t ticks) {
  if (ticks < 0) {
    return std::nullopt;
  }
  const auto day = kFirstDay + std::chrono::days(ticks / kTicksPerDay);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(std::chrono::milliseconds(ticks % kTicksPerDay / (kTicksPerSecond / 1000)));
  const auto word = [](auto number) { return static_cast<WORD>(number); };
  return Fields{
      word(int(date.year())),        word(unsigned(date.month())),    word(std::chrono::weekday(day).c_encoding()),
      word(unsigned(date.day())),    word(clock.hours().count()),     word(clock.minutes().count()),
      word(clock.seconds().count()), word(clock.subseconds().count())};
}

Reading read(std::wstring_view text, int localBias) {
  constexpr std::size_t kNone = std::wstring_view::npos;
  const std::size_t separator = text.find_first_of(L"T ");
  const std::size_t marker = separator == kNone ? kNone : text.find_first_of(L"+-Z", separator + 1);
  auto date = match(text.substr(0, separator), {L"YYYY", L"YYYY-MM", L"YYYYMMDD", L"YYYY-MM-DD"}, L'-');
  std::optional<Numbers> time = Numbers();
  if (separator != kNone) {
    const std::wstring_view section = text.substr(separator + 1, marker == kNone ? marker : marker - separator - 1);
    time = match(section, {L"hh", L"hhmm", L"hh:mm", L"hhmmss", L"hh:mm:ss"}, L':');
  }
  if (!date || !time || (*date)[L'M'] > 12 || (*date)[L'D'] > 31) {
    return {};
  }
  const Fields fields = {(*date)[L'Y'], (*date)[L'M'], 0, (*date)[L'D'], (*time)[L'h'], (*time)[L'm'], (*time)[L's']};
  Reading reading;
  reading.strict = fields[0] > kLastYear || (fields[1] == 2 && fields[3] == 29);
  if (marker == kNone) {
    reading.fields = shifted(fields, localBias);
  } else if (marker + 1 == text.size()) {
    reading.fields = fields;
  } else if (auto offset = match(text.substr(marker + 1), {L"hh", L"hhmm", L"hh:mm"}, L':')) {
    const bool west = text[marker] == L'-';
    if ((*offset)[L'h'] <= (west ? 12 : 13) && (*offset)[L'm'] <= 59) {
      reading.fields = shifted(fields, (west ? 1 : -1) * ((*offset)[L'h'] * 60 + (*offset)[L'm']));
    }
  }
  if (reading.fields) {
    reading.ticks = ticksOf(*reading.fields);
    reading.strict = reading.strict || (*reading.fields)[0] > kLastYear;
  }
  return reading;
}

int presentBias() {
#ifdef _WIN32
  TIME_ZONE_INFORMATION zone;
  const DWORD period = GetTimeZoneInformation(&zone);
  return static_cast<int>(zone.Bias + (period == TIME_ZONE_ID_STANDARD   ? zone.StandardBias
                                       : period == TIME_ZONE_ID_DAYLIGHT ? zone.DaylightBias
                                                                         : 0));
#else
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return static_cast<int>(-local.tm_gmtoff / 60);
#endif
}

}  // namespace oracle
