#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "arguments.h"
#include "command.h"
#include "items.h"
#include "number.h"
#include "results.h"
#include "text.h"
#include "timevalue.h"

namespace {

constexpr const char* kForms = R"(Accepted are DATE, DATE TIME and DATE TIME ZONE, with "T" or a blank before the time:
  DATE  YYYY, YYYY-MM, YYYYMMDD, YYYY-MM-DD
  TIME  hh, hhmm, hh:mm, hhmmss, hh:mm:ss
  ZONE  Z, + or - for UTC; +hh, +hhmm, +hh:mm and the same with - for an offset from -12:59 to +13:59
A text without zone is a time of this machine's zone, at the zone's present offset.)";

constexpr const char* kParseNotes = R"(
The day of the week is shown for texts without zone or with an offset; the library
leaves it out for texts in UTC.

Texts in UTC become fields without a look at the calendar, so 2013-02-31T00:00:00Z
has fields but no tick count. Such a text counts as failed, and its fields are shown.

Lines end in LF or CR LF. A failure is reported on standard error, with the number of
the line or argument, and the rest goes on; the exit code is then 1.)";

constexpr const char* kFormatNotes =
    R"(A tick count is the number of 100-nanosecond units since 1 January 1601 UTC. It is
printed in full seconds; there is no text for a negative one. Fields (0 to 65535) are
printed as they are: the library tests none of them.)";

void parseText(Context& context, const Item& item) {
  const TimeValue value(item.text);
  Json object = item.object();
  if (value.fieldsResult != ERROR_SUCCESS) {
    context.output.failure(item.place(), resultInWords(value.fieldsResult), value.fieldsResult, std::move(object));
    return;
  }
  const TimeText utc = textOfFields(value.fields);
  if (utc.result != ERROR_SUCCESS) {
    context.output.failure(item.place(), resultInWords(utc.result), utc.result, std::move(object));
    return;
  }
  if (value.ticksResult != ERROR_SUCCESS) {
    object["fields"] = utc.text;
    context.output.failure(item.place(), "no such day or time in the calendar, the fields are " + utc.text,
                           value.ticksResult, std::move(object));
    return;
  }
  // Tick counts have more digits than some readers of JSON keep of a number.
  const std::string ticks = std::to_string(value.ticks);
  object["utc"] = utc.text;
  object["ticks"] = ticks;
  object["dayOfWeek"] = value.dayOfWeek.empty() ? Json() : Json(value.dayOfWeek);
  context.output.result(shown(item.text) + " -> " + utc.text + ", ticks " + ticks +
                            (value.dayOfWeek.empty() ? "" : ", " + value.dayOfWeek),
                        object);
}

void formatTicks(Context& context, const Item& item) {
  const std::optional<LONGLONG> ticks = numberFromText<LONGLONG>(item.text);
  if (!ticks) {
    context.output.failure(item.place(), "no tick count", ERROR_INVALID_PARAMETER, item.object());
    return;
  }
  const TimeText text = textOfTicks(*ticks);
  Json object = item.object();
  if (text.result != ERROR_SUCCESS) {
    context.output.failure(item.place(), resultInWords(text.result), text.result, std::move(object));
    return;
  }
  object["ticks"] = std::to_string(*ticks);
  object["utc"] = text.text;
  context.output.result(shown(item.text) + " -> " + text.text, object);
}

using Fields = std::vector<std::uint16_t>;

void formatFields(Context& context, const Fields& fields) {
  SYSTEMTIME time{};
  time.wYear = fields[0];
  time.wMonth = fields[1];
  time.wDay = fields[2];
  time.wHour = fields[3];
  time.wMinute = fields[4];
  time.wSecond = fields[5];
  const TimeText text = textOfFields(time);
  if (text.result != ERROR_SUCCESS) {
    context.output.failure("fields", resultInWords(text.result), text.result, Json::object({{"fields", fields}}));
    return;
  }
  context.output.result(text.text, {{"fields", fields}, {"text", text.text}});
}

void showNow(Context& context, bool local) {
  const TimeText now = local ? currentLocalTimeText() : currentTimeText();
  const char* const clock = local ? "local" : "utc";
  if (now.result != ERROR_SUCCESS) {
    context.output.failure("now", resultInWords(now.result), now.result, Json::object({{"clock", clock}}));
    return;
  }
  context.output.result(now.text + (local ? " on the local clock, not in UTC" : ""),
                        {{"clock", clock}, {"text", now.text}});
}

void compareTexts(Context& context, const std::string& first, const std::string& second) {
  const int order = vlSysCompareISO8601(toWide(first).c_str(), toWide(second).c_str());
  Json object{{"first", first}, {"second", second}};
  if (order < -1 || order > 1) {
    // The result does not say which text it is about; the first that has no tick count is.
    const bool firstFailed = TimeValue(first).ticksResult != ERROR_SUCCESS;
    const Item item{"argument", firstFailed ? 1u : 2u, firstFailed ? first : second};
    object["argument"] = item.number;
    const auto code = static_cast<DWORD>(order);
    context.output.failure(item.place(), resultInWords(code), code, std::move(object));
    return;
  }
  const char* const word = order < 0 ? "earlier" : order > 0 ? "later" : "same";
  const std::string relation = order == 0 ? "is the same time as" : std::string("is ") + word + " than";
  object["order"] = word;
  object["result"] = order;
  context.output.result(shown(first) + " " + relation + " " + shown(second) + " (" + std::to_string(order) + ")",
                        object);
}

}  // namespace

void registerTime(CLI::App& app, Context& context) {
  CLI::App* const time = app.add_subcommand("time", "ISO 8601 time text");
  time->require_subcommand(1);

  CLI::App* const parse = time->add_subcommand("parse", "Convert texts to UTC and to tick counts");
  const auto texts = std::make_shared<std::vector<std::string>>();
  asWritten(parse->add_option("TEXT", *texts, "Time texts; - for the lines of standard input"))->required();
  parse->footer(std::string(kForms) + "\n" + kParseNotes);
  parse->callback([&context, texts] {
    context.command = [&context, texts] {
      forEachItem(*texts, context.output, [&](const Item& item) { parseText(context, item); });
    };
  });

  CLI::App* const format = time->add_subcommand("format", "Print tick counts, or fields, as text");
  const auto ticks = std::make_shared<std::vector<std::string>>();
  const auto fields = std::make_shared<Fields>();
  CLI::Option* const ticksOption = asWritten(
      format->add_option("TICKS", *ticks, "Tick counts, decimal or 0x hex; - for the lines of standard input"));
  format->add_option("--fields", *fields, "Year, month, day, hour, minute and second, in place of tick counts")
      ->type_size(6)
      ->expected(1)
      ->type_name("Y M D h m s")
      ->excludes(ticksOption);
  format->footer(kFormatNotes);
  format->callback([&context, ticks, fields] {
    if (ticks->empty() && fields->empty()) {
      throw CLI::RequiredError("TICKS or --fields");
    }
    context.command = [&context, ticks, fields] {
      if (!fields->empty()) {
        formatFields(context, *fields);
      }
      forEachItem(*ticks, context.output, [&](const Item& item) { formatTicks(context, item); });
    };
  });

  CLI::App* const now = time->add_subcommand("now", "Print the present time, in UTC");
  const auto local = std::make_shared<bool>(false);
  now->add_flag("--local", *local, "The digits of the local clock instead. The one form ends in Z all the same");
  now->callback([&context, local] { context.command = [&context, local] { showNow(context, *local); }; });

  CLI::App* const compare = time->add_subcommand("compare", "Say which of two texts is the earlier time");
  const auto pair = std::make_shared<std::pair<std::string, std::string>>();
  asWritten(compare->add_option("A", pair->first, "A time text, as for parse"))->required();
  asWritten(compare->add_option("B", pair->second, "Another"))->required();
  compare->callback(
      [&context, pair] { context.command = [&context, pair] { compareTexts(context, pair->first, pair->second); }; });
}
