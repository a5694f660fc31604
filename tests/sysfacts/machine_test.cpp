// Drives that are made up, and memory that is not there. Native only.
#include <cstdlib>

#include <support/allocfault.h>

#include "forms.h"

namespace sysfacts {
namespace {

class OnMachine : public MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
    machine().drives().clear();
    machine().drives().set(L'A', DRIVE_REMOVABLE);
    machine().drives().set(L'C', DRIVE_FIXED);
    machine().drives().set(L'D', DRIVE_CDROM);
    machine().drives().set(L'E', DRIVE_FIXED);
    machine().environment().set(L"SystemDrive", L"C:");
    machine().accounts().addDomain(L"CORP", L"S-1-5-21-1-2-3");
    machine().accounts().addUser(L"CORP", L"alice", 1104);
  }
};

TEST_F(OnMachine, TheCursorOfAListWithGaps) {
  const auto expectNext = [](const char* cursor, const char* next) {
    const auto walk = [=](auto drive, auto expected) {
      EXPECT_EQ(vlSysGetFixedDrive(drive), next[0] != '\0' ? 0 : 15) << cursor;
      EXPECT_EQ(drive, expected);
    };
    const char* const expected = next[0] != '\0' ? next : cursor;
    walk(as<char>(cursor), as<char>(expected));
    walk(as<wchar_t>(cursor), as<wchar_t>(expected));
  };
  for (const auto& [cursor, next] : {std::pair("", "C:"),
                                     {"C:", "E:"},
                                     {"C:\\", "E:"},
                                     {"E:", ""},
                                     {"E:\\", ""},
                                     {"D:", "E:"},
                                     {"A:", "C:"},
                                     {"c:", "C:"},
                                     {"Z:", "C:"},
                                     {"\\", "C:"},
                                     {"C:\\\\", "C:"}}) {
    expectNext(cursor, next);
  }
  machine().drives().remove(L'C');
  machine().drives().remove(L'E');
  expectNext("", "");
}

TEST_F(OnMachine, WhatChangesBetweenTwoCallsIsRefusedWithTheNumberThatIsThere) {
  faults().before("GetLogicalDriveStringsW", 2, [] { machine().drives().set(L'Y', DRIVE_FIXED); });
  std::wstring drive = L"before";
  SetLastError(77);
  EXPECT_EQ(vlSysGetFixedDrive(drive), 77);
  const auto lengthen = [] { machine().environment().set(L"SystemDrive", L"C:\\longer and longer"); };
  faults().before("GetEnvironmentVariableW", 2, lengthen);
  SetLastError(78);
  EXPECT_EQ(vlSysGetSystemDrive(drive), 78);
  EXPECT_EQ(drive, L"before");
  // No number is there, and the buffer keeps its text all the same.
  machine().environment().set(L"SystemDrive", L"C:");
  faults().before("GetEnvironmentVariableW", 2, lengthen);
  SetLastError(0);
  wchar_t buffer[16] = L"X:";
  DWORD chars = 16;
  EXPECT_EQ(vlSysGetSystemDriveW(buffer, &chars), 0);
  EXPECT_STREQ(buffer, L"X:");
}

TEST_F(OnMachine, WithoutMemory) {
  if (!kCountsMalloc) {
    GTEST_SKIP() << "malloc is the sanitizer's";
  }
  LogCapture log(TXLOG_LEVEL_BIT(TXLOG_ERROR));
  // Short texts take no memory of their own, so that the first allocation is the library's.
  const std::string user = "alice", domain = "CORP";
  for (std::uint64_t n = 1; n <= 2; ++n) {
    void* sid = &log;
    AllocFault fault(n);
    const unsigned long result = vlSysGetUserSID(user, domain, sid);
    EXPECT_TRUE(fault.end());
    EXPECT_EQ(result, 8u);
    EXPECT_EQ(sid != nullptr, n == 2);
    EXPECT_TRUE(log.was({failed(L"vlSysGetUserSID Memory allocation failed\n")}));
    std::free(sid);
  }
  const auto fails = [&](auto function, auto drive, const std::wstring& name, std::size_t bytes) {
    const auto before = drive;
    AllocFault fault(1);
    const int result = function(drive);
    EXPECT_TRUE(fault.end());
    EXPECT_EQ(result, 8);
    EXPECT_EQ(drive, before);
    EXPECT_TRUE(log.was({failed(name + L" Memory allocation failed (" + std::to_wstring(bytes) + L" bytes)")}));
  };
  const auto fixed = [](auto& drive) { return vlSysGetFixedDrive(drive); };
  const auto system = [](auto& drive) { return vlSysGetSystemDrive(drive); };
  fails(fixed, std::string("x"), L"GetFixedDrive", 17);
  fails(fixed, std::wstring(L"x"), L"GetFixedDrive", 17 * sizeof(wchar_t));
  fails(system, std::string("x"), L"vlSysGetSystemDrive", 3);
  fails(system, std::wstring(L"x"), L"vlSysGetSystemDrive", 3 * sizeof(wchar_t));
}

}  // namespace
}  // namespace sysfacts
