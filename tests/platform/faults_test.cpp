// The gate that all functions of the stand-in pass.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include <support/machinetest.h>

#include <vlplatform/windows.h>

namespace {

using vlplatform::FaultSpan;
using Codes = std::vector<DWORD>;

class FaultGate : public support::MachineTest {
 protected:
  // One call of SystemTimeToFileTime: its code.
  static DWORD convert() {
    const SYSTEMTIME time = {2013, 3, 0, 28, 0, 0, 0, 0};
    FILETIME fileTime;
    return SystemTimeToFileTime(&time, &fileTime) ? DWORD{ERROR_SUCCESS} : GetLastError();
  }
  static DWORD compare() {
    const FILETIME time{};
    return static_cast<DWORD>(CompareFileTime(&time, &time));
  }
  static Codes repeat(std::size_t times) {
    Codes codes(times);
    std::ranges::generate(codes, convert);
    return codes;
  }
};

TEST_F(FaultGate, FailsTheCallThatIsAskedFor) {
  faults().fail("SystemTimeToFileTime", 2);
  compare();
  EXPECT_EQ(repeat(3), (Codes{0, vlplatform::Faults::kDefaultCode, 0}));
  faults().fail("SystemTimeToFileTime", 2, FaultSpan::forEver, 5);
  EXPECT_EQ(repeat(4), (Codes{0, 5, 5, 5}));
}

TEST_F(FaultGate, CountsCallsOfAnyFunction) {
  faults().failAny(3, FaultSpan::once, 5);
  convert();
  compare();
  EXPECT_EQ(repeat(2), (Codes{5, 0}));
  EXPECT_EQ(faults().calls(), 4u);
  EXPECT_EQ(faults().calls("SystemTimeToFileTime"), 3u);
  EXPECT_EQ(faults().calls("CompareFileTime"), 1u);
  EXPECT_EQ(faults().callName(2), "CompareFileTime");
  EXPECT_EQ(faults().callName(5), "");
}

}  // namespace
