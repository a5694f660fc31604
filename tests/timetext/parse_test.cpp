// Texts in UTC and with an offset; local texts are in localtime_test.cpp.
#include <gtest/gtest.h>

#include "conversion.h"

namespace timetext {
namespace {

class Parsing : public support::MachineTest {};

// Against written-out fields; differential_test.cpp has the breadth.
TEST_F(Parsing, AcceptedTexts) {
  constexpr Fields kNoon = {2013, 3, 0, 28, 12, 34, 56, 0};
  const std::pair<const wchar_t*, Fields> rows[] = {
      {L"2013-03-28T12:34:56Z", kNoon},
      {L"20130328T123456Z", kNoon},
      {L"2013-03-28 12:34:56Z", kNoon},
      {L"2013-03-28T123456-", kNoon},
      {L"2013-03-28T12:34Z", {2013, 3, 0, 28, 12, 34, 0, 0}},
      // What the parsers let pass and only the calendar would refuse.
      {L"2013-02-31T00:00:00Z", {2013, 2, 0, 31, 0, 0, 0, 0}},
      {L"2013T00:00:00Z", {2013, 0, 0, 0, 0, 0, 0, 0}},
      {L"1600-12-31T00Z", {1600, 12, 0, 31, 0, 0, 0, 0}},
      {L"2013-03-28T99:00:00Z", {2013, 3, 0, 28, 99, 0, 0, 0}},
      // Punctuation inside a field ends its number; a hyphen in front is a sign.
      {L"201-T00Z", {201, 0, 0, 0, 0, 0, 0, 0}},
      {L"-013T00Z", {65523, 0, 0, 0, 0, 0, 0, 0}},
      {L"2013-03-28T1::34:5:Z", {2013, 3, 0, 28, 1, 34, 5, 0}},
      {L"2013-03-28T12:34:56+01:00", {2013, 3, 4, 28, 11, 34, 56, 0}},
      {L"2013-03-28T12:34:56-05", {2013, 3, 4, 28, 17, 34, 56, 0}},
      {L"2013-03-28T12:34:56Z01:00", {2013, 3, 4, 28, 11, 34, 56, 0}},
      {L"2013-03-28T12:34:56+13:59", {2013, 3, 3, 27, 22, 35, 56, 0}},
      {L"2013-03-28T12:34:56-12:59", {2013, 3, 5, 29, 1, 33, 56, 0}},
  };
  for (const auto& [text, fields] : rows) {
    const ToFields time(text);
    EXPECT_EQ(time.result, DWORD{ERROR_SUCCESS}) << testing::PrintToString(text);
    EXPECT_EQ(time.fields, fields) << testing::PrintToString(text);
    const auto ticks = oracle::ticksOf(fields);
    const ToTicks value(text);
    EXPECT_EQ(value.result, ticks ? ERROR_SUCCESS : kInvalid) << testing::PrintToString(text);
    EXPECT_EQ(value.ticks, ticks.value_or(kUntouchedTicks)) << testing::PrintToString(text);
    EXPECT_EQ(value.lastError, ticks ? support::kUntouchedError : kInvalid) << testing::PrintToString(text);
  }
}

TEST_F(Parsing, RefusedTexts) {
  const auto expectRefused = [](const wchar_t* text, DWORD lastError) {
    const ToFields time(text);
    EXPECT_EQ(time.result, kInvalid) << testing::PrintToString(text);
    EXPECT_EQ(time.lastError, lastError) << testing::PrintToString(text);
    EXPECT_EQ(ToTicks(text).ticks, kUntouchedTicks) << testing::PrintToString(text);
  };
  for (const wchar_t* const text : {L"",
                                    L"T12:00:00Z",
                                    L"2013-03-28T",
                                    L"2013-03-28TZ",
                                    L"2013-03-28Z",
                                    L"20130",
                                    L"2013-03028",
                                    L"2013-03-28T12034:56Z",
                                    L"2013-03-28T12+01030",
                                    L"2013-03-28T12:34:56.5Z",
                                    L"2013-03-28t12:34:56z",
                                    L"2013-03-28T12:34:56z",
                                    L" 2013-03-28T12Z",
                                    L"\x0662\x0660\x0661\x0663T12Z",
                                    L"\xff12\xff10\xff11\xff13T12Z",
                                    L"2013-13-01",
                                    L"2013-01-32",
                                    L"2013-03-28T12:34:56+14:00",
                                    L"2013-03-28T12:34:56-13:00",
                                    L"2013-03-28T12:34:56+01:60"}) {
    expectRefused(text, support::kUntouchedError);
  }
  // Local texts and texts with an offset meet the platform's calendar, which leaves its reason.
  for (const wchar_t* const text : {L"2013", L"2013-03", L"2013-02-31", L"1600-12-31", L"2013-03-28T99:00:00",
                                    L"2013-02-31T00:00+01", L"1601-01-01T00:00+00:01"}) {
    expectRefused(text, kInvalid);
  }
}

TEST_F(Parsing, SectionsHaveNoLengthLimit) {
  const std::wstring digits(100'000, L'1');
  for (const std::wstring& text : {digits, digits + L"T12Z", L"2013-03-28T" + digits + L"Z", L"2013-03-28T12+" + digits,
                                   L"2013-03-28T12" + digits}) {
    EXPECT_EQ(ToFields(text.c_str()).result, kInvalid);
  }
}

TEST_F(Parsing, CharactersOfAnyValueAreRefused) {
  for (const wchar_t character : {static_cast<wchar_t>(-1), static_cast<wchar_t>(1u << (8 * sizeof(wchar_t) - 1))}) {
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
  for (const auto& [text, target] :
       {std::pair<const wchar_t*, SYSTEMTIME*>{nullptr, &time}, {L"2013-03-28", nullptr}}) {
    EXPECT_EQ(vlSysISO8601ToSystemTime(text, target), kInvalid);
    EXPECT_TRUE(
        log.was(records({{TXLOG_ENTRY, L"vlSysISO8601ToSystemTime"}, {TXLOG_EXIT, L"vlSysISO8601ToSystemTime (87)"}})));
  }
  EXPECT_EQ(oracle::fieldsOf(time), kUntouched);
  LARGE_INTEGER value;
  for (const auto& [text, target] :
       {std::pair<const wchar_t*, LARGE_INTEGER*>{nullptr, &value}, {L"2013-03-28", nullptr}}) {
    EXPECT_EQ(vlSysISO8601ToLargeInteger(text, target), kInvalid);
    EXPECT_TRUE(log.was(
        records({{TXLOG_ENTRY, L"vlSysISO8601ToLargeInteger"}, {TXLOG_EXIT, L"vlSysISO8601ToLargeInteger (87)"}})));
  }
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

  const std::pair<int, const wchar_t*> zoneDone = {TXLOG_EXIT, L"vlSysParseISO8601TimeZone (0)"};
  ToFields(L"2013-03-28T12:34:56+01:00");
  EXPECT_TRUE(log.was(inFrame({date, dateDone, time, timeDone, zone, zoneDone}, good)));
  ToFields(L"2013-13-01T99.9");
  EXPECT_TRUE(log.was(inFrame({date, {TXLOG_EXIT, L"vlSysParseISO8601Date (87)"}}, bad)));
  ToFields(L"2013-03-28T12:34:56.5+99");
  EXPECT_TRUE(log.was(inFrame({date, dateDone, time, {TXLOG_EXIT, L"vlSysParseISO8601Time (87)"}}, bad)));
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
