// The gate that all functions of the stand-in pass.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
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
  template <class Call>
  static std::vector<DWORD> repeat(Call call, int times) {
    std::vector<DWORD> codes;
    for (int i = 0; i < times; ++i) {
      codes.push_back(call());
    }
    return codes;
  }
};

using Codes = std::vector<DWORD>;

TEST_F(FaultGate, FailsTheCallThatIsAskedFor) {
  faults().fail("SystemTimeToFileTime", 2);
  compare();
  EXPECT_EQ(repeat(convert, 3), (Codes{0, vlplatform::Faults::kDefaultCode, 0}));
  faults().fail("SystemTimeToFileTime", 2, FaultSpan::forEver, 5);
  EXPECT_EQ(repeat(convert, 4), (Codes{0, 5, 5, 5}));
}

TEST_F(FaultGate, CountsCallsOfAnyFunction) {
  faults().failAny(3, FaultSpan::once, 5);
  convert();
  compare();
  EXPECT_EQ(repeat(convert, 2), (Codes{5, 0}));
  EXPECT_EQ(faults().calls(), 4u);
  EXPECT_EQ(faults().calls("SystemTimeToFileTime"), 3u);
  EXPECT_EQ(faults().calls("CompareFileTime"), 1u);
  EXPECT_EQ(faults().callName(2), "CompareFileTime");
  EXPECT_EQ(faults().callName(0), "");
  EXPECT_EQ(faults().callName(5), "");
}

TEST_F(FaultGate, SeesNothingUnlessWatched) {
  faults().fail("SystemTimeToFileTime");
  faults().watch();
  EXPECT_EQ(convert(), 0u);
  faults().fail("SystemTimeToFileTime");
  faults().reset();
  EXPECT_EQ(convert(), 0u);
  EXPECT_EQ(faults().calls(), 0u);
}

TEST_F(FaultGate, EveryFunctionPassesIt) {
  static const FILETIME fileTime{};
  static FILETIME out{};
  static SYSTEMTIME time = {2013, 3, 0, 28, 0, 0, 0, 0};
  static TIME_ZONE_INFORMATION zone{};
  static char narrow[8] = "a";
  static wchar_t wide[8] = L"a";
  const HMODULE kernel = LoadLibraryW(L"kernel32.dll");
  const struct {
    const char* name;
    bool (*succeeds)();
  } rows[] = {
      {"SystemTimeToFileTime", [] { return SystemTimeToFileTime(&time, &out) != FALSE; }},
      {"FileTimeToSystemTime", [] { return FileTimeToSystemTime(&fileTime, &time) != FALSE; }},
      {"LocalFileTimeToFileTime", [] { return LocalFileTimeToFileTime(&fileTime, &out) != FALSE; }},
      {"TzSpecificLocalTimeToSystemTime",
       [] {
         const SYSTEMTIME local = {2013, 3, 0, 28, 0, 0, 0, 0};
         return TzSpecificLocalTimeToSystemTime(&zone, &local, &time) != FALSE;
       }},
      {"GetTimeZoneInformation", [] { return GetTimeZoneInformation(&zone) != TIME_ZONE_ID_INVALID; }},
      {"LoadLibraryW",
       [] {
         const HMODULE module = LoadLibraryW(L"kernel32.dll");
         if (module != nullptr) {
           vlplatform::machine().modules().free(module);
         }
         return module != nullptr;
       }},
      {"MultiByteToWideChar", [] { return MultiByteToWideChar(CP_ACP, 0, narrow, -1, wide, 8) == 2; }},
      {"WideCharToMultiByte",
       [] { return WideCharToMultiByte(CP_ACP, 0, wide, -1, narrow, 8, nullptr, nullptr) == 2; }},
  };
  for (const auto& row : rows) {
    EXPECT_TRUE(row.succeeds()) << row.name;
    faults().fail(row.name, 1, FaultSpan::once, 4321);
    SetLastError(support::kUntouchedError);
    EXPECT_FALSE(row.succeeds()) << row.name;
    EXPECT_EQ(GetLastError(), 4321u) << row.name;
  }
  faults().fail("GetProcAddress", 1, FaultSpan::once, 4321);
  EXPECT_EQ(GetProcAddress(kernel, "TzSpecificLocalTimeToSystemTime"), nullptr);
  EXPECT_EQ(GetLastError(), 4321u);
  faults().fail("memcpy_s");
  EXPECT_EQ(memcpy_s(wide, sizeof wide, L"b", sizeof(wchar_t)), EINVAL);
  // The reference goes although the call fails.
  faults().fail("FreeLibrary", 1, FaultSpan::once, 4321);
  EXPECT_FALSE(FreeLibrary(kernel));
  EXPECT_EQ(GetLastError(), 4321u);
  expectNothingOpen();

  // These can't fail; they are counted.
  GetSystemTime(&time);
  GetLocalTime(&time);
  GetSystemTimeAsFileTime(&out);
  compare();
  for (const char* const name : {"GetSystemTime", "GetLocalTime", "GetSystemTimeAsFileTime", "CompareFileTime"}) {
    EXPECT_EQ(faults().calls(name), 1u) << name;
  }
}

}  // namespace
