#include "fixture.h"

namespace registry {
namespace {

constexpr DWORD kAll = 0xFFFFFFFF;

// Both functions, the parameter tells which.
class List : public RegistryTest, public testing::WithParamInterface<bool> {
 protected:
  static constexpr std::size_t kSlots = 4;

  void add(const std::wstring& element, DWORD view = 0, DWORD type = REG_DWORD) const {
    Key::create(values ? path() : path(element), view).set(values ? element.c_str() : nullptr, type, {});
  }
  int call(const wchar_t* key, bool slots, int* number, DWORD section = 0, DWORD filter = kAll) {
    return values ? vlRegListValueNamesEx(kRoot, key, slots ? entries.data() : nullptr, number, filter, section)
                  : vlRegListKeysEx(kRoot, key, slots ? names.data() : nullptr, number, section);
  }
  // Lists the test's key with a maximum; the slots one by one, "-" where nothing was stored, and the count.
  std::wstring list(int maximum, bool slots = true, DWORD section = 0, DWORD filter = kAll) {
    entries.refill();
    names.refill();
    EXPECT_EQ(call(path().c_str(), slots, &maximum, section, filter), 0);
    EXPECT_TRUE(entries.guardsIntact() && names.guardsIntact());
    std::wstring all;
    for (std::size_t i = 0; i < kSlots; ++i) {
      const wchar_t* const slot = values ? entries.data()[i].szName : names.data() + 255 * i;
      all += (static_cast<unsigned char>(*slot) == 0xbd ? L"-" : slot) + std::wstring(L",");
    }
    return all + std::to_wstring(maximum);
  }

  const bool values = GetParam();
  const std::wstring name = values ? L"vlRegListValueNamesEx" : L"vlRegListKeysEx";
  const std::wstring enumeration = values ? L"RegEnumValue" : L"RegEnumKeyEx";
  support::GuardedBuffer<RegValueEntry> entries{kSlots};
  support::GuardedBuffer<WCHAR> names{255 * kSlots};
};

TEST_P(List, FailsAndLeavesTheOutputs) {
  expectSectionTestedFirst(name, [&](DWORD section) { return call(nullptr, false, nullptr, section); });
  EXPECT_EQ(call(nullptr, true, nullptr), -3);
  EXPECT_TRUE(tracedOnce(name, -3, L" : pszKey is NULL"));
  EXPECT_EQ(call(kMissing, true, nullptr), -3);
  EXPECT_TRUE(tracedOnce(name, -3, values ? L" : pnValueCount is NULL" : L" : pnSubKeyCount is NULL"));
  create(L"");
  int count = 77;
  for (const bool slots : {true, false}) {
    EXPECT_EQ(call(kMissing, slots, &count), -1);
    const std::wstring code = L" failed with error code 0x";
    EXPECT_TRUE(logged(framed(name, -1, {{slots ? TXLOG_ERROR : TXLOG_TRACE, L"RegOpenKeyEx" + code + L"2"}})));
    EXPECT_EQ(call(path().c_str(), slots, &count), -1);
    EXPECT_TRUE(logged(framed(name, -1, {{TXLOG_ERROR, enumeration + code + L"103"}})));
  }
  EXPECT_TRUE(entries.untouched() && names.untouched());
  EXPECT_EQ(count, 77);
}

TEST_P(List, WalksUpToTheMaximum) {
  add(L"a");
  add(L"b");
  add(L"c");
  for (const auto& [maximum, expected, limited] : {std::tuple{4, L"a,b,c,-,3", false},
                                                   {3, L"a,b,c,-,3", false},
                                                   {2, L"a,b,-,-,2", true},
                                                   {0, L"-,-,-,-,0", true},
                                                   {-7, L"-,-,-,-,0", true}}) {
    log.take();
    EXPECT_EQ(list(maximum), expected);
    EXPECT_EQ(log.records().size(), limited ? 3u : 2u);
    EXPECT_TRUE(!limited ||
                tracedOnce(name, 0, values ? L": Max number of value reached" : L": max number of subkey reached"));
    EXPECT_EQ(list(maximum, false, 0, REG_SZ), L"-,-,-,-,3");
  }
}

TEST_P(List, ListsTheViewThatIsAskedFor) {
  add(L"x", support::kOwnView);
  add(L"y", support::kOtherView);
  for (const DWORD section : kSections) {
    EXPECT_EQ(list(4, true, section), section == support::kOtherView ? L"y,-,-,-,1" : L"x,-,-,-,1");
  }
  log.take();
  int count = 4;
  EXPECT_EQ(values ? vlRegListValueNames(kRoot, path().c_str(), entries.data(), &count, REG_SZ)
                   : vlRegListKeys(kRoot, path().c_str(), names.data(), &count),
            0);
  EXPECT_TRUE(logged(framed(name, 0, {})));
  EXPECT_EQ(count, 1);
}

TEST_P(List, ANameWithoutRoomIsOneMoreEntryWithoutAName) {
  const std::wstring fits(values ? 259 : 254, L'b');
  add(L"a");
  add(fits);
  add(fits + L"b");
  add(L"c", 0, REG_SZ);
  EXPECT_EQ(list(4), L"a," + fits + L",,c,4");
  EXPECT_TRUE(!values || (entries.data()[2].dwType == REG_NONE && entries.data()[3].dwType == REG_SZ));
  EXPECT_EQ(list(4, false), L"-,-,-,-,4");
  EXPECT_TRUE(!values || list(4, true, 0, REG_SZ) == L"-,-,-,c,4");  // a filter leaves holes
}

INSTANTIATE_TEST_SUITE_P(ValuesAndKeys, List, testing::Bool());

}  // namespace
}  // namespace registry
