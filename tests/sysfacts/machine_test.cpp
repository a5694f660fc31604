// Drives that are made up, and platform calls and allocations that fail. Native only.
#include <cstdlib>
#include <functional>

#include <support/allocfault.h>

#include "forms.h"

namespace sysfacts {
namespace {

using vlplatform::FaultSpan;

class OnMachine : public support::MachineTest {};

template <class Width>
void expectWalk() {
  using Char = typename Width::Char;
  const struct {
    const wchar_t* cursor;
    const wchar_t* next;  // null: none
  } rows[] = {{L"", L"C:"},   {L"C:", L"E:"}, {L"C:\\", L"E:"}, {L"E:", nullptr}, {L"E:\\", nullptr}, {L"D:", L"E:"},
              {L"A:", L"C:"}, {L"c:", L"C:"}, {L"Z:", L"C:"},   {L"\\", L"C:"},   {L"C:\\\\", L"C:"}};
  for (const auto& row : rows) {
    auto drive = as<Char>(row.cursor);
    EXPECT_EQ(vlSysGetFixedDrive(drive), row.next != nullptr ? 0 : 15) << testing::PrintToString(row.cursor);
    EXPECT_EQ(drive, as<Char>(row.next != nullptr ? row.next : row.cursor));
  }
}

TEST_F(OnMachine, TheCursorOfAListWithGaps) {
  using vlplatform::machine;
  machine().drives().clear();
  machine().drives().set(L'A', DRIVE_REMOVABLE);
  machine().drives().set(L'C', DRIVE_FIXED);
  machine().drives().set(L'D', DRIVE_CDROM);
  machine().drives().set(L'E', DRIVE_FIXED);
  expectWalk<Narrow>();
  expectWalk<Wide>();
  machine().drives().remove(L'C');
  machine().drives().remove(L'E');
  std::wstring drive;
  support::LogCapture log;
  EXPECT_EQ(vlSysGetFixedDrive(drive), 15);
  EXPECT_TRUE(log.was(records({{TXLOG_ENTRY, L"GetFixedDrive"},
                               {TXLOG_ERROR, L"GetFixedDrive Hard Drive not found"},
                               {TXLOG_EXIT, L"GetFixedDrive (15)"}})));
}

TEST_F(OnMachine, WhatGrowsBetweenTwoCallsIsRefused) {
  machine().drives().setAfterNextQuery(L'Y', DRIVE_FIXED);
  std::wstring drive = L"before";
  SetLastError(77);
  EXPECT_EQ(vlSysGetFixedDrive(drive), 77);
  EXPECT_EQ(drive, L"before");
  machine().environment().set(L"SystemDrive", L"C:");
  machine().environment().setAfterNextQuery(L"SystemDrive", L"C:\\longer");
  SetLastError(78);
  EXPECT_EQ(vlSysGetSystemDrive(drive), 78);
  EXPECT_EQ(drive, L"before");
}

template <class Width>
std::vector<std::pair<const char*, std::function<DWORD()>>> operations() {
  using Char = typename Width::Char;
  return {{"fixedDrive",
           [] {
             GuardedBuffer<Char> buffer(3);
             buffer.data()[0] = 0;
             DWORD chars = 3;
             const int result = Width::fixedDrive(buffer.data(), &chars);
             EXPECT_EQ(buffer.data()[0] == 0, result != 0);
             return static_cast<DWORD>(result);
           }},
          {"systemDrive",
           [] {
             GuardedBuffer<Char> buffer(3);
             DWORD chars = 3;
             const int result = Width::systemDrive(buffer.data(), &chars);
             EXPECT_EQ(buffer.untouched(), result != 0);
             return static_cast<DWORD>(result);
           }},
          {"userSid",
           [] {
             void* sid = &sid;
             const DWORD result = Width::userSid(as<Char>(L"alice").c_str(), as<Char>(L"CORP").c_str(), &sid);
             EXPECT_NE(sid, static_cast<void*>(&sid));
             EXPECT_TRUE(result != 0 || sid != nullptr);
             std::free(sid);
             return result;
           }},
          {"obtainSid", [] {
             HANDLE token = nullptr;
             EXPECT_TRUE(OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token));
             GuardedBuffer<Char> text(256);
             DWORD bytes = 256 * sizeof(Char);
             const BOOL result = Width::obtainSid(token, text.data(), &bytes);
             const DWORD code = result ? 0 : GetLastError();
             EXPECT_EQ(text.untouched(), result == 0);
             CloseHandle(token);
             return code;
           }}};
}

TEST_F(OnMachine, EveryPlatformCallThatFailsGivesItsNumber) {
  machine().accounts().addDomain(L"CORP", L"S-1-5-21-1-2-3");
  machine().accounts().addUser(L"CORP", L"alice", 1104);
  const struct {
    const char* function;
    const char* operation;
    std::uint64_t calls;
  } rows[] = {{"GetLogicalDriveStrings", "fixedDrive", 2},
              {"GetEnvironmentVariable", "systemDrive", 2},
              {"LookupAccountName", "userSid", 2},
              {"GetTokenInformation", "obtainSid", 2},
              {"LocalAlloc", "obtainSid", 1}};
  const auto sweep = [&](const auto& all, const char* letter) {
    for (const auto& [name, call] : all) {
      for (const auto& row : rows) {
        if (row.operation != std::string_view(name)) {
          continue;
        }
        const bool twins = row.operation != std::string_view("obtainSid");
        const std::string function = std::string(row.function) + (twins ? letter : "");
        for (const FaultSpan span : {FaultSpan::once, FaultSpan::forEver}) {
          for (std::uint64_t n = 1; n <= row.calls + 1; ++n) {
            faults().watch();
            faults().fail(function, n, span, 4321);
            EXPECT_EQ(call(), n <= row.calls ? 4321u : 0u) << function << " " << n;
            EXPECT_EQ(faults().calls(function), n == 1 ? 1u : row.calls) << function;
            faults().watch();
            expectNothingOpen();
          }
        }
      }
    }
  };
  sweep(operations<Narrow>(), "A");
  sweep(operations<Wide>(), "W");
}

TEST_F(OnMachine, WithoutMemory) {
  if (!support::kCountsMalloc) {
    GTEST_SKIP() << "malloc is the sanitizer's";
  }
  machine().accounts().addDomain(L"CORP", L"S-1-5-21-1-2-3");
  machine().accounts().addUser(L"CORP", L"alice", 1104);
  // Short texts take no memory of their own, so that the first allocation is the library's.
  const std::string user = "alice";
  const std::string domain = "CORP";
  for (std::uint64_t n = 1; n <= 2; ++n) {
    support::LogCapture log(TXLOG_LEVEL_BIT(TXLOG_ERROR));
    void* sid = &log;
    support::AllocFault fault(n);
    const unsigned long result = vlSysGetUserSID(user, domain, sid);
    EXPECT_TRUE(fault.end());
    EXPECT_EQ(result, 8u);
    EXPECT_EQ(sid != nullptr, n == 2);
    EXPECT_TRUE(log.was(records({{TXLOG_ERROR, L"vlSysGetUserSID Memory allocation failed\n"}})));
    std::free(sid);
  }
  machine().drives().clear();
  machine().drives().set(L'C', DRIVE_FIXED);
  machine().environment().set(L"SystemDrive", L"C:");
  support::LogCapture log(TXLOG_LEVEL_BIT(TXLOG_ERROR));
  const auto fails = [&](auto function, auto drive, const std::wstring& record) {
    const auto before = drive;
    support::AllocFault fault(1);
    const int result = function(drive);
    EXPECT_TRUE(fault.end());
    EXPECT_EQ(result, 8);
    EXPECT_EQ(drive, before);
    EXPECT_TRUE(log.was(records({{TXLOG_ERROR, record}})));
  };
  const auto fixed = [](auto& drive) { return vlSysGetFixedDrive(drive); };
  const auto system = [](auto& drive) { return vlSysGetSystemDrive(drive); };
  const std::wstring wideBytes = std::to_wstring(5 * sizeof(wchar_t));
  fails(fixed, std::string("x"), L"GetFixedDrive Memory allocation failed (5 bytes)");
  fails(fixed, std::wstring(L"x"), L"GetFixedDrive Memory allocation failed (" + wideBytes + L" bytes)");
  fails(system, std::string("x"), L"vlSysGetSystemDrive Memory allocation failed (3 bytes)");
  fails(system, std::wstring(L"x"),
        L"vlSysGetSystemDrive Memory allocation failed (" + std::to_wstring(3 * sizeof(wchar_t)) + L" bytes)");
}

}  // namespace
}  // namespace sysfacts
