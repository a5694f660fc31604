// The stand-in's calendar against that of the standard library.
#include <gtest/gtest.h>

#include <support/machinetest.h>

#include "../timetext/oracle.h"

namespace {

using oracle::Fields;

class Calendar : public support::MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
    faults().reset();  // many calls
  }
};

std::int64_t ticksOf(const FILETIME& time) {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime);
}

FILETIME fileTimeOf(std::int64_t ticks) {
  return {static_cast<DWORD>(ticks), static_cast<DWORD>(static_cast<std::uint64_t>(ticks) >> 32)};
}

testing::AssertionResult agrees(const Fields& fields) {
  const SYSTEMTIME time = oracle::timeOf(fields);
  FILETIME fileTime = fileTimeOf(-3);
  SetLastError(support::kUntouchedError);
  const BOOL converted = SystemTimeToFileTime(&time, &fileTime);
  const auto expected = oracle::ticksOf(fields);
  if ((converted != FALSE) == expected.has_value() && ticksOf(fileTime) == expected.value_or(-3) &&
      GetLastError() == (expected ? support::kUntouchedError : ERROR_INVALID_PARAMETER)) {
    return testing::AssertionSuccess();
  }
  return testing::AssertionFailure() << testing::PrintToString(fields) << " gives " << ticksOf(fileTime)
                                     << ", expected " << testing::PrintToString(expected);
}

TEST_F(Calendar, MonthsOfAllYears) {
  for (unsigned year = 1600; year <= 30828; ++year) {
    for (const unsigned month : {0u, 1u, 2u, 3u, 12u, 13u}) {
      for (const unsigned day : {0u, 1u, 28u, 29u, 30u, 31u, 32u}) {
        ASSERT_TRUE(agrees({year, month, 9, day, 23, 59, 59, 999}));
      }
    }
  }
  for (unsigned month = 1; month <= 12; ++month) {
    for (unsigned day = 1; day <= 32; ++day) {
      ASSERT_TRUE(agrees({2013, month, 0, day, 0, 0, 0, 0}));
    }
  }
}

TEST_F(Calendar, LimitsOfFields) {
  for (const Fields& fields : {Fields{2013, 3, 0, 28, 24, 0, 0, 0},
                               {2013, 3, 0, 28, 0, 60, 0, 0},
                               {2013, 3, 0, 28, 0, 0, 60, 0},
                               {2013, 3, 0, 28, 0, 0, 0, 1000},
                               {2013, 3, 65535, 28, 23, 59, 59, 999},
                               {65535, 1, 0, 1, 0, 0, 0, 0}}) {
    EXPECT_TRUE(agrees(fields));
  }
}

TEST_F(Calendar, TickCounts) {
  for (std::int64_t ticks = 0; ticks < INT64_MAX - 0x0000080000123457; ticks += 0x0000080000123457) {
    const FILETIME fileTime = fileTimeOf(ticks);
    SYSTEMTIME time{};
    ASSERT_TRUE(FileTimeToSystemTime(&fileTime, &time));
    ASSERT_EQ(oracle::fieldsOf(time), *oracle::fieldsOfTicks(ticks));
  }
  for (const std::int64_t ticks : {std::int64_t{0}, INT64_MAX}) {
    const FILETIME fileTime = fileTimeOf(ticks);
    SYSTEMTIME time{};
    EXPECT_TRUE(FileTimeToSystemTime(&fileTime, &time));
    EXPECT_EQ(oracle::fieldsOf(time), *oracle::fieldsOfTicks(ticks));
  }
  const FILETIME negative = fileTimeOf(INT64_MIN);
  SYSTEMTIME time{};
  EXPECT_FALSE(FileTimeToSystemTime(&negative, &time));
  EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(Calendar, ComparisonIsUnsigned) {
  const auto compare = [](std::int64_t a, std::int64_t b) {
    const FILETIME first = fileTimeOf(a);
    const FILETIME second = fileTimeOf(b);
    return CompareFileTime(&first, &second);
  };
  EXPECT_EQ(compare(1, 1), 0);
  EXPECT_EQ(compare(0x1'0000'0000, 0xFFFFFFFF), 1);
  EXPECT_EQ(compare(0xFFFFFFFF, 0x1'0000'0000), -1);
  EXPECT_EQ(compare(-1, 1), 1);
}

}  // namespace
