#include <support/entrypoints.h>

#include "fixture.h"

namespace registry {
namespace {

const std::wstring kKey = L"vlRegDeleteKey";

class Delete : public RegistryTest {
 protected:
  // The records of a walk, each with the name of vlRegDeleteSubKey before it.
  static Lines walk(const std::vector<std::wstring>& lines, const Lines& more = {}) {
    Lines all;
    for (const std::wstring& line : lines) {
      all.emplace_back(line.starts_with(L" : ret") ? TXLOG_EXIT : TXLOG_TRACE, L"vlRegDeleteSubKey" + line);
    }
    all.insert(all.end(), more.begin(), more.end());
    return all;
  }
};

TEST_F(Delete, Value) {
  const std::wstring here = path();
  const std::wstring name = L"vlRegDeleteValue";
  expectSectionTestedFirst(name, [](DWORD section) { return vlRegDeleteValue(kRoot, nullptr, nullptr, section); });
  const auto expect = [&](int result, const wchar_t* key, const wchar_t* value, const std::wstring& line) {
    EXPECT_EQ(vlRegDeleteValue(kRoot, key, value, KEY_WOW64_32KEY), result);
    EXPECT_TRUE(tracedOnce(name, result, line));
  };
  expect(-3, nullptr, L"v", L" : pszKey or pszValueName is NULL");
  expect(-3, here.c_str(), nullptr, L" : pszKey or pszValueName is NULL");
  Key::create(here, KEY_WOW64_64KEY).set(L"v", REG_DWORD, {1});
  expect(-1, here.c_str(), L"v", L" : RegOpenKeyEx failed 0x2");
  const Key key = Key::create(here, KEY_WOW64_32KEY);
  expect(-1, here.c_str(), L"v", L" : RegDeleteValue returns 0x2");
  key.set(nullptr, REG_DWORD, {1});
  expect(0, here.c_str(), L"", L" : RegDeleteValue returns 0x0");
  EXPECT_FALSE(key.stored(nullptr));
  EXPECT_TRUE(Key(here, KEY_WOW64_64KEY).stored(L"v"));
}

// Stand for what the platform does not have under these names.
std::wstring made;
LONG treeCode, keyCode;
LONG WINAPI deleteKeyEx(HKEY, LPCWSTR, REGSAM view, DWORD reserved) {
  made += L"RegDeleteKeyEx " + hex(view) + L" " + std::to_wstring(reserved);
  return keyCode;
}
LONG WINAPI deleteTree(HKEY, LPCWSTR) {
  made += L"RegDeleteTree ";
  return treeCode;
}
template <class Function>
support::EntryPoint entryPoint(const char* name, Function* function) {
  return {name, reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function))};
}

TEST_F(Delete, KeyByTheEntryPointsThatAreFound) {
  const auto line = [](const wchar_t* rest) { return std::pair{int{TXLOG_TRACE}, kKey + rest}; };
  const Lines walked =
      walk({L" : RegDeleteKey returns 0x0", L" : ret=(0)"}, {line(L" : vlRegDeleteSubKey returns 0x0")});
  const auto ex0 = line(L" : RegDeleteKeyEx returns 0x0");
  const auto ex5 = line(L" : RegDeleteKeyEx returns 0x5");
  const struct {
    bool found, tree, flag;
    LONG treeCode, keyCode;
    int result;
    Lines lines;
  } rows[] = {
      {true, true, false, 0, 0, 0, {ex0}},
      {true, false, false, 0, 5, -1, {ex5}},
      {true, true, true, 5, 0, 0, {line(L" : RegDeleteTree returns 0x5"), ex0}},
      {true, true, true, 0, 5, -1, {line(L" : RegDeleteTree returns 0x0"), ex5}},
      {true, false, true, 0, 5, 0, walked},
      {false, true, true, 5, 5, 0, walked},
      {false, true, false, 5, 5, 0, {line(L" : RegDeleteKey returns 0x0")}},
  };
  for (const DWORD section : kSections) {
    for (const auto& row : rows) {
      create(L"");
      made.clear();
      std::tie(treeCode, keyCode) = std::pair(row.treeCode, row.keyCode);
      const support::EntryPoints points(L"Advapi32.dll",
                                        {entryPoint("RegDeleteKeyEx", row.found ? &deleteKeyEx : nullptr),
                                         entryPoint("RegDeleteTree", row.tree ? &deleteTree : nullptr)});
      EXPECT_EQ(vlRegDeleteKey(kRoot, path().c_str(), row.flag, section), row.result);
      EXPECT_TRUE(logged(framed(kKey, row.result, row.lines)));
      const std::wstring byKey = L"RegDeleteKeyEx " + hex(section == 0 ? KEY_WOW64_32KEY : section) + L" 0";
      const bool byTree = row.flag && row.tree, called = row.found && (!row.flag || row.tree);
      EXPECT_EQ(made, called ? (byTree ? L"RegDeleteTree " + byKey : byKey) : L"");
      EXPECT_EQ(static_cast<bool>(Key(path())), called);  // the stand-ins delete nothing
    }
  }
}

TEST_F(Delete, KeyFails) {
  expectSectionTestedFirst(kKey, [](DWORD section) { return vlRegDeleteKey(kRoot, nullptr, true, section); });
  EXPECT_EQ(vlRegDeleteKey(kRoot, nullptr, true, 0), -3);
  EXPECT_TRUE(tracedOnce(kKey, -3, L" : pszKey is NULL"));
  EXPECT_EQ(vlRegDeleteKey(kRoot, kMissing, true, 0), -1);
  EXPECT_TRUE(logged(framed(kKey, -1,
                            walk({L" : RegOpenKeyEx failed 0x2", L" : ret=(-1)"},
                                 {{TXLOG_TRACE, kKey + L" : vlRegDeleteSubKey returns 0xffffffff"}}))));
  create(L"a");
  // A flag that another language made is set only if it is 1.
  using Raw = int (*)(HKEY, LPCWSTR, unsigned char, DWORD);
  const auto raw = reinterpret_cast<Raw>(reinterpret_cast<void*>(&vlRegDeleteKey));
  for (const unsigned char notSet : {0, 2, 0xff}) {
    EXPECT_EQ(raw(kRoot, path().c_str(), notSet, 0), -1);
    EXPECT_TRUE(tracedOnce(kKey, -1, L" : RegDeleteKey returns 0x5"));
  }
  EXPECT_TRUE(Key(path(L"a")));
}

TEST_F(Delete, WalksDepthFirst) {
  for (const bool withKey : {true, false}) {
    create(L"a\\b\\c");
    create(L"a\\d");
    EXPECT_EQ(vlRegDeleteSubKey(kRoot, path(L"a").c_str(), KEY_WOW64_32KEY, withKey), 0);
    EXPECT_TRUE(logged(walk({L" : RegDeleteKey returns 0x0", L" : ret=(0)", L" : ret=(0)",      // c, b
                             L" : RegDeleteKey returns 0x0", L" : ret=(0)", L" : ret=(0)"})));  // d, a
    EXPECT_EQ(static_cast<bool>(Key(path(L"a"))), !withKey);
    EXPECT_FALSE(Key(path(L"a\\b")) || Key(path(L"a\\d")));
  }
  EXPECT_EQ(vlRegDeleteSubKey(kRoot, path(L"a").c_str(), 0, false), 0);
  EXPECT_TRUE(logged(walk({L" : ret=(0)"})));
  EXPECT_EQ(vlRegDeleteSubKey(kRoot, kMissing, 0, false), -1);
  EXPECT_TRUE(logged(walk({L" : RegOpenKeyEx failed 0x2", L" : ret=(-1)"})));
  EXPECT_EQ(vlRegDeleteSubKey(kRoot, path().c_str(), 0x300, true), -3);
  EXPECT_TRUE(logged({{TXLOG_ERROR, L"vlRegDeleteSubKey : Desired registry section incorrect (0x300)"},
                      {TXLOG_EXIT, L"vlRegDeleteSubKey : ret=(-3)"}}));
}

// Below the key are a, b and c, and the path of b has no room. With one character less it has.
TEST_F(Delete, AChildThatCannotBeDeletedStopsTheWalk) {
  std::wstring deep(200, L'k');
  deep += L"\\" + deep + L"\\" + deep;
  deep += L"\\" + std::wstring(769 - path(deep).size(), L'k');
  const std::wstring b(9, L'b');
  create(deep + L"\\" + b.substr(1));
  EXPECT_EQ(vlRegDeleteSubKey(kRoot, path(deep).c_str(), 0, true), 0);  // 779 characters
  log.take();
  for (const bool withKey : {false, true}) {
    create(deep + L"\\a");
    create(deep + L"\\" + b);
    create(deep + L"\\c");
    EXPECT_EQ(vlRegDeleteSubKey(kRoot, path(deep).c_str(), 0, withKey), withKey ? -1 : 0);
    EXPECT_TRUE(logged(walk({L" : RegDeleteKey returns 0x0", L" : ret=(0)"},
                            {{TXLOG_ERROR, L"vlRegDeleteSubKey : no room for the path of subkey " + b},
                             {TXLOG_EXIT, std::wstring(L"vlRegDeleteSubKey : ret=(") + (withKey ? L"-1)" : L"0)")}})));
    EXPECT_TRUE(!Key(path(deep + L"\\a")) && Key(path(deep + L"\\" + b)) && Key(path(deep + L"\\c")));
  }
}

}  // namespace
}  // namespace registry
