// Texts in UTC and with an offset; those on the machine's clock are in differential_test.cpp and machine_test.cpp.
#include "conversion.h"

namespace timetext {
namespace {

using Parsing = MachineTest;

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
      {L"2013-03-28T12:34:56Z13:59", {2013, 3, 3, 27, 22, 35, 56, 0}},
      {L"2013-03-28T12:34:56-12:59", {2013, 3, 5, 29, 1, 33, 56, 0}},
  };
  for (const auto& [text, fields] : rows) {
    SCOPED_TRACE(testing::PrintToString(text));
    const auto time = toFields(text);
    EXPECT_EQ(time.result, DWORD{ERROR_SUCCESS});
    EXPECT_EQ(time.value, fields);
    const auto ticks = oracle::ticksOf(fields);
    const auto value = toTicks(text);
    EXPECT_EQ(value.result, ticks ? ERROR_SUCCESS : kInvalid);
    EXPECT_EQ(value.value, ticks.value_or(kUntouchedTicks));
    EXPECT_EQ(value.lastError, ticks ? kUntouchedError : kInvalid);
  }
}

TEST_F(Parsing, RefusedTexts) {
  const auto expectRefused = [](const std::wstring& text, DWORD lastError) {
    const auto time = toFields(text.c_str());
    EXPECT_EQ(time.result, kInvalid) << testing::PrintToString(text);
    EXPECT_EQ(time.lastError, lastError) << testing::PrintToString(text);
    EXPECT_EQ(toTicks(text.c_str()).value, kUntouchedTicks) << testing::PrintToString(text);
  };
  const std::wstring digits(100'000, L'1');
  for (const std::wstring& text : std::vector<std::wstring>{
           L"", L"T12:00:00Z", L"2013-03-28T", L"2013-03-28TZ", L"2013-03-28Z", L"20130", L"2013-03028",
           L"2013-03-28T12034:56Z", L"2013-03-28T12+01030", L"2013-03-28T12:34:56.5Z", L"2013-03-28t12:34:56z",
           L"2013-03-28T12:34:56z", L" 2013-03-28T12Z", L"\x0662\x0660\x0661\x0663T12Z",
           L"\xff12\xff10\xff11\xff13T12Z", L"2013-13-01", L"2013-01-32", L"2013-03-28T12:34:56+14:00",
           L"2013-03-28T12:34:56-13:00", L"2013-03-28T12:34:56+01:60",
           // No length is too much for a section.
           digits, digits + L"T12Z", L"2013-03-28T" + digits + L"Z", L"2013-03-28T12+" + digits}) {
    expectRefused(text, kUntouchedError);
  }
  for (const wchar_t character : {static_cast<wchar_t>(-1), static_cast<wchar_t>(1u << (8 * sizeof(wchar_t) - 1))}) {
    for (const std::size_t position : {0u, 9u, 12u, 18u, 20u}) {
      std::wstring text = L"2013-03-28T12:34:56+01";
      text[position] = character;
      expectRefused(text, kUntouchedError);
    }
  }
  // Local texts and texts with an offset meet the platform's calendar, which leaves its reason.
  for (const wchar_t* const text : {L"2013", L"2013-03", L"2013-02-31", L"1600-12-31", L"2013-03-28T99:00:00",
                                    L"2013-02-31T00:00+01", L"1601-01-01T00:00+00:01"}) {
    expectRefused(text, kInvalid);
  }
}

TEST_F(Parsing, NullArgumentsLeaveOnlyTheFunctionsOwnRecords) {
  LogCapture log;
  SYSTEMTIME time = oracle::timeOf(kUntouched);
  LARGE_INTEGER value;
  const auto expectRefused = [&](DWORD result, const std::wstring& name) {
    EXPECT_EQ(result, kInvalid);
    EXPECT_TRUE(log.was({entered(name), left(name + L" (87)")}));
  };
  expectRefused(vlSysISO8601ToSystemTime(nullptr, &time), L"vlSysISO8601ToSystemTime");
  expectRefused(vlSysISO8601ToSystemTime(L"2013-03-28", nullptr), L"vlSysISO8601ToSystemTime");
  expectRefused(vlSysISO8601ToLargeInteger(nullptr, &value), L"vlSysISO8601ToLargeInteger");
  expectRefused(vlSysISO8601ToLargeInteger(L"2013-03-28", nullptr), L"vlSysISO8601ToLargeInteger");
  EXPECT_EQ(oracle::fieldsOf(time), kUntouched);
}

TEST_F(Parsing, RecordsOfTheSectionsLieBetweenThoseOfTheFunction) {
  const std::wstring ticks = L"vlSysISO8601ToLargeInteger";
  const struct {
    const wchar_t* text;
    Log records;
    int ticksResult;
  } rows[] = {{L"2013-03-28T12:34:56+01:00", reading({{L"Date", 0}, {L"Time", 0}, {L"TimeZone", 0}}, 0), 0},
              {L"2013-13-01T99.9", reading({{L"Date", 87}}, 87), 87},
              {L"2013-03-28T12:34:56.5+99", reading({{L"Date", 0}, {L"Time", 87}}, 87), 87},
              {L"2013-02-31", reading({{L"Date", 0}}, 87), 87},
              {L"2013-02-31T00Z", reading({{L"Date", 0}, {L"Time", 0}}, 0), 87}};
  for (const auto& row : rows) {
    LogCapture log;
    toFields(row.text);
    EXPECT_TRUE(log.was(row.records));
    toTicks(row.text);
    EXPECT_TRUE(log.was(Log{entered(ticks)} + row.records + Log{left(ticks + inParentheses(row.ticksResult))}));
  }
}

}  // namespace
}  // namespace timetext
