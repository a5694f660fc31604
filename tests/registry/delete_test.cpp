#include <support/entrypoints.h>

#include "fixture.h"

namespace registry {
namespace {

class Delete : public RegistryTest {
 protected:
  void expectLines(int result, const std::wstring& name, const Lines& inner) {
    EXPECT_TRUE(logged(framed(name, result, inner)));
  }
  // The records of a walk: each line is that of vlRegDeleteSubKey.
  static Lines subKeyLines(const std::vector<std::wstring>& lines) {
    Lines all;
    for (const std::wstring& line : lines) {
      all.emplace_back(TXLOG_TRACE + (line[3] == L'r' ? TXLOG_EXIT - TXLOG_TRACE : 0), L"vlRegDeleteSubKey" + line);
    }
    return all;
  }
};

const std::wstring kValue = L"vlRegDeleteValue";
const std::wstring kKey = L"vlRegDeleteKey";

TEST_F(Delete, Value) {
  const std::wstring here = path();
  for (const DWORD section : kBadSections) {
    EXPECT_EQ(vlRegDeleteValue(kRoot, nullptr, nullptr, section), -3);
    expectLines(-3, kValue, badSection(kValue, section));
  }
  const auto expect = [&](int result, const wchar_t* key, const wchar_t* value, const std::wstring& line) {
    EXPECT_EQ(vlRegDeleteValue(kRoot, key, value, KEY_WOW64_32KEY), result);
    expectLines(result, kValue, {{TXLOG_TRACE, kValue + line}});
  };
  expect(-3, nullptr, L"v", L" : pszKey or pszValueName is NULL");
  expect(-3, here.c_str(), nullptr, L" : pszKey or pszValueName is NULL");
  expect(-1, here.c_str(), L"v", L" : RegOpenKeyEx failed 0x2");
  const Key other = Key::create(here, KEY_WOW64_64KEY);
  other.set(L"v", REG_DWORD, {1});
  const Key key = Key::create(here, KEY_WOW64_32KEY);
  expect(-1, here.c_str(), L"v", L" : RegDeleteValue returns 0x2");
  key.set(L"v", REG_DWORD, {1});
  key.set(nullptr, REG_DWORD, {1});
  expect(0, here.c_str(), L"v", L" : RegDeleteValue returns 0x0");
  expect(0, here.c_str(), L"", L" : RegDeleteValue returns 0x0");
  EXPECT_FALSE(key.stored(L"v") || key.stored(nullptr));
  EXPECT_TRUE(other.stored(L"v"));
}

// Stand for what the platform does not have under these names.
struct Calls {
  std::vector<std::wstring> made;
  LONG treeCode = 0;
  LONG keyCode = 0;
} calls;
LONG WINAPI deleteKeyEx(HKEY, LPCWSTR, REGSAM view, DWORD reserved) {
  calls.made.push_back(L"RegDeleteKeyEx " + hex(view) + L" " + std::to_wstring(reserved));
  return calls.keyCode;
}
LONG WINAPI deleteTree(HKEY, LPCWSTR) {
  calls.made.push_back(L"RegDeleteTree");
  return calls.treeCode;
}
template <class Function>
support::EntryPoint entryPoint(const char* name, Function* function) {
  return {name, reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function))};
}

TEST_F(Delete, KeyByTheEntryPointsThatAreFound) {
  const Lines keyGone = {{TXLOG_TRACE, L"vlRegDeleteKey : RegDeleteKeyEx returns 0x0"}};
  const Lines keyFails = {{TXLOG_TRACE, L"vlRegDeleteKey : RegDeleteKeyEx returns 0x5"}};
  const auto afterTree = [](const wchar_t* code, const Lines& keyLine) {
    return Lines{{TXLOG_TRACE, std::wstring(L"vlRegDeleteKey : RegDeleteTree returns ") + code}, keyLine[0]};
  };
  Lines walked = subKeyLines({L" : RegDeleteKey returns 0x0", L" : ret=(0)"});
  walked.emplace_back(TXLOG_TRACE, L"vlRegDeleteKey : vlRegDeleteSubKey returns 0x0");
  const struct {
    bool found, tree, flag;
    LONG treeCode, keyCode;
    int result;
    std::vector<std::wstring> made;  // the view stands where the "v" is
    Lines lines;
  } rows[] = {
      {true, true, false, 0, 0, 0, {L"RegDeleteKeyEx v 0"}, keyGone},
      {true, false, false, 0, 5, -1, {L"RegDeleteKeyEx v 0"}, keyFails},
      {true, true, true, 5, 0, 0, {L"RegDeleteTree", L"RegDeleteKeyEx v 0"}, afterTree(L"0x5", keyGone)},
      {true, true, true, 0, 5, -1, {L"RegDeleteTree", L"RegDeleteKeyEx v 0"}, afterTree(L"0x0", keyFails)},
      {true, false, true, 0, 5, 0, {}, walked},
      {false, true, true, 5, 5, 0, {}, walked},
      {false, true, false, 5, 5, 0, {}, {{TXLOG_TRACE, L"vlRegDeleteKey : RegDeleteKey returns 0x0"}}},
  };
  for (const DWORD section : kSections) {
    for (const auto& row : rows) {
      create(L"");
      calls = {{}, row.treeCode, row.keyCode};
      {
        const support::EntryPoints points(L"Advapi32.dll",
                                          {entryPoint("RegDeleteKeyEx", row.found ? &deleteKeyEx : nullptr),
                                           entryPoint("RegDeleteTree", row.tree ? &deleteTree : nullptr)});
        EXPECT_EQ(vlRegDeleteKey(kRoot, path().c_str(), row.flag, section), row.result);
      }
      expectLines(row.result, kKey, row.lines);
      std::vector<std::wstring> made = row.made;
      if (!made.empty()) {
        made.back().replace(made.back().find(L'v'), 1, hex(section == 0 ? KEY_WOW64_32KEY : section));
      }
      EXPECT_EQ(calls.made, made);
      EXPECT_EQ(static_cast<bool>(Key(path())), !made.empty());  // the stand-ins delete nothing
    }
  }
}

TEST_F(Delete, KeyFails) {
  for (const DWORD section : kBadSections) {
    EXPECT_EQ(vlRegDeleteKey(kRoot, nullptr, true, section), -3);
    expectLines(-3, kKey, badSection(kKey, section));
  }
  EXPECT_EQ(vlRegDeleteKey(kRoot, nullptr, true, 0), -3);
  expectLines(-3, kKey, {{TXLOG_TRACE, kKey + L" : pszKey is NULL"}});
  EXPECT_EQ(vlRegDeleteKey(kRoot, kMissing, true, 0), -1);
  Lines missing = subKeyLines({L" : RegOpenKeyEx failed 0x2", L" : ret=(-1)"});
  missing.emplace_back(TXLOG_TRACE, kKey + L" : vlRegDeleteSubKey returns 0xffffffff");
  expectLines(-1, kKey, missing);
  create(L"a");
  // A flag that another language made is set only if it is 1.
  using Raw = int (*)(HKEY, LPCWSTR, unsigned char, DWORD);
  const auto raw = reinterpret_cast<Raw>(reinterpret_cast<void*>(&vlRegDeleteKey));
  for (const unsigned char notSet : {0, 2, 0xfe, 0xff}) {
    EXPECT_EQ(raw(kRoot, path().c_str(), notSet, 0), -1);
    expectLines(-1, kKey, {{TXLOG_TRACE, kKey + L" : RegDeleteKey returns 0x5"}});
  }
  EXPECT_TRUE(Key(path(L"a")));
}

TEST_F(Delete, WalksDepthFirst) {
  // a\b\c and a\d: c goes before b, b and d before a.
  const std::vector<std::wstring> below = {L" : RegDeleteKey returns 0x0", L" : ret=(0)", L" : ret=(0)",
                                           L" : RegDeleteKey returns 0x0", L" : ret=(0)"};
  std::vector<std::wstring> whole = below;
  whole.push_back(L" : ret=(0)");
  for (const bool withKey : {true, false}) {
    create(L"a\\b\\c");
    create(L"a\\d");
    EXPECT_EQ(vlRegDeleteSubKey(kRoot, path(L"a").c_str(), KEY_WOW64_32KEY, withKey), 0);
    EXPECT_TRUE(logged(subKeyLines(whole)));
    EXPECT_EQ(static_cast<bool>(Key(path(L"a"))), !withKey);
    EXPECT_FALSE(Key(path(L"a\\b")) || Key(path(L"a\\d")));
  }
  EXPECT_EQ(vlRegDeleteSubKey(kRoot, path(L"a").c_str(), 0, false), 0);
  EXPECT_TRUE(logged(subKeyLines({L" : ret=(0)"})));
  EXPECT_EQ(vlRegDeleteSubKey(kRoot, kMissing, 0, false), -1);
  EXPECT_TRUE(logged(subKeyLines({L" : RegOpenKeyEx failed 0x2", L" : ret=(-1)"})));
  EXPECT_EQ(vlRegDeleteSubKey(kRoot, path().c_str(), 0x300, true), -3);
  Lines refused = badSection(L"vlRegDeleteSubKey", 0x300);
  refused.emplace_back(TXLOG_EXIT, L"vlRegDeleteSubKey : ret=(-3)");
  EXPECT_TRUE(logged(refused));
}

// Of a, b and c below the key, b can't be deleted: its path has no room. One character less is room enough.
TEST_F(Delete, AChildThatCannotBeDeletedStopsTheWalk) {
  std::wstring deep;
  while (path(deep).size() < 700) {
    deep += std::wstring(deep.empty() ? L"" : L"\\") + std::wstring(60, L'k');
  }
  deep += L"\\" + std::wstring(770 - path(deep).size() - 1, L'k');
  ASSERT_EQ(path(deep).size(), 770u);
  create(deep + L"\\b" + std::wstring(7, L'b'));
  EXPECT_EQ(vlRegDeleteSubKey(kRoot, path(deep).c_str(), 0, true), 0);  // 779 characters
  log.take();
  const std::wstring name(9, L'b');
  for (const bool withKey : {false, true}) {
    for (const std::wstring& child : {std::wstring(L"a"), name, std::wstring(L"c")}) {
      create(deep + L"\\" + child);
    }
    EXPECT_EQ(vlRegDeleteSubKey(kRoot, path(deep).c_str(), 0, withKey), withKey ? -1 : 0);
    Lines lines =
        subKeyLines({L" : RegDeleteKey returns 0x0", L" : ret=(0)", withKey ? L" : ret=(-1)" : L" : ret=(0)"});
    lines.insert(lines.begin() + 2, {TXLOG_ERROR, L"vlRegDeleteSubKey : no room for the path of subkey " + name});
    EXPECT_TRUE(logged(lines));
    EXPECT_TRUE(!Key(path(deep + L"\\a")) && Key(path(deep + L"\\" + name)) && Key(path(deep + L"\\c")));
  }
}

}  // namespace
}  // namespace registry
