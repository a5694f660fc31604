// Modules: the machine's table, and siblings beside the program.
#include <gtest/gtest.h>

#include <support/machinetest.h>

#include <vlplatform/windows.h>

namespace {

INT_PTR answer() {
  return 42;
}

class ModulesTest : public support::MachineTest {
 protected:
  static DWORD errorOf(bool failed) { return failed ? GetLastError() : DWORD{ERROR_SUCCESS}; }
};

TEST_F(ModulesTest, NamesIgnoreCaseAndEntryPointsDoNot) {
  machine().modules().add(L"Some.Module.dll", {{"Answer", &answer}});
  const HMODULE module = LoadLibraryW(L"SOME.module.DLL");
  ASSERT_NE(module, nullptr);
  EXPECT_EQ(LoadLibraryW(L"some.module.dll"), module);
  EXPECT_EQ(machine().modules().references(L"some.MODULE.dll"), 2);
  EXPECT_EQ(GetProcAddress(module, "Answer"), &answer);
  EXPECT_EQ(GetProcAddress(module, "answer"), nullptr);
  EXPECT_EQ(GetLastError(), DWORD{ERROR_PROC_NOT_FOUND});

  EXPECT_TRUE(FreeLibrary(module));
  EXPECT_EQ(GetProcAddress(module, "Answer"), &answer);
  EXPECT_TRUE(FreeLibrary(module));
  EXPECT_EQ(machine().modules().references(L"Some.Module.dll"), 0);
  // A stale handle is refused.
  EXPECT_EQ(errorOf(GetProcAddress(module, "Answer") == nullptr), DWORD{ERROR_MOD_NOT_FOUND});
  EXPECT_EQ(errorOf(!FreeLibrary(module)), DWORD{ERROR_MOD_NOT_FOUND});
}

// As with all releases: the reference goes although the call fails.
TEST_F(ModulesTest, AReleaseThatIsMadeToFailTellsSo) {
  const HMODULE module = LoadLibraryW(L"kernel32.dll");
  faults().fail("FreeLibrary", 1, vlplatform::FaultSpan::once, 4321);
  EXPECT_EQ(errorOf(!FreeLibrary(module)), 4321u);
  expectNothingOpen();
}

TEST_F(ModulesTest, WhatIsNotThereHasItsCode) {
  for (const wchar_t* const name : {L"no.such.module.dll", L"/lib/x86_64-linux-gnu/libm.dll", L".dll", L""}) {
    EXPECT_EQ(errorOf(LoadLibraryW(name) == nullptr), DWORD{ERROR_MOD_NOT_FOUND}) << testing::PrintToString(name);
  }
  EXPECT_EQ(errorOf(!FreeLibrary(nullptr)), DWORD{ERROR_INVALID_HANDLE});
}

TEST_F(ModulesTest, SiblingsLieBesideTheProgram) {
  for (int round = 0; round < 2; ++round) {
    const HMODULE sibling = LoadLibraryW(L"vl.test.sibling.dll");
    ASSERT_NE(sibling, nullptr);
    EXPECT_EQ(LoadLibraryW(L"vl.test.sibling.dll"), sibling);
    EXPECT_EQ(machine().counters().open(vlplatform::Resource::moduleReference), 2);
    const FARPROC call = GetProcAddress(sibling, "vlTestSiblingCalls");
    ASSERT_NE(call, nullptr);
    // It counts its calls: from one again once it was unloaded.
    EXPECT_EQ(call(), 1);
    EXPECT_TRUE(FreeLibrary(sibling));
    EXPECT_EQ(call(), 2);
    EXPECT_EQ(GetProcAddress(sibling, "noSuchFunction"), nullptr);
    EXPECT_TRUE(FreeLibrary(sibling));
  }
}

}  // namespace
