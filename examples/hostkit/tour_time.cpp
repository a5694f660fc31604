#include <cstdlib>
#include <string>
#include <vector>

#include "logtap.h"
#include "results.h"
#include "text.h"
#include "timevalue.h"
#include "tour.h"

namespace {

std::string twoDigits(long number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}

// "UTC+01:00" for a bias of -60: the platform counts minutes from local time to UTC.
std::string offsetText(LONG bias) {
  const long minutes = std::labs(bias);
  return std::string("UTC") + (bias > 0 ? "-" : "+") + twoDigits(minutes / 60) + ":" + twoDigits(minutes % 60);
}

void showZone(TourPage& page) {
  constexpr const char* kLabel = "This machine's zone";
  TIME_ZONE_INFORMATION zone{};
  const DWORD period = GetTimeZoneInformation(&zone);
  if (period == TIME_ZONE_ID_INVALID) {
    page.missing(kLabel, GetLastError());
    return;
  }
  const bool daylight = period == TIME_ZONE_ID_DAYLIGHT;
  const LONG extra = daylight ? zone.DaylightBias : period == TIME_ZONE_ID_STANDARD ? zone.StandardBias : 0;
  const std::string name = shown(toUtf8(daylight ? zone.DaylightName : zone.StandardName));
  page.fact(kLabel, (name.empty() ? "without a name" : name) + ", now at " + offsetText(zone.Bias + extra));
}

void showPrinted(TourPage& page, const std::string& label, const TimeText& printed) {
  if (printed.result == ERROR_SUCCESS) {
    page.fact(label, printed.text);
  } else {
    page.missing(label, printed.result);
  }
}

void showConverted(TourPage& page, const std::string& text) {
  const TimeValue value(text);
  if (value.fieldsResult != ERROR_SUCCESS) {
    page.missing(text, value.fieldsResult);
    return;
  }
  TimeText utc = textOfFields(value.fields);
  if (!value.dayOfWeek.empty()) {
    utc.text += ", " + value.dayOfWeek;
  }
  showPrinted(page, text, utc);
}

void showOrder(TourPage& page, const std::string& first, const std::string& second) {
  const std::string label = first + " and " + second;
  switch (const int order = vlSysCompareISO8601(toWide(first).c_str(), toWide(second).c_str())) {
    case -1:
      page.fact(label, " the first is earlier");
      break;
    case 0:
      page.fact(label, " the same time");
      break;
    case 1:
      page.fact(label, " the first is later");
      break;
    default:
      page.missing(label, static_cast<DWORD>(order));
  }
}

void showTicks(TourPage& page, const std::string& text) {
  const TimeValue value(text);
  if (value.ticksResult != ERROR_SUCCESS) {
    page.missing(text, value.ticksResult);
    return;
  }
  page.fact(text, std::to_string(value.ticks) + " ticks");
  showPrinted(page, "and back", textOfTicks(value.ticks));
}

// A failure that is the point: it is a fact of the page, not a failure of the tour.
void showRefused(TourPage& page, const std::string& text) {
  const TimeValue value(text);
  const bool fields = value.fieldsResult == ERROR_SUCCESS;
  const DWORD result = fields ? value.ticksResult : value.fieldsResult;
  page.fact(text, std::string(fields ? "has fields, but no tick count: " : "") + resultInWords(result) + " (" +
                      std::to_string(result) + ")");
}

void showLog(TourPage& page, const std::string& text) {
  std::vector<std::string> lines;
  {
    const LogTap tap([&](const std::string& line) { lines.push_back(line); });
    SYSTEMTIME time;
    vlSysISO8601ToSystemTime(toWide(text).c_str(), &time);
  }
  for (std::size_t index = 0; index < lines.size(); ++index) {
    page.fact("record " + std::to_string(index + 1), lines[index]);
  }
}

}  // namespace

void tourTime(TourPage& page) {
  const TimeText now = currentTimeText();
  page.title("Time text: now");
  showPrinted(page, "In UTC", now);
  showPrinted(page, "On the local clock", currentLocalTimeText());
  showZone(page);
  if (now.result != ERROR_SUCCESS) {
    return;
  }

  const std::string today = now.text.substr(0, now.text.find('T'));
  page.title("Time text: forms of today, " + today + ", and what they are in UTC");
  for (const char* const form : {"T12:34:56Z", "T12:34:56+01:00", "T0930-0500", " 23:45+13:45", "T12:34:56", ""}) {
    showConverted(page, today + form);
  }

  page.title("Time text: the earlier of two");
  showOrder(page, today + "T12:00+01:00", today + "T06:00-05:00");
  showOrder(page, today + "T12:00+01:00", today + "T11:30Z");

  page.title("Time text: now as a tick count");
  showTicks(page, now.text);

  page.title("Time text: what is refused");
  showRefused(page, today + "T12.34");
  showRefused(page, today.substr(0, 4) + "-02-30T00:00:00Z");

  const std::string logged = today + "T12:00+01:00";
  page.title("Log: the records of converting " + logged);
  showLog(page, logged);
}
