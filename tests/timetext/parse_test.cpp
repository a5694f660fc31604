// Texts in UTC and with an offset; local texts are in localtime_test.cpp.
#include <gtest/gtest.h>

#include <limits>
#include <ostream>

#include "conversion.h"

namespace timetext {
namespace {

struct Accepted {
  const wchar_t* text;
  Fields fields;
};

struct Refused {
  const wchar_t* text;
  DWORD lastError;
};

void PrintTo(const Accepted& row, std::ostream* out) {
  *out << testing::PrintToString(std::wstring(row.text));
}
void PrintTo(const Refused& row, std::ostream* out) {
  *out << testing::PrintToString(std::wstring(row.text));
}

class AcceptedText : public support::MachineTest, public testing::WithParamInterface<Accepted> {};

TEST_P(AcceptedText, GivesItsFields) {
  const ToFields time(GetParam().text);
  EXPECT_EQ(time.result, DWORD{ERROR_SUCCESS});
  EXPECT_EQ(time.fields, GetParam().fields);

  const auto ticks = oracle::ticksOf(time.fields);
  const ToTicks value(GetParam().text);
  EXPECT_EQ(value.result, ticks ? ERROR_SUCCESS : kInvalid);
  EXPECT_EQ(value.ticks, ticks.value_or(kUntouchedTicks));
  if (!ticks) {
    EXPECT_EQ(value.lastError, kInvalid);
  }
}

constexpr Fields kNoon = {2013, 3, 0, 28, 12, 34, 56, 0};

INSTANTIATE_TEST_SUITE_P(Utc, AcceptedText,
                         testing::Values(Accepted{L"2013-03-28T12:34:56Z", kNoon},  //
                                         Accepted{L"20130328T123456Z", kNoon},      //
                                         Accepted{L"2013-03-28 12:34:56Z", kNoon},  //
                                         Accepted{L"20130328 12:34:56+", kNoon},    //
                                         Accepted{L"2013-03-28T123456-", kNoon},
                                         Accepted{L"2013-03-28T12Z", {2013, 3, 0, 28, 12, 0, 0, 0}},
                                         Accepted{L"2013-03-28T1234Z", {2013, 3, 0, 28, 12, 34, 0, 0}},
                                         Accepted{L"2013-03-28T12:34Z", {2013, 3, 0, 28, 12, 34, 0, 0}},
                                         Accepted{L"1601-01-01T00:00:00Z", {1601, 1, 0, 1, 0, 0, 0, 0}},
                                         Accepted{L"9999-12-31T23:59:59Z", {9999, 12, 0, 31, 23, 59, 59, 0}}));

// What the parsers let pass and only the calendar would refuse.
INSTANTIATE_TEST_SUITE_P(NoCalendar, AcceptedText,
                         testing::Values(Accepted{L"2013-02-31T00:00:00Z", {2013, 2, 0, 31, 0, 0, 0, 0}},
                                         Accepted{L"2013T00:00:00Z", {2013, 0, 0, 0, 0, 0, 0, 0}},
                                         Accepted{L"2013-03T00Z", {2013, 3, 0, 0, 0, 0, 0, 0}},
                                         Accepted{L"0000-00-00T00Z", {0, 0, 0, 0, 0, 0, 0, 0}},
                                         Accepted{L"1600-12-31T00Z", {1600, 12, 0, 31, 0, 0, 0, 0}},
                                         Accepted{L"2013-03-28T99:00:00Z", {2013, 3, 0, 28, 99, 0, 0, 0}},
                                         Accepted{L"20130328T999999Z", {2013, 3, 0, 28, 99, 99, 99, 0}}));

// Punctuation inside a field ends its number; a hyphen in front is a sign.
INSTANTIATE_TEST_SUITE_P(Slices, AcceptedText,
                         testing::Values(Accepted{L"201-T00Z", {201, 0, 0, 0, 0, 0, 0, 0}},
                                         Accepted{L"-013T00Z", {65523, 0, 0, 0, 0, 0, 0, 0}},
                                         Accepted{L"--13T00Z", {0, 0, 0, 0, 0, 0, 0, 0}},
                                         Accepted{L"20133-28T00Z", {2013, 3, 0, 28, 0, 0, 0, 0}},
                                         Accepted{L"2013-3--2-T00Z", {2013, 3, 0, 2, 0, 0, 0, 0}},
                                         Accepted{L"2013-03-2-T00Z", {2013, 3, 0, 2, 0, 0, 0, 0}},
                                         Accepted{L"2013-03-28T1:2:Z", {2013, 3, 0, 28, 1, 2, 0, 0}},
                                         Accepted{L"2013-03-28T::::::Z", {2013, 3, 0, 28, 0, 0, 0, 0}},
                                         Accepted{L"2013-03-28T1::34:5:Z", {2013, 3, 0, 28, 1, 34, 5, 0}}));

INSTANTIATE_TEST_SUITE_P(Offset, AcceptedText,
                         testing::Values(Accepted{L"2013-03-28T12:34:56+01:00", {2013, 3, 4, 28, 11, 34, 56, 0}},
                                         Accepted{L"2013-03-28T12:34:56-05", {2013, 3, 4, 28, 17, 34, 56, 0}},
                                         Accepted{L"20130328 123456-0530", {2013, 3, 4, 28, 18, 4, 56, 0}},
                                         Accepted{L"2013-03-28T12:34:56+00", {2013, 3, 4, 28, 12, 34, 56, 0}},
                                         Accepted{L"2013-03-28T12:34:56Z01:00", {2013, 3, 4, 28, 11, 34, 56, 0}},
                                         Accepted{L"2013-03-28T12:34:56+1:", {2013, 3, 4, 28, 11, 34, 56, 0}},
                                         Accepted{L"2013-03-28T12:34:56+13:59", {2013, 3, 3, 27, 22, 35, 56, 0}},
                                         Accepted{L"2013-03-28T12:34:56-12:59", {2013, 3, 5, 29, 1, 33, 56, 0}},
                                         Accepted{L"2012-12-31T23:30-01", {2013, 1, 2, 1, 0, 30, 0, 0}},
                                         Accepted{L"2012-03-01T00:00+00:01", {2012, 2, 3, 29, 23, 59, 0, 0}}));

class RefusedText : public support::MachineTest, public testing::WithParamInterface<Refused> {};

TEST_P(RefusedText, GivesInvalidParameter) {
  const ToFields time(GetParam().text);
  EXPECT_EQ(time.result, kInvalid);
  EXPECT_EQ(time.lastError, GetParam().lastError);
  const ToTicks value(GetParam().text);
  EXPECT_EQ(value.result, kInvalid);
  EXPECT_EQ(value.lastError, GetParam().lastError);
  EXPECT_EQ(value.ticks, kUntouchedTicks);
}

constexpr Refused byParser(const wchar_t* text) {
  return {text, support::kUntouchedError};
}

INSTANTIATE_TEST_SUITE_P(
    Sections, RefusedText,
    testing::Values(byParser(L""), byParser(L"T"), byParser(L"T12:00:00Z"), byParser(L"2013-03-28T"),
                    byParser(L"2013-03-28TZ"), byParser(L"2013-03-28T+01"), byParser(L"2013-03-28Z"),
                    byParser(L"20130"), byParser(L"201303"), byParser(L"2013-03-2"), byParser(L"2013-03-280"),
                    byParser(L"2013-03-28T1Z"), byParser(L"2013-03-28T123Z"), byParser(L"2013-03-28T12:34:5Z"),
                    byParser(L"2013-03-28T12:34:560Z"), byParser(L"2013-03-28T12+1"), byParser(L"2013-03-28T12+123"),
                    byParser(L"2013-03-28T12+01:000"), byParser(L"2013103"), byParser(L"2013103-28"),
                    byParser(L"2013-03028"), byParser(L"2013-03-28T12034Z"), byParser(L"2013-03-28T12:34056Z"),
                    byParser(L"2013-03-28T12034:56Z"), byParser(L"2013-03-28T12+01030")));
INSTANTIATE_TEST_SUITE_P(Characters, RefusedText,
                         testing::Values(byParser(L"2013-03-28T12:34:56.5Z"), byParser(L"2013-03-28t12:34:56z"),
                                         byParser(L"2013-03-28T12:34:56z"), byParser(L"2013/03/28T12Z"),
                                         byParser(L"2013:03:28T12Z"), byParser(L"2013-03-28T12 34Z"),
                                         byParser(L" 2013-03-28T12Z"), byParser(L"2013-03-28T12Z "),
                                         byParser(L"+013-03-28T12Z"), byParser(L"2013-03-28T12+01-00"),
                                         byParser(L"2013-03-28T12Z+1"), byParser(L"2013-03-28T12:34:56ZZ"),
                                         byParser(L"2013-03-28T12+ 1"), byParser(L"\x0662\x0660\x0661\x0663T12Z"),
                                         byParser(L"\xff12\xff10\xff11\xff13T12Z")));
INSTANTIATE_TEST_SUITE_P(Limits, RefusedText,
                         testing::Values(byParser(L"2013-13-01"), byParser(L"2013-01-32"), byParser(L"20131301T00Z"),
                                         byParser(L"20130132T00Z"), byParser(L"2013-13T00Z"),
                                         byParser(L"2013--1-01T00Z"), byParser(L"2013-01--1T00Z"),
                                         byParser(L"2013-03-28T12:34:56+14:00"), byParser(L"2013-03-28T12:34:56+14"),
                                         byParser(L"2013-03-28T12:34:56-13:00"), byParser(L"2013-03-28T12:34:56-1300"),
                                         byParser(L"2013-03-28T12:34:56+01:60"), byParser(L"2013-03-28T12:34:56-0160"),
                                         byParser(L"2013-03-28T12:34:56Z14")));
// Local texts and texts with an offset meet the platform's calendar, which leaves its reason.
INSTANTIATE_TEST_SUITE_P(
    Calendar, RefusedText,
    testing::Values(Refused{L"2013", kInvalid}, Refused{L"2013-03", kInvalid}, Refused{L"2013-02-31", kInvalid},
                    Refused{L"1600-12-31", kInvalid}, Refused{L"2013-03-28T99:00:00", kInvalid},
                    Refused{L"2013-03-28T24:00:00", kInvalid}, Refused{L"2013-03-28T12:60", kInvalid},
                    Refused{L"2013-03-28T12:34:60", kInvalid}, Refused{L"2013-02-31T00:00+01", kInvalid},
                    Refused{L"2013-03-28T24+01", kInvalid}, Refused{L"2013T12+01", kInvalid},
                    Refused{L"1601-01-01T00:00+00:01", kInvalid}));

class Parsing : public support::MachineTest {};

TEST_F(Parsing, SectionsHaveNoLengthLimit) {
  const std::wstring digits(100'000, L'1');
  for (const std::wstring& text : {digits, digits + L"T12Z", L"2013-03-28T" + digits + L"Z", L"2013-03-28T12+" + digits,
                                   L"2013-03-28T12" + digits}) {
    EXPECT_EQ(ToFields(text.c_str()).result, kInvalid);
  }
}

TEST_F(Parsing, CharactersOfAnyValueAreRefused) {
  for (const wchar_t character : {std::numeric_limits<wchar_t>::max(), std::numeric_limits<wchar_t>::min(), L'\x1'}) {
    if (character == L'\0') {
      continue;  // where characters have no sign
    }
    for (const std::size_t position : {0u, 9u, 12u, 18u, 20u}) {
      std::wstring text = L"2013-03-28T12:34:56+01";
      text[position] = character;
      EXPECT_EQ(ToFields(text.c_str()).result, kInvalid) << position;
    }
  }
}

TEST_F(Parsing, NullArgumentsLeaveOnlyTheFunctionsOwnRecords) {
  support::LogCapture log;
  SYSTEMTIME time = oracle::timeOf(kUntouched);
  EXPECT_EQ(vlSysISO8601ToSystemTime(nullptr, &time), kInvalid);
  EXPECT_EQ(oracle::fieldsOf(time), kUntouched);
  EXPECT_EQ(vlSysISO8601ToSystemTime(L"2013-03-28", nullptr), kInvalid);
  EXPECT_EQ(vlSysISO8601ToSystemTime(nullptr, nullptr), kInvalid);
  const std::pair<int, const wchar_t*> entry = {TXLOG_ENTRY, L"vlSysISO8601ToSystemTime"};
  const std::pair<int, const wchar_t*> exit = {TXLOG_EXIT, L"vlSysISO8601ToSystemTime (87)"};
  EXPECT_TRUE(log.was(records({entry, exit, entry, exit, entry, exit})));

  EXPECT_EQ(ToTicks(nullptr).result, kInvalid);
  EXPECT_EQ(ToTicks(nullptr).ticks, kUntouchedTicks);
  EXPECT_EQ(vlSysISO8601ToLargeInteger(L"2013-03-28", nullptr), kInvalid);
  const std::pair<int, const wchar_t*> entry2 = {TXLOG_ENTRY, L"vlSysISO8601ToLargeInteger"};
  const std::pair<int, const wchar_t*> exit2 = {TXLOG_EXIT, L"vlSysISO8601ToLargeInteger (87)"};
  EXPECT_TRUE(log.was(records({entry2, exit2, entry2, exit2, entry2, exit2})));
}

TEST_F(Parsing, RecordsOfTheSectionsLieBetweenThoseOfTheFunction) {
  support::LogCapture log;
  const auto inFrame = [](std::initializer_list<std::pair<int, const wchar_t*>> sections, const wchar_t* exit) {
    auto all = records({{TXLOG_ENTRY, L"vlSysISO8601ToSystemTime"}});
    for (const auto& record : records(sections)) {
      all.push_back(record);
    }
    all.push_back({L"txhostkit", TXLOG_EXIT, exit});
    return all;
  };
  const std::pair<int, const wchar_t*> date = {TXLOG_ENTRY, L"vlSysParseISO8601Date"};
  const std::pair<int, const wchar_t*> dateDone = {TXLOG_EXIT, L"vlSysParseISO8601Date (0)"};
  const std::pair<int, const wchar_t*> time = {TXLOG_ENTRY, L"vlSysParseISO8601Time"};
  const std::pair<int, const wchar_t*> timeDone = {TXLOG_EXIT, L"vlSysParseISO8601Time (0)"};
  const std::pair<int, const wchar_t*> zone = {TXLOG_ENTRY, L"vlSysParseISO8601TimeZone"};
  const wchar_t* const good = L"vlSysISO8601ToSystemTime (0)";
  const wchar_t* const bad = L"vlSysISO8601ToSystemTime (87)";

  ToFields(L"2013-03-28");
  EXPECT_TRUE(log.was(inFrame({date, dateDone}, good)));
  ToFields(L"2013-03-28T12:34:56Z");
  EXPECT_TRUE(log.was(inFrame({date, dateDone, time, timeDone}, good)));
  ToFields(L"2013-03-28T12:34:56+01:00");
  EXPECT_TRUE(
      log.was(inFrame({date, dateDone, time, timeDone, zone, {TXLOG_EXIT, L"vlSysParseISO8601TimeZone (0)"}}, good)));
  ToFields(L"2013-13-01T99.9");
  EXPECT_TRUE(log.was(inFrame({date, {TXLOG_EXIT, L"vlSysParseISO8601Date (87)"}}, bad)));
  ToFields(L"2013-03-28T12:34:56.5+99");
  EXPECT_TRUE(log.was(inFrame({date, dateDone, time, {TXLOG_EXIT, L"vlSysParseISO8601Time (87)"}}, bad)));
  ToFields(L"2013-03-28T12:34:56+14:00");
  EXPECT_TRUE(
      log.was(inFrame({date, dateDone, time, timeDone, zone, {TXLOG_EXIT, L"vlSysParseISO8601TimeZone (87)"}}, bad)));
  ToFields(L"2013-02-31");
  EXPECT_TRUE(log.was(inFrame({date, dateDone}, bad)));

  ToTicks(L"2013-02-31T00Z");
  auto nested = inFrame({date, dateDone, time, timeDone}, good);
  nested.insert(nested.begin(), {L"txhostkit", TXLOG_ENTRY, L"vlSysISO8601ToLargeInteger"});
  nested.push_back({L"txhostkit", TXLOG_EXIT, L"vlSysISO8601ToLargeInteger (87)"});
  EXPECT_TRUE(log.was(nested));
  ToTicks(L"2013-03-28T00Z");
  nested.back().text = L"vlSysISO8601ToLargeInteger (0)";
  EXPECT_TRUE(log.was(nested));
}

}  // namespace
}  // namespace timetext
