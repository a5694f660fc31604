// Platform calls that fail at the same place again and again. Native only.
#include "fixture.h"

namespace registry {
namespace {

using vlplatform::FaultSpan;

class Sweep : public RegistryTest {
 protected:
  void prepare() {
    const Key key = Key::create(path());
    for (const wchar_t* const name : {L"d", L"s", L"m", L"b"}) {
      key.set(name, REG_BINARY, {1});
    }
    create(L"a\\b");
    create(L"c");
    log.take();
  }

  int count = 9;
};

// A subkey that the platform refuses to delete ends the walk of its parent, and the failure goes up the chain.
TEST_F(Sweep, AChildThatIsRefusedStays) {
  prepare();
  machine().registry().deny(kRoot, path() + L"\\a\\b", DELETE);
  EXPECT_EQ(vlRegDeleteSubKey(kRoot, path().c_str(), 0, true), -1);
  log.take();
  EXPECT_EQ(vlRegDeleteSubKey(kRoot, path().c_str(), 0, false), 0);
  const std::wstring exits[] = {L"-1", L"-1", L"0"};
  const auto records = log.take();
  ASSERT_EQ(records.size(), std::size(exits));
  for (std::size_t i = 0; i < records.size(); ++i) {
    EXPECT_EQ(records[i].text, L"vlRegDeleteSubKey : ret=(" + exits[i] + L")");
  }
  machine().registry().deny(kRoot, path() + L"\\a\\b", 0);
  EXPECT_TRUE(Key(path() + L"\\a\\b") && Key(path() + L"\\c"));
  EXPECT_EQ(vlRegDeleteSubKey(kRoot, path().c_str(), 0, true), 0);
}

// A count ends although the platform fails at every index; what can't be read is counted while something follows.
TEST_F(Sweep, AnEndlessCountEnds) {
  prepare();
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
