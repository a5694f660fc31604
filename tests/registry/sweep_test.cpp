// Platform calls that fail at the same place again and again. Native only.
#include "fixture.h"

namespace registry {
namespace {

using vlplatform::FaultSpan;

using Sweep = RegistryTest;

// A subkey that the platform refuses to delete ends the walk of its parent, and the failure goes up the chain.
TEST_F(Sweep, AChildThatIsRefusedStays) {
  create(L"a\\b");
  create(L"c");
  machine().registry().deny(kRoot, path() + L"\\a\\b", DELETE);
  EXPECT_EQ(vlRegDeleteSubKey(kRoot, path().c_str(), 0, true), -1);
  log.take();
  EXPECT_EQ(vlRegDeleteSubKey(kRoot, path().c_str(), 0, false), 0);
  const std::wstring exit = L"vlRegDeleteSubKey : ret=(";
  EXPECT_TRUE(logged({{TXLOG_EXIT, exit + L"-1)"}, {TXLOG_EXIT, exit + L"-1)"}, {TXLOG_EXIT, exit + L"0)"}}));
  machine().registry().deny(kRoot, path() + L"\\a\\b", 0);
  EXPECT_TRUE(Key(path() + L"\\a\\b") && Key(path() + L"\\c"));
  EXPECT_EQ(vlRegDeleteSubKey(kRoot, path().c_str(), 0, true), 0);
}

// A count ends although the platform fails at every index; what can't be read is counted while something follows.
TEST_F(Sweep, AnEndlessCountEnds) {
  int count = 9;
  for (const wchar_t* const name : {L"d", L"s", L"m", L"b"}) {
    Key::create(path()).set(name, REG_BINARY, {1});
  }
  faults().watch();
  faults().fail("RegEnumValueW", 3, FaultSpan::forEver);
  EXPECT_EQ(vlRegListValueNames(kRoot, path().c_str(), nullptr, &count, 0), 0);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(faults().calls("RegEnumValueW"), 2u + 0x10000);
  faults().watch();
  faults().fail("RegEnumValueW", 2);
  EXPECT_EQ(vlRegListValueNames(kRoot, path().c_str(), nullptr, &count, 0), 0);
  EXPECT_EQ(count, 4);
}

}  // namespace
}  // namespace registry
