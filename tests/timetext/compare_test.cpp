#include "conversion.h"

namespace timetext {
namespace {

using Comparison = MachineTest;

TEST_F(Comparison, Results) {
  const struct {
    const wchar_t *first, *second;
    int result, swapped;
  } rows[] = {
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
      {L"2013-03-28T12:00:00Z", L"2013-13-28T12:00:00Z", 87, 87},
      {L"2013-03-28T12:00:00Z", L"2013-02-31T00:00:00Z", 87, 87},
      {L"2013-03-28T12:00:00Z", L"2013-02-31T00:00:00", 87, 87},
      {L"2013-03-28T12:00:00Z", nullptr, 87, 87},
      {nullptr, nullptr, 87, 87},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.first) + testing::PrintToString(row.second));
    EXPECT_EQ(vlSysCompareISO8601(row.first, row.second), row.result);
    EXPECT_EQ(vlSysCompareISO8601(row.second, row.first), row.swapped);
  }
}

TEST_F(Comparison, ReadsTheFirstTextBeforeTheSecondAndStopsAtAFailure) {
  const Log read = reading({{L"Date", 0}, {L"Time", 0}}, 0), refuse = reading({{L"Date", 87}}, 87);
  const wchar_t *const early = L"2013-03-28T12:00:00Z", *const late = L"2013-03-28T12:00:01Z";
  const struct {
    const wchar_t *first, *second, *result;
    Log texts;
  } rows[] = {{early, late, L"0xffffffff", read + read},
              {late, early, L"0x1", read + read},
              {early, L"", L"0x57", read + refuse},
              {L"", early, L"0x57", refuse},
              {early, nullptr, L"0x57", {}}};
  const std::wstring name = L"vlSysCompareISO8601";
  for (const auto& row : rows) {
    LogCapture log;
    vlSysCompareISO8601(row.first, row.second);
    EXPECT_TRUE(log.was(Log{entered(name)} + row.texts + Log{left(name + L": returns nRet = " + row.result)}));
  }
}

}  // namespace
}  // namespace timetext
