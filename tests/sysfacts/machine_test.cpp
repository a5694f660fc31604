// Drives that are made up, and memory that is not there. Native only.
#include <cstdlib>
#include <functional>

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
  const auto expectNext = [](const std::wstring& next, const std::vector<std::wstring>& cursors) {
    for (const std::wstring& cursor : cursors) {
      std::wstring wide = cursor;
      std::string narrow(cursor.begin(), cursor.end());
      EXPECT_EQ(vlSysGetFixedDrive(wide), next.empty() ? 15 : 0) << narrow;
      EXPECT_EQ(vlSysGetFixedDrive(narrow), next.empty() ? 15 : 0);
      EXPECT_EQ(wide, next.empty() ? cursor : next);
      EXPECT_EQ(widened(narrow), wide);
    }
  };
  expectNext(L"C:", {L"", L"A:", L"c:", L"Z:", L"\\", L"C:\\\\"});
  expectNext(L"E:", {L"C:", L"C:\\", L"D:"});
  expectNext(L"", {L"E:", L"E:\\"});
  machine().drives().remove(L'C');
  machine().drives().remove(L'E');
  expectNext(L"", {L""});
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
  // Short texts take no memory of their own, so that the first allocation is the library's.
  std::string user = "alice", domain = "CORP", narrow = "x";
  std::wstring wide = L"x";
  void* sid = nullptr;
  const auto failure = [](const wchar_t* name, std::size_t bytes) {
    return name + std::wstring(L" Memory allocation failed (") + std::to_wstring(bytes) + L" bytes)";
  };
  const struct {
    std::function<unsigned long()> call;
    std::uint64_t n;
    std::wstring record;
  } rows[] = {{[&] { return vlSysGetFixedDrive(narrow); }, 1, failure(L"GetFixedDrive", 17)},
              {[&] { return vlSysGetFixedDrive(wide); }, 1, failure(L"GetFixedDrive", 17 * sizeof(wchar_t))},
              {[&] { return vlSysGetSystemDrive(narrow); }, 1, failure(L"vlSysGetSystemDrive", 3)},
              {[&] { return vlSysGetSystemDrive(wide); }, 1, failure(L"vlSysGetSystemDrive", 3 * sizeof(wchar_t))},
              {[&] { return vlSysGetUserSID(user, domain, sid); }, 2, L"vlSysGetUserSID Memory allocation failed\n"}};
  for (const auto& row : rows) {
    LogCapture log(TXLOG_LEVEL_BIT(TXLOG_ERROR));
    AllocFault fault(row.n);
    const unsigned long result = row.call();
    EXPECT_TRUE(fault.end());
    EXPECT_EQ(result, 8u);
    EXPECT_TRUE(log.was({failed(row.record)}));
  }
  EXPECT_TRUE(narrow == "x" && wide == L"x" && sid != nullptr);  // the caller's from its allocation on
  std::free(sid);
}

}  // namespace
}  // namespace sysfacts
