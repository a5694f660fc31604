// The gate that all functions of the stand-in pass.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include <support/machinetest.h>

#include <vlplatform/windows.h>

namespace {

using vlplatform::FaultSpan;

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
  static std::vector<DWORD> repeat(int times) {
    std::vector<DWORD> codes(static_cast<std::size_t>(times));
    std::ranges::generate(codes, convert);
    return codes;
  }
};

using Codes = std::vector<DWORD>;

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

TEST_F(FaultGate, CallsThatFailLeaveTheCodeAndNothingOpen) {
  const HMODULE kernel = LoadLibraryW(L"kernel32.dll");
  const SYSTEMTIME time = {2013, 3, 0, 28, 0, 0, 0, 0};
  SYSTEMTIME utc{};
  TIME_ZONE_INFORMATION zone{};
  wchar_t wide[8];
  char narrow[8];
  const std::pair<const char*, std::function<bool()>> rows[] = {
      {"SystemTimeToFileTime", [] { return convert() == ERROR_SUCCESS; }},
      {"TzSpecificLocalTimeToSystemTime", [&] { return TzSpecificLocalTimeToSystemTime(&zone, &time, &utc) != FALSE; }},
      {"GetTimeZoneInformation", [&] { return GetTimeZoneInformation(&zone) != TIME_ZONE_ID_INVALID; }},
      {"LoadLibraryW", [] { return LoadLibraryW(L"kernel32.dll") != nullptr; }},
      {"GetProcAddress", [&] { return GetProcAddress(kernel, "TzSpecificLocalTimeToSystemTime") != nullptr; }},
      {"MultiByteToWideChar", [&] { return MultiByteToWideChar(CP_ACP, 0, "a", -1, wide, 8) != 0; }},
      {"WideCharToMultiByte",
       [&] { return WideCharToMultiByte(CP_ACP, 0, L"a", -1, narrow, 8, nullptr, nullptr) != 0; }},
      {"FreeLibrary", [&] { return FreeLibrary(kernel) != FALSE; }},  // the reference goes although it fails
  };
  for (const auto& [name, succeeds] : rows) {
    faults().fail(name, 1, FaultSpan::once, 4321);
    SetLastError(support::kUntouchedError);
    EXPECT_FALSE(succeeds()) << name;
    EXPECT_EQ(GetLastError(), 4321u) << name;
  }
  expectNothingOpen();
}

}  // namespace
