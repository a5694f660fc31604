// String resources: of the program and of modules added to the search. 102 is in both, 203 the module's.
#include <vlafx/resources.h>

#include <support/machinetest.h>

#include <gtest/gtest.h>

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

TEST_F(ResourcesTest, SearchesTheProgramThenTheModules) {
  EXPECT_EQ(AfxFindStringResourceHandle(203), program);
  AfxAddResourceModule(module);
  AfxAddResourceModule(module);
  EXPECT_EQ(AfxFindStringResourceHandle(102), program);
  EXPECT_EQ(AfxFindStringResourceHandle(203), module);
#ifndef _WIN32
  // Modules in their order, and none for an empty string.
  auto* const second = reinterpret_cast<HINSTANCE>(&module);
  machine().strings().set(second, 203, L"the second module's");
  machine().strings().set(second, 305, L"the second module's");
  AfxAddResourceModule(second);
  EXPECT_EQ(AfxFindStringResourceHandle(203), module);
  EXPECT_EQ(AfxFindStringResourceHandle(305), second);
  EXPECT_EQ(AfxFindStringResourceHandle(104), module);
  AfxRemoveResourceModule(second);
  EXPECT_EQ(AfxFindStringResourceHandle(305), program);
#endif
  AfxRemoveResourceModule(module);  // once is enough for two additions
  EXPECT_EQ(AfxFindStringResourceHandle(203), program);
}

}  // namespace
}  // namespace afxtest
