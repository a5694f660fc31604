#include "fixture.h"

namespace registry {
namespace {

constexpr DWORD kAll = 0xFFFFFFFF;

// Both functions, the parameter tells which.
class List : public RegistryTest, public testing::WithParamInterface<bool> {
 protected:
  static constexpr int kSlots = 4;

  void add(const std::wstring& element, DWORD view = 0) {
    if (values) {
      Key::create(path(), view).set(element.c_str(), REG_DWORD, Bytes(4));
    } else {
      Key::create(path(element), view);
    }
  }
  int call(const wchar_t* key, bool slots, int* number, DWORD section, DWORD filter = kAll) {
    entries.refill();
    names.refill();
    return values ? vlRegListValueNamesEx(kRoot, key, slots ? entries.data() : nullptr, number, filter, section)
                  : vlRegListKeysEx(kRoot, key, slots ? names.data() : nullptr, number, section);
  }
  // The slots one by one, "-" where nothing was stored.
  std::wstring stored() const {
    EXPECT_TRUE(entries.guardsIntact() && names.guardsIntact());
    std::wstring all;
    for (int i = 0; i < kSlots; ++i) {
      const wchar_t* const slot = values ? entries.data()[i].szName : names.data() + 255 * i;
      all += (static_cast<unsigned char>(*slot) == 0xbd ? L"-" : slot) + std::wstring(L",");
    }
    return all;
  }
  testing::AssertionResult loggedLine(int result, int level, const std::wstring& line) {
    return logged(framed(name, result, line.empty() ? Lines() : Lines{{level, line}}));
  }

  const bool values = GetParam();
  const std::wstring name = values ? L"vlRegListValueNamesEx" : L"vlRegListKeysEx";
  const std::wstring limit = name + (values ? L": Max number of value reached" : L": max number of subkey reached");
  support::GuardedBuffer<RegValueEntry> entries{kSlots};
  support::GuardedBuffer<WCHAR> names{255 * kSlots};
  int count = 77;
};

TEST_P(List, RefusesArgumentsInTheirOrder) {
  for (const DWORD section : kBadSections) {
    EXPECT_EQ(call(nullptr, false, nullptr, section), -3);
    EXPECT_TRUE(logged(framed(name, -3, badSection(name, section))));
  }
  EXPECT_EQ(call(nullptr, true, nullptr, 0), -3);
  EXPECT_TRUE(loggedLine(-3, TXLOG_TRACE, name + L" : pszKey is NULL"));
  EXPECT_EQ(call(kMissing, true, nullptr, 0), -3);
  EXPECT_TRUE(loggedLine(-3, TXLOG_TRACE, name + (values ? L" : pnValueCount" : L" : pnSubKeyCount") + L" is NULL"));
}

TEST_P(List, FailsWithoutTheKeyAndOnAnEmptyOne) {
  create(L"");
  for (const bool slots : {true, false}) {
    EXPECT_EQ(call(kMissing, slots, &count, 0), -1);
    EXPECT_TRUE(loggedLine(-1, slots ? TXLOG_ERROR : TXLOG_TRACE, L"RegOpenKeyEx failed with error code 0x2"));
    EXPECT_EQ(call(path().c_str(), slots, &count, 0), -1);
    EXPECT_TRUE(
        loggedLine(-1, TXLOG_ERROR,
                   (values ? L"RegEnumValue" : L"RegEnumKeyEx") + std::wstring(L" failed with error code 0x103")));
    EXPECT_EQ(stored(), L"-,-,-,-,");
    EXPECT_EQ(count, 77);
  }
}

TEST_P(List, WalksUpToTheMaximum) {
  for (const wchar_t* const element : {L"a", L"b", L"c"}) {
    add(element);
  }
  const struct {
    int maximum;
    bool slots;
    int count;
    bool limited;
    const wchar_t* stored;
  } rows[] = {{4, true, 3, false, L"a,b,c,-,"}, {3, true, 3, false, L"a,b,c,-,"}, {2, true, 2, true, L"a,b,-,-,"},
              {0, true, 0, true, L"-,-,-,-,"},  {-7, true, 0, true, L"-,-,-,-,"}, {-7, false, 3, false, L"-,-,-,-,"},
              {1, false, 3, false, L"-,-,-,-,"}};
  for (const auto& row : rows) {
    count = row.maximum;
    EXPECT_EQ(call(path().c_str(), row.slots, &count, 0, row.slots ? kAll : DWORD{REG_SZ}), 0);
    EXPECT_EQ(count, row.count) << row.maximum;
    EXPECT_EQ(stored(), row.stored) << row.maximum;
    EXPECT_TRUE(loggedLine(0, TXLOG_TRACE, row.limited ? limit : L""));
  }
}

TEST_P(List, ListsTheViewThatIsAskedFor) {
  add(L"x", KEY_WOW64_64KEY);
  add(L"y", KEY_WOW64_32KEY);
  for (const DWORD section : kSections) {
    count = kSlots;
    EXPECT_EQ(call(path().c_str(), true, &count, section), 0);
    EXPECT_EQ(stored(), section == KEY_WOW64_32KEY ? L"y,-,-,-," : L"x,-,-,-,");
  }
  log.take();
  EXPECT_EQ(values ? vlRegListValueNames(kRoot, path().c_str(), nullptr, &count, 0)
                   : vlRegListKeys(kRoot, path().c_str(), nullptr, &count),
            0);
  EXPECT_TRUE(loggedLine(0, TXLOG_TRACE, L""));
}

TEST_P(List, ANameWithoutRoomIsOneMoreEntryWithoutAName) {
  const std::wstring fits(values ? 259 : 254, L'b');
  add(L"a");
  add(fits);
  add(fits + L"b");
  add(L"c");
  count = kSlots;
  EXPECT_EQ(call(path().c_str(), true, &count, 0), 0);
  EXPECT_EQ(stored(), L"a," + fits + L",,c,");
  EXPECT_EQ(count, 4);
  EXPECT_TRUE(!values || (entries.data()[2].dwType == REG_NONE && entries.data()[3].dwType == REG_DWORD));
  EXPECT_EQ(call(path().c_str(), false, &count, 0), 0);
  EXPECT_EQ(count, 4);
}

TEST_P(List, AFilterLeavesHoles) {
  if (values) {
    const Key key = Key::create(path());
    key.set(L"a", REG_SZ, {});
    key.set(L"b", REG_DWORD, {});
    key.set(L"c", REG_SZ, {});
    count = kSlots;
    EXPECT_EQ(call(path().c_str(), true, &count, 0, REG_SZ), 0);
    EXPECT_EQ(stored(), L"a,-,c,-,");
    EXPECT_EQ(entries.data()[2].dwType, DWORD{REG_SZ});
    EXPECT_EQ(count, 3);
  }
}

INSTANTIATE_TEST_SUITE_P(ValuesAndKeys, List, testing::Bool());

}  // namespace
}  // namespace registry
