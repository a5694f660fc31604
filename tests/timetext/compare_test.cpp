#include <gtest/gtest.h>

#include "conversion.h"

namespace timetext {
namespace {

class Comparison : public support::MachineTest {};

constexpr int kRefused = ERROR_INVALID_PARAMETER;

TEST_F(Comparison, Results) {
  struct Row {
    const wchar_t* first;
    const wchar_t* second;
    int result;
    int swapped;
  };
  const Row rows[] = {
      {L"2013-03-28T12:00:00Z", L"2013-03-28T12:00:00Z", 0, 0},
      {L"2013-03-28T12:00:00Z", L"20130328 12+", 0, 0},
      {L"2013-03-28T12:00:00Z", L"2013-03-28T13:00:00+01:00", 0, 0},
      {L"2013-03-28T12:00:00-12:59", L"2013-03-29T14:58+13:59", 0, 0},
      {L"2013-03-28T12:00:00Z", L"2013-03-28T12:00:01Z", -1, 1},
      {L"2013-03-28T12:00:00+01", L"2013-03-28T12:00:00Z", -1, 1},
      {L"1601-01-01T00Z", L"9999-12-31T23:59:59Z", -1, 1},
      // Both are on the machine's clock, whose shift they share.
      {L"2013-03-28T12:00:00", L"2013-03-28T12:00:01", -1, 1},
      {L"2013-03-28", L"2013-03-28T00:00", 0, 0},
      // One of them is no text, or no time of the calendar.
      {L"2013-03-28T12:00:00Z", L"2013-13-28T12:00:00Z", kRefused, kRefused},
      {L"2013-03-28T12:00:00Z", L"", kRefused, kRefused},
      {L"2013-03-28T12:00:00Z", L"2013-02-31T00:00:00Z", kRefused, kRefused},
      {L"2013-03-28T12:00:00Z", L"2013-02-31T00:00:00", kRefused, kRefused},
      {L"2013-03-28T12:00:00Z", nullptr, kRefused, kRefused},
      {nullptr, nullptr, kRefused, kRefused},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(vlSysCompareISO8601(row.first, row.second), row.result)
        << testing::PrintToString(row.first) << testing::PrintToString(row.second);
    EXPECT_EQ(vlSysCompareISO8601(row.second, row.first), row.swapped)
        << testing::PrintToString(row.first) << testing::PrintToString(row.second);
  }
}

TEST_F(Comparison, ReadsTheFirstTextBeforeTheSecondAndStopsAtAFailure) {
  const std::vector<std::wstring> read = {L"vlSysISO8601ToSystemTime",  L"vlSysParseISO8601Date",
                                          L"vlSysParseISO8601Date (0)", L"vlSysParseISO8601Time",
                                          L"vlSysParseISO8601Time (0)", L"vlSysISO8601ToSystemTime (0)"};
  const std::vector<std::wstring> refuse = {L"vlSysISO8601ToSystemTime", L"vlSysParseISO8601Date",
                                            L"vlSysParseISO8601Date (87)", L"vlSysISO8601ToSystemTime (87)"};
  const wchar_t* const early = L"2013-03-28T12:00:00Z";
  const wchar_t* const late = L"2013-03-28T12:00:01Z";
  const struct {
    const wchar_t *first, *second, *result;
    std::vector<std::vector<std::wstring>> texts;
  } rows[] = {{early, late, L"0xffffffff", {read, read}},
              {late, early, L"0x1", {read, read}},
              {early, L"", L"0x57", {read, refuse}},
              {L"", early, L"0x57", {refuse}},
              {early, nullptr, L"0x57", {}}};
  for (const auto& row : rows) {
    support::LogCapture log;
    vlSysCompareISO8601(row.first, row.second);
    std::vector<std::wstring> logged, expected = {L"vlSysCompareISO8601"};
    for (const support::LogRecord& record : log.records()) {
      logged.push_back(record.text);
    }
    for (const auto& text : row.texts) {
      expected.insert(expected.end(), text.begin(), text.end());
    }
    expected.push_back(std::wstring(L"vlSysCompareISO8601: returns nRet = ") + row.result);
    EXPECT_EQ(logged, expected);
    EXPECT_EQ(log.records().front().level, TXLOG_ENTRY);
    EXPECT_EQ(log.records().back().level, TXLOG_EXIT);
  }
}

}  // namespace
}  // namespace timetext
