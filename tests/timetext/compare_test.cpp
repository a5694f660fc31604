#include <gtest/gtest.h>

#include "conversion.h"

namespace timetext {
namespace {

class Comparison : public support::MachineTest {};

constexpr int kInvalidResult = ERROR_INVALID_PARAMETER;

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
      {L"2013-03-28T12:00:00Z", L"2013-13-28T12:00:00Z", kInvalidResult, kInvalidResult},
      {L"2013-03-28T12:00:00Z", L"", kInvalidResult, kInvalidResult},
      {L"2013-03-28T12:00:00Z", L"2013-02-31T00:00:00Z", kInvalidResult, kInvalidResult},
      {L"2013-03-28T12:00:00Z", L"2013-02-31T00:00:00", kInvalidResult, kInvalidResult},
      {L"2013-03-28T12:00:00Z", nullptr, kInvalidResult, kInvalidResult},
      {nullptr, nullptr, kInvalidResult, kInvalidResult},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(vlSysCompareISO8601(row.first, row.second), row.result)
        << testing::PrintToString(row.first) << testing::PrintToString(row.second);
    EXPECT_EQ(vlSysCompareISO8601(row.second, row.first), row.swapped)
        << testing::PrintToString(row.first) << testing::PrintToString(row.second);
  }
}

TEST_F(Comparison, ReadsTheFirstTextBeforeTheSecondAndStopsAtAFailure) {
  support::LogCapture log;
  const auto record = [](int level, const wchar_t* text) { return support::LogRecord{L"txhostkit", level, text}; };
  const std::vector<support::LogRecord> read = records({{TXLOG_ENTRY, L"vlSysISO8601ToSystemTime"},
                                                        {TXLOG_ENTRY, L"vlSysParseISO8601Date"},
                                                        {TXLOG_EXIT, L"vlSysParseISO8601Date (0)"},
                                                        {TXLOG_ENTRY, L"vlSysParseISO8601Time"},
                                                        {TXLOG_EXIT, L"vlSysParseISO8601Time (0)"},
                                                        {TXLOG_EXIT, L"vlSysISO8601ToSystemTime (0)"}});
  const std::vector<support::LogRecord> refuse = records({{TXLOG_ENTRY, L"vlSysISO8601ToSystemTime"},
                                                          {TXLOG_ENTRY, L"vlSysParseISO8601Date"},
                                                          {TXLOG_EXIT, L"vlSysParseISO8601Date (87)"},
                                                          {TXLOG_EXIT, L"vlSysISO8601ToSystemTime (87)"}});
  const auto framed = [&](std::initializer_list<std::vector<support::LogRecord>> texts, const wchar_t* exit) {
    std::vector<support::LogRecord> all = {record(TXLOG_ENTRY, L"vlSysCompareISO8601")};
    for (const auto& text : texts) {
      all.insert(all.end(), text.begin(), text.end());
    }
    all.push_back(record(TXLOG_EXIT, exit));
    return all;
  };
  const wchar_t* const early = L"2013-03-28T12:00:00Z";
  const wchar_t* const late = L"2013-03-28T12:00:01Z";
  vlSysCompareISO8601(early, late);
  EXPECT_TRUE(log.was(framed({read, read}, L"vlSysCompareISO8601: returns nRet = 0xffffffff")));
  vlSysCompareISO8601(late, early);
  EXPECT_TRUE(log.was(framed({read, read}, L"vlSysCompareISO8601: returns nRet = 0x1")));
  vlSysCompareISO8601(late, late);
  EXPECT_TRUE(log.was(framed({read, read}, L"vlSysCompareISO8601: returns nRet = 0x0")));
  vlSysCompareISO8601(early, L"");
  EXPECT_TRUE(log.was(framed({read, refuse}, L"vlSysCompareISO8601: returns nRet = 0x57")));
  vlSysCompareISO8601(L"", early);
  EXPECT_TRUE(log.was(framed({refuse}, L"vlSysCompareISO8601: returns nRet = 0x57")));
  vlSysCompareISO8601(early, nullptr);
  EXPECT_TRUE(log.was(framed({}, L"vlSysCompareISO8601: returns nRet = 0x57")));
}

}  // namespace
}  // namespace timetext
