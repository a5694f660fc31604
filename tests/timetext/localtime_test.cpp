// Texts without zone on the machine's own clock. Run under several zones by TZ.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "conversion.h"

namespace timetext {
namespace {

class LocalTime : public support::MachineTest {};

// The shift is that of the present day, whatever the season of the text's date.
TEST_F(LocalTime, IsShiftedByThePresentBias) {
  const int bias = oracle::presentBias();
  for (const wchar_t* const text : {L"2013-03-28T12:34:56", L"2013-01-01T00:00", L"2013-07-01 12", L"20131231T235959",
                                    L"2013-03-28", L"20130701", L"2012-02-29T23:59:59"}) {
    const oracle::Reading expected = oracle::read(text, bias);
    const ToFields time(text);
    EXPECT_EQ(time.result, DWORD{ERROR_SUCCESS});
    EXPECT_EQ(time.fields, expected.fields) << testing::PrintToString(text);
    EXPECT_EQ(ToTicks(text).ticks, expected.ticks);
  }
}

// A run under another zone that tests nothing but UTC again would go unnoticed.
TEST_F(LocalTime, ZoneOfTheEnvironmentIsTheMachines) {
  const char* const zone = std::getenv("TZ");
  const int bias = oracle::presentBias();
  if (zone != nullptr && std::strcmp(zone, "Europe/Berlin") == 0) {
    EXPECT_TRUE(bias == -60 || bias == -120) << bias;
  } else if (zone != nullptr && std::strcmp(zone, "Australia/Sydney") == 0) {
    EXPECT_TRUE(bias == -600 || bias == -660) << bias;
  } else {
    GTEST_SKIP() << "no zone is asked for";
  }
}

}  // namespace
}  // namespace timetext
