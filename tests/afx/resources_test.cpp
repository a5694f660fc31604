// String resources: of the program and of modules added to the search. 101 is the program's, 102 is in both, 203 the
// module's.
#include <vlafx/resources.h>

#include <support/machinetest.h>

#include "core.h"

#ifndef _WIN32
#include <support/allocfault.h>
#endif

namespace afxtest {
namespace {

class ResourcesTest : public support::MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
#ifdef _WIN32
    module = LoadLibraryW(L"vl.test.strings.dll");
    ASSERT_NE(module, nullptr);
#else
    module = reinterpret_cast<HINSTANCE>(this);
    vlplatform::Strings& strings = machine().strings();
    strings.set(program, 101, L"the program's");
    strings.set(program, 102, L"of both, from the program");
    strings.set(program, 104, L"");
    strings.set(module, 102, L"of both, from the module");
    strings.set(module, 203, L"the module's");
    strings.set(module, 104, L"not empty here");
#endif
  }
  void TearDown() override {
    AfxRemoveResourceModule(module);
#ifdef _WIN32
    FreeLibrary(module);
#endif
    MachineTest::TearDown();
  }

  const HINSTANCE program = GetModuleHandleW(nullptr);
  HINSTANCE module = nullptr;
};

TEST_F(ResourcesTest, LoadsTheWholeText) {
  CStringT<wchar_t> core;
  EXPECT_TRUE(core.LoadStringW(program, 101));
  EXPECT_EQ(text(core), L"the program's");
  EXPECT_TRUE(core.LoadStringW(module, 203));
  EXPECT_EQ(text(core), L"the module's");
  EXPECT_TRUE(core.LoadStringW(nullptr, 102));
  EXPECT_EQ(text(core), L"of both, from the program");
  EXPECT_EQ(core.GetString()[core.GetLength()], L'\0');
}

TEST_F(ResourcesTest, KeepsTheTextWhereThereIsNone) {
  CStringT<wchar_t> core;
  core = L"before";
  EXPECT_FALSE(core.LoadStringW(program, 999));
  EXPECT_FALSE(core.LoadStringW(module, 101));
  EXPECT_EQ(text(core), L"before");
}

TEST_F(ResourcesTest, SearchesTheProgramFirst) {
  EXPECT_EQ(AfxFindStringResourceHandle(203), program);
  AfxAddResourceModule(module);
  AfxAddResourceModule(module);
  EXPECT_EQ(AfxFindStringResourceHandle(101), program);
  EXPECT_EQ(AfxFindStringResourceHandle(102), program);
  EXPECT_EQ(AfxFindStringResourceHandle(203), module);
  EXPECT_EQ(AfxFindStringResourceHandle(999), program);
  AfxRemoveResourceModule(module);  // once is enough for two additions
  EXPECT_EQ(AfxFindStringResourceHandle(203), program);
}

#ifndef _WIN32

TEST_F(ResourcesTest, SearchesModulesInOrderAndPassesOverEmptyStrings) {
  const auto second = reinterpret_cast<HINSTANCE>(&module);
  machine().strings().set(second, 203, L"the second module's");
  machine().strings().set(second, 305, L"the second module's");
  AfxAddResourceModule(module);
  AfxAddResourceModule(second);
  EXPECT_EQ(AfxFindStringResourceHandle(203), module);
  EXPECT_EQ(AfxFindStringResourceHandle(305), second);
  EXPECT_EQ(AfxFindStringResourceHandle(104), module);
  AfxRemoveResourceModule(second);
  EXPECT_EQ(AfxFindStringResourceHandle(305), program);
}

TEST_F(ResourcesTest, AddsNothingWithoutMemory) {
  // The table has a size of its own, so it is filled until it must grow.
  std::vector<HINSTANCE> added;
  bool thrown = false;
  for (std::uintptr_t number = 1; !thrown && number < 100; ++number) {
    const auto handle = reinterpret_cast<HINSTANCE>(number * 16);
    added.push_back(handle);
    support::AllocFault fault(1);
    thrown = throws<CMemoryException>([&] { AfxAddResourceModule(handle); });
  }
  EXPECT_TRUE(thrown);
  machine().strings().set(added.back(), 305, L"of the module that was not added");
  EXPECT_EQ(AfxFindStringResourceHandle(305), program);
  for (const HINSTANCE handle : added) {
    AfxRemoveResourceModule(handle);
  }
}

#endif

}  // namespace
}  // namespace afxtest
