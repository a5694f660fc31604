// String resources, and the handles that name their modules.
#include <gtest/gtest.h>

#include <string>

#include <support/guardedbuffer.h>
#include <support/machinetest.h>

#include <vlplatform/windows.h>

namespace {

using Resources = support::MachineTest;

TEST_F(Resources, TextsAreCutToTheBuffer) {
  machine().strings().set(nullptr, 7, L"abc");
  for (int chars = 1; chars <= 5; ++chars) {
    support::GuardedBuffer<wchar_t> buffer(static_cast<std::size_t>(chars));
    const std::wstring expected = std::wstring(L"abc").substr(0, static_cast<std::size_t>(chars) - 1);
    EXPECT_EQ(LoadStringW(nullptr, 7, buffer.data(), chars), static_cast<int>(expected.size()));
    EXPECT_EQ(std::wstring(buffer.data()), expected);
    EXPECT_TRUE(buffer.untouched(expected.size() + 1));
  }
  EXPECT_EQ(GetLastError(), support::kUntouchedError);
}

TEST_F(Resources, WithoutACapacityTheTextItselfIsGiven) {
  machine().strings().set(nullptr, 7, L"abc");
  const wchar_t* text = nullptr;
  ASSERT_EQ(LoadStringW(nullptr, 7, reinterpret_cast<LPWSTR>(&text), 0), 3);
  EXPECT_EQ(std::wstring(text, 3), L"abc");
  const wchar_t* again = nullptr;
  EXPECT_EQ(LoadStringW(nullptr, 7, reinterpret_cast<LPWSTR>(&again), 0), 3);
  EXPECT_EQ(again, text);
}

TEST_F(Resources, ModulesHaveTheirOwn) {
  machine().modules().add(L"other.dll", {});
  const HMODULE other = GetModuleHandleW(L"OTHER.dll");
  const HMODULE program = GetModuleHandleW(nullptr);
  ASSERT_NE(other, nullptr);
  ASSERT_NE(program, nullptr);
  EXPECT_NE(other, program);
  EXPECT_EQ(GetModuleHandleW(nullptr), program);
  machine().strings().set(nullptr, 1, L"program");
  machine().strings().set(other, 1, L"other");
  machine().strings().set(program, 2, L"two");
  const auto load = [](HMODULE module, UINT id) {
    wchar_t buffer[16] = L"?";
    SetLastError(support::kUntouchedError);
    LoadStringW(module, id, buffer, 16);
    return std::wstring(buffer);
  };
  EXPECT_EQ(load(program, 1), L"program");
  EXPECT_EQ(load(nullptr, 0x10001), L"program");  // ids have 16 bits
  EXPECT_EQ(load(other, 1), L"other");
  EXPECT_EQ(load(nullptr, 2), L"two");
  EXPECT_EQ(load(other, 2), L"?");
  EXPECT_EQ(GetLastError(), DWORD{ERROR_RESOURCE_NAME_NOT_FOUND});
  machine().strings().set(nullptr, 2, L"replaced");
  EXPECT_EQ(load(program, 2), L"replaced");
  machine().reset();
  EXPECT_EQ(load(program, 2), L"?");
}

TEST_F(Resources, HandlesTakeNoReference) {
  const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
  ASSERT_NE(kernel, nullptr);
  EXPECT_EQ(machine().modules().references(L"kernel32.dll"), 0);
  EXPECT_EQ(LoadLibraryW(L"kernel32.dll"), kernel);
  EXPECT_TRUE(FreeLibrary(kernel));
  EXPECT_EQ(GetModuleHandleW(L"vl.test.sibling.dll"), nullptr);
  EXPECT_EQ(GetLastError(), DWORD{ERROR_MOD_NOT_FOUND});
  const HMODULE sibling = LoadLibraryW(L"vl.test.sibling.dll");
  ASSERT_NE(sibling, nullptr);
  EXPECT_EQ(GetModuleHandleW(L"vl.test.sibling.dll"), sibling);
  EXPECT_TRUE(FreeLibrary(sibling));
  for (const wchar_t* const name : {L"vl.test.sibling.dll", L"no.such.dll", L""}) {
    EXPECT_EQ(GetModuleHandleW(name), nullptr);
  }
  machine().modules().remove(L"kernel32.dll");
  EXPECT_EQ(GetModuleHandleW(L"kernel32.dll"), nullptr);
}

TEST_F(Resources, RefusalsAndPlannedFaults) {
  machine().strings().set(nullptr, 7, L"abc");
  wchar_t buffer[4] = L"xyz";
  EXPECT_EQ(LoadStringW(nullptr, 7, nullptr, 4), 0);
  EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
  EXPECT_EQ(LoadStringW(nullptr, 7, buffer, -1), 0);
  faults().fail("LoadStringW", 1, vlplatform::FaultSpan::once, 4321);
  EXPECT_EQ(LoadStringW(nullptr, 7, buffer, 4), 0);
  EXPECT_EQ(GetLastError(), 4321u);
  EXPECT_STREQ(buffer, L"xyz");
  faults().fail("GetModuleHandleW", 1, vlplatform::FaultSpan::once, 4322);
  EXPECT_EQ(GetModuleHandleW(nullptr), nullptr);
  EXPECT_EQ(GetLastError(), 4322u);
}

}  // namespace
