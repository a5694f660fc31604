// String resources: of the program and of modules added to the search. 101 is the program's, 102 is in both, 203 the
// module's.
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
    for (const UINT id : {101, 102}) {
      strings.set(program, id, L"the program's");
    }
    strings.set(program, 104, L"");
    for (const UINT id : {102, 203, 104}) {
      strings.set(module, id, L"the module's");
    }
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
  EXPECT_EQ(AfxFindStringResourceHandle(101), program);
  EXPECT_EQ(AfxFindStringResourceHandle(102), program);
  EXPECT_EQ(AfxFindStringResourceHandle(203), module);
  EXPECT_EQ(AfxFindStringResourceHandle(999), program);
#ifndef _WIN32
  // Modules in their order, and none for an empty string.
  const auto second = reinterpret_cast<HINSTANCE>(&module);
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
