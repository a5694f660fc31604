#include "oracle.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <cwchar>
#include <initializer_list>
#include <map>
#include <string>

namespace oracle {
namespace {

using Slices = std::map<wchar_t, std::uint16_t>;

// A form is written with a letter for each character of a field; anything else in it stands for itself. What a letter
// stands for is a digit or the section's punctuation.
std::optional<Slices> match(std::wstring_view section, std::initializer_list<std::wstring_view> forms,
                            wchar_t punctuation) {
  const auto allowed = [&](wchar_t c) {
    return c == punctuation || std::wstring_view(L"0123456789").find(c) != std::wstring_view::npos;
  };
  if (!std::all_of(section.begin(), section.end(), allowed)) {
    return std::nullopt;
  }
  for (const std::wstring_view form : forms) {
    if (form.size() != section.size()) {
      continue;
    }
    std::map<wchar_t, std::wstring> slices;
    for (std::size_t i = 0; i < form.size(); ++i) {
      if (form[i] != punctuation) {
        slices[form[i]] += section[i];
      } else if (section[i] != punctuation) {
        return std::nullopt;
      }
    }
    Slices numbers;
    for (const auto& [letter, slice] : slices) {
      numbers[letter] = static_cast<std::uint16_t>(std::wcstol(slice.c_str(), nullptr, 10));
    }
    return numbers;
  }
  return std::nullopt;
}

std::chrono::sys_days firstDay() {
  return std::chrono::sys_days(std::chrono::year(kFirstYear) / 1 / 1);
}

// Of fields that came into being by a shift.
std::optional<Fields> shifted(const Fields& fields, int bias) {
  const std::optional<std::int64_t> ticks = ticksOf(fields);
  return ticks ? fieldsOfTicks(*ticks + bias * kTicksPerMinute) : std::nullopt;
}

}  // namespace

Fields fieldsOf(const SYSTEMTIME& time) {
  return {time.wYear, time.wMonth,  time.wDayOfWeek, time.wDay,
          time.wHour, time.wMinute, time.wSecond,    time.wMilliseconds};
}

SYSTEMTIME timeOf(const Fields& fields) {
  std::array<WORD, 8> w{};
  for (std::size_t i = 0; i < w.size(); ++i) {
    w[i] = static_cast<WORD>(fields[i]);
  }
  return {w[0], w[1], w[2], w[3], w[4], w[5], w[6], w[7]};
}

std::optional<std::int64_t> ticksOf(const Fields& fields) {
  const auto [year, month, dayOfWeek, day, hour, minute, second, millisecond] = fields;
  if (year < kFirstYear || year > kLastYear || hour > 23 || minute > 59 || second > 59 || millisecond > 999) {
    return std::nullopt;
  }
  const auto date = std::chrono::year(static_cast<int>(year)) / static_cast<int>(month) / static_cast<int>(day);
  if (!date.ok()) {
    return std::nullopt;
  }
  const std::int64_t days = (std::chrono::sys_days(date) - firstDay()).count();
  return days * kTicksPerDay + (hour * 3600 + minute * 60 + second) * kTicksPerSecond +
         millisecond * (kTicksPerSecond / 1000);
}

std::optional<Fields> fieldsOfTicks(std::int64_t ticks) {
  if (ticks < 0) {
    return std::nullopt;
  }
  const auto day = firstDay() + std::chrono::days(ticks / kTicksPerDay);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(std::chrono::milliseconds(ticks % kTicksPerDay / (kTicksPerSecond / 1000)));
  return Fields{static_cast<unsigned>(int(date.year())),        unsigned(date.month()),
                std::chrono::weekday(day).c_encoding(),         unsigned(date.day()),
                static_cast<unsigned>(clock.hours().count()),   static_cast<unsigned>(clock.minutes().count()),
                static_cast<unsigned>(clock.seconds().count()), static_cast<unsigned>(clock.subseconds().count())};
}

Reading read(std::wstring_view text, int localBias) {
  const std::size_t separator = text.find_first_of(L"T ");
  const std::size_t marker =
      separator == std::wstring_view::npos ? std::wstring_view::npos : text.find_first_of(L"+-Z", separator + 1);
  const auto date = match(text.substr(0, separator), {L"YYYY", L"YYYY-MM", L"YYYYMMDD", L"YYYY-MM-DD"}, L'-');
  std::optional<Slices> time = Slices();
  if (separator != std::wstring_view::npos) {
    const std::size_t length = marker == std::wstring_view::npos ? marker : marker - separator - 1;
    time = match(text.substr(separator + 1, length), {L"hh", L"hhmm", L"hh:mm", L"hhmmss", L"hh:mm:ss"}, L':');
  }
  if (!date || !time) {
    return {};
  }
  const auto number = [](const Slices& slices, wchar_t letter) -> unsigned {
    return slices.contains(letter) ? slices.at(letter) : 0;
  };
  const Fields fields = {number(*date, L'Y'), number(*date, L'M'), 0, number(*date, L'D'), number(*time, L'h'),
                         number(*time, L'm'), number(*time, L's'), 0};
  if (fields[1] > 12 || fields[3] > 31) {
    return {};
  }
  Reading reading;
  reading.strict = fields[0] > kLastYear || (fields[1] == 2 && fields[3] == 29);
  if (marker == std::wstring_view::npos) {
    reading.fields = shifted(fields, localBias);
  } else if (marker + 1 == text.size()) {
    reading.fields = fields;
  } else if (const auto offset = match(text.substr(marker + 1), {L"hh", L"hhmm", L"hh:mm"}, L':')) {
    const int hours = static_cast<int>(number(*offset, L'h'));
    const int minutes = static_cast<int>(number(*offset, L'm'));
    const bool west = text[marker] == L'-';
    if (hours <= (west ? 12 : 13) && minutes <= 59) {
      reading.fields = shifted(fields, (west ? 1 : -1) * (hours * 60 + minutes));
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
  switch (GetTimeZoneInformation(&zone)) {
    case TIME_ZONE_ID_STANDARD:
      return static_cast<int>(zone.Bias + zone.StandardBias);
    case TIME_ZONE_ID_DAYLIGHT:
      return static_cast<int>(zone.Bias + zone.DaylightBias);
    default:
      return static_cast<int>(zone.Bias);
  }
#else
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return static_cast<int>(-local.tm_gmtoff / 60);
#endif
}

}  // namespace oracle
