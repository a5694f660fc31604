// The registry's functions: names, paths, rights, views, sizes, deletion.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <support/guardedbuffer.h>
#include <support/machinetest.h>

#include "registrydump.h"

namespace {

const HKEY kUntouchedKey = reinterpret_cast<HKEY>(0x77);

class RegistryTest : public support::MachineTest {
 protected:
  void TearDown() override {
    EXPECT_EQ(GetLastError(), support::kUntouchedError);
    MachineTest::TearDown();
  }
  static LSTATUS create(HKEY root, const std::wstring& path, REGSAM view = 0, DWORD options = 0) {
    HKEY key = nullptr;
    const LSTATUS code =
        RegCreateKeyExW(root, path.c_str(), 0, nullptr, options, KEY_READ | view, nullptr, &key, nullptr);
    EXPECT_EQ(key != nullptr, code == 0);
    return code == 0 ? RegCloseKey(key) : code;
  }
  static LSTATUS open(HKEY root, const std::wstring& path, REGSAM access = KEY_READ) {
    HKEY key = kUntouchedKey;
    const LSTATUS code = RegOpenKeyExW(root, path.c_str(), 0, access, &key);
    EXPECT_EQ(key != nullptr, code == 0);
    return code == 0 ? RegCloseKey(key) : code;
  }
  static HKEY opened(HKEY root, const std::wstring& path, REGSAM access = KEY_ALL_ACCESS) {
    HKEY key = nullptr;
    EXPECT_EQ(RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, access, nullptr, &key, nullptr), 0);
    return key;
  }
  static LSTATUS set(HKEY key, const wchar_t* name, DWORD type, const std::vector<BYTE>& data) {
    return RegSetValueExW(key, name, 0, type, data.data(), static_cast<DWORD>(data.size()));
  }
};

TEST_F(RegistryTest, PathsAndNames) {
  ASSERT_EQ(create(HKEY_CURRENT_USER, L"Software\\A\\\u00C4\u03A3\u0416"), 0);
  for (const auto& [path, code] : {std::pair(L"", 0),
                                   {L"Software\\\\A", 0},
                                   {L"SOFTWARE\\a\\\u00E4\u03C3\u0436", 0},
                                   {L"software\\A\\\u00E4\u03C2\u0436\\", 0},
                                   {L"SoftwareA", 2},
                                   {L"Software\\A\\\u00C5", 2},
                                   {L"Software\\A\\\u00C4\u03A3\u0416\\B", 2},
                                   {L"\\Software", 161}}) {
    EXPECT_EQ(open(HKEY_CURRENT_USER, path), code) << testing::PrintToString(path);
  }
  const std::wstring longest(255, L'x');
  EXPECT_EQ(create(HKEY_USERS, longest), 0);
  EXPECT_EQ(create(HKEY_USERS, longest + L"x"), 87);
  EXPECT_EQ(create(HKEY_USERS, L"new\\" + longest + L"x"), 87);
  EXPECT_EQ(create(HKEY_USERS, L"new\\a\nb"), 87);
  EXPECT_EQ(create(HKEY_USERS, std::wstring(L"new\\") + static_cast<wchar_t>(0xD800)), 87);
  EXPECT_EQ(open(HKEY_USERS, L"new"), 2);
  std::wstring deepest;
  while (deepest.size() / 2 < 512) deepest += L"d\\";
  EXPECT_EQ(create(HKEY_USERS, deepest), 0);
  EXPECT_EQ(create(HKEY_USERS, deepest + L"d"), 87);
  // Enumerated by name, in the case in which they were made.
  const HKEY key = opened(HKEY_USERS, L"order");
  for (const wchar_t* const name : {L"b", L"C", L"a", L"B", L"\u00E9"}) {
    EXPECT_EQ(create(key, name), 0);
  }
  std::wstring dump;
  registrydump::add(key, L"", dump);
  EXPECT_EQ(dump, L"\\a\n\\b\n\\C\n\\\u00E9\n");
  EXPECT_EQ(RegCloseKey(key), 0);
}

TEST_F(RegistryTest, Handles) {
  EXPECT_EQ(open(nullptr, L"x"), 6);
  for (const HKEY bad : {static_cast<HKEY>(nullptr), kUntouchedKey, reinterpret_cast<HKEY>(-1)}) {
    EXPECT_EQ(RegCloseKey(bad), 6);
    EXPECT_EQ(RegDeleteValueW(bad, L""), 6);
  }
  EXPECT_EQ(RegCloseKey(HKEY_LOCAL_MACHINE), 0);
  const HKEY first = opened(HKEY_CURRENT_USER, L"K");
  HKEY second = nullptr;
  EXPECT_EQ(RegOpenKeyExW(first, nullptr, 0, KEY_READ, &second), 0);
  EXPECT_NE(first, second);
  EXPECT_EQ(machine().counters().open(vlplatform::Resource::registryKey), 2);
  EXPECT_EQ(RegCloseKey(second), 0);
  EXPECT_EQ(RegCloseKey(second), 6);
  const HKEY reused = opened(HKEY_CURRENT_USER, L"K");
  EXPECT_EQ(RegDeleteValueW(second, L""), 6);
  // Both see the deletion; a new key of that name is another.
  EXPECT_EQ(RegDeleteKeyW(first, L""), 0);
  EXPECT_EQ(create(HKEY_CURRENT_USER, L"K"), 0);
  EXPECT_EQ(set(first, L"v", REG_BINARY, {1}), 1018);
  EXPECT_EQ(open(reused, L""), 1018);
  // A planned fault shows, and the handle goes.
  faults().fail("RegCloseKey", 1, vlplatform::FaultSpan::once, 4321);
  EXPECT_EQ(RegCloseKey(first), 4321);
  machine().registry().reset();
  EXPECT_EQ(open(reused, L""), 1018);
  EXPECT_EQ(RegCloseKey(reused), 0);
  EXPECT_EQ(open(HKEY_CURRENT_USER, L"K"), 2);
}

TEST_F(RegistryTest, RightsOfHandlesAndKeys) {
  ASSERT_EQ(create(HKEY_CURRENT_USER, L"K\\sub"), 0);
  const std::tuple<REGSAM, LSTATUS, LSTATUS, LSTATUS> rows[] = {
      {KEY_QUERY_VALUE, 2, 5, 5}, {KEY_SET_VALUE, 5, 0, 5},       {KEY_ENUMERATE_SUB_KEYS, 5, 5, 0},
      {GENERIC_READ, 2, 5, 0},    {MAXIMUM_ALLOWED, 2, 0, 0},     {KEY_CREATE_SUB_KEY, 5, 5, 5},
      {KEY_WRITE, 5, 0, 5},       {KEY_READ | KEY_WRITE, 2, 0, 0}};
  for (const auto& [access, query, write, enumerate] : rows) {
    const HKEY key = opened(HKEY_CURRENT_USER, L"K", access);
    wchar_t name[8];
    DWORD chars = 8;
    EXPECT_EQ(RegQueryValueExW(key, L"missing", nullptr, nullptr, nullptr, nullptr), query) << access;
    EXPECT_EQ(set(key, L"v", REG_BINARY, {}), write) << access;
    EXPECT_EQ(RegEnumKeyExW(key, 0, name, &chars, nullptr, nullptr, nullptr, nullptr), enumerate) << access;
    EXPECT_EQ(create(key, L"made"), 0);  // asked of the key, not of the handle
    EXPECT_EQ(RegCloseKey(key), 0);
  }
  vlplatform::Registry& registry = machine().registry();
  EXPECT_EQ(registry.deny(HKEY_CURRENT_USER, L"missing", KEY_WRITE), DWORD{ERROR_FILE_NOT_FOUND});
  EXPECT_EQ(registry.deny(HKEY_CURRENT_USER, L"k", KEY_SET_VALUE | KEY_CREATE_SUB_KEY | DELETE), 0u);
  EXPECT_EQ(open(HKEY_CURRENT_USER, L"K", KEY_READ), 0);
  EXPECT_EQ(open(HKEY_CURRENT_USER, L"K", KEY_SET_VALUE), 5);
  EXPECT_EQ(create(HKEY_CURRENT_USER, L"K\\new"), 5);
  EXPECT_EQ(RegDeleteTreeW(HKEY_CURRENT_USER, L"K"), 5);
  EXPECT_EQ(open(HKEY_CURRENT_USER, L"K\\sub"), 2);  // went before its parent refused
  EXPECT_EQ(registry.deny(HKEY_CURRENT_USER, L"k", 0), 0u);
  EXPECT_EQ(RegDeleteTreeW(HKEY_CURRENT_USER, L"K"), 0);
}

TEST_F(RegistryTest, Views) {
  EXPECT_EQ(create(HKEY_LOCAL_MACHINE, L"Software\\X", KEY_WOW64_32KEY), 0);
  EXPECT_EQ(create(HKEY_LOCAL_MACHINE, L"SYSTEM\\X", KEY_WOW64_32KEY), 0);
  EXPECT_EQ(create(HKEY_CURRENT_USER, L"Software\\X", KEY_WOW64_32KEY), 0);
  const HKEY in32 = opened(HKEY_LOCAL_MACHINE, L"", KEY_READ | KEY_WOW64_32KEY);
  const HKEY software = opened(HKEY_LOCAL_MACHINE, L"SOFTWARE", KEY_READ);
  const std::tuple<HKEY, const wchar_t*, REGSAM, LSTATUS> rows[] = {
      {HKEY_LOCAL_MACHINE, L"SOFTWARE\\X", 0, 2},
      {HKEY_LOCAL_MACHINE, L"SOFTWARE\\X", 0x200, 0},
      {HKEY_LOCAL_MACHINE, L"SOFTWARE\\X", 0x300, 87},
      {HKEY_LOCAL_MACHINE, L"SOFTWARE\\WOW6432NODE\\x", 0, 0},
      {HKEY_LOCAL_MACHINE, L"SOFTWARE\\Wow6432Node\\X", 0x200, 0},
      {HKEY_LOCAL_MACHINE, L"SOFTWARE\\Wow6432Node\\Wow6432Node\\X", 0x200, 2},
      {HKEY_LOCAL_MACHINE, L"SYSTEM\\X", 0, 0},
      {HKEY_CURRENT_USER, L"Software\\X", 0x100, 0},
      {in32, L"SOFTWARE\\X", 0, 0},
      {in32, L"SOFTWARE\\X", 0x100, 2},
      {software, L"X", 0x200, 0},
      {software, L"Wow6432Node\\X", 0x200, 0},
  };
  for (const auto& [from, path, view, code] : rows) {
    EXPECT_EQ(open(from, path, KEY_READ | view), code) << testing::PrintToString(std::wstring(path)) << view;
  }
  EXPECT_EQ(RegDeleteKeyW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\X"), 2);
  EXPECT_EQ(RegDeleteKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\X", 0x300, 0), 87);
  EXPECT_EQ(RegDeleteKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\X", KEY_WOW64_32KEY, 0), 0);
  EXPECT_EQ(open(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Wow6432Node\\X"), 2);
  EXPECT_EQ(RegCloseKey(in32) + RegCloseKey(software), 0);
}

TEST_F(RegistryTest, Deletion) {
  ASSERT_EQ(create(HKEY_CURRENT_USER, L"K\\a\\b"), 0);
  EXPECT_EQ(RegDeleteKeyW(HKEY_CURRENT_USER, L"K"), 5);
  EXPECT_EQ(RegDeleteKeyW(HKEY_CURRENT_USER, nullptr), 87);
  for (const wchar_t* const path : {L"SOFTWARE", L"SOFTWARE\\Wow6432Node", L"SYSTEM", L""}) {
    EXPECT_EQ(RegDeleteKeyW(HKEY_LOCAL_MACHINE, path), 5);
  }
  const HKEY key = opened(HKEY_CURRENT_USER, L"K");
  EXPECT_EQ(set(key, nullptr, REG_NONE, {}), 0);
  EXPECT_EQ(RegDeleteTreeW(key, nullptr), 0);
  std::wstring dump;
  registrydump::add(key, L"", dump);
  EXPECT_EQ(dump, L"");
  EXPECT_EQ(set(key, L"Name", REG_NONE, {}), 0);
  EXPECT_EQ(RegDeleteValueW(key, L"nAME"), 0);
  EXPECT_EQ(RegDeleteValueW(key, L"Name"), 2);
  EXPECT_EQ(RegCloseKey(key), 0);
  EXPECT_EQ(RegDeleteTreeW(HKEY_CURRENT_USER, L"K"), 0);
  EXPECT_EQ(RegDeleteTreeW(HKEY_CURRENT_USER, L"K"), 2);
  EXPECT_EQ(create(HKEY_USERS, L"v", 0, REG_OPTION_VOLATILE), 0);
  EXPECT_EQ(create(HKEY_USERS, L"v\\w"), 1021);
  EXPECT_EQ(create(HKEY_USERS, L"v\\w", 0, REG_OPTION_VOLATILE), 0);
}

TEST_F(RegistryTest, SizesOfData) {
  const HKEY key = opened(HKEY_CURRENT_USER, L"K");
  const std::wstring text = L"\u20AC\U0001F600";  // 3 and 4 narrow bytes
  const auto* const raw = reinterpret_cast<const BYTE*>(text.c_str());
  const struct {
    const char* name;
    DWORD type;
    std::vector<BYTE> data;
    DWORD narrow;
  } rows[] = {{"sz", REG_SZ, {raw, raw + 12}, 8},
              {"bare", REG_SZ, {raw, raw + 8}, 7},
              {"odd", REG_MULTI_SZ, {raw, raw + 7}, 3},
              {"BIN", REG_BINARY, {1, 2, 3}, 3},
              {"", REG_DWORD, {}, 0}};
  for (const auto& row : rows) {
    const std::wstring name(row.name, row.name + std::strlen(row.name));
    ASSERT_EQ(set(key, name.c_str(), row.type, row.data), 0);
    for (const bool wide : {true, false}) {
      const auto query = [&](DWORD* type, BYTE* data, DWORD* size) {
        return wide ? RegQueryValueExW(key, name.c_str(), nullptr, type, data, size)
                    : RegQueryValueExA(key, row.name, nullptr, type, data, size);
      };
      const DWORD needed = wide ? static_cast<DWORD>(row.data.size()) : row.narrow;
      for (DWORD capacity = 0; capacity <= needed + 1; ++capacity) {
        support::GuardedBuffer<BYTE> buffer(capacity);
        DWORD type = 99, size = capacity;
        EXPECT_EQ(query(&type, buffer.data(), &size), capacity < needed ? 234 : 0) << row.name << capacity;
        EXPECT_TRUE(size == needed && type == row.type && buffer.untouched(capacity < needed ? 0 : needed));
      }
      DWORD size = 1;
      BYTE byte = 0;
      EXPECT_EQ(query(nullptr, nullptr, &size) + query(nullptr, nullptr, nullptr), 0);
      EXPECT_EQ(size, needed);
      EXPECT_EQ(query(nullptr, &byte, nullptr), 87);
    }
  }
  ASSERT_EQ(RegSetValueExA(key, "\xC3\xA9", 0, REG_SZ, reinterpret_cast<const BYTE*>("\xE2\x82\xAC"), 4), 0);
  wchar_t back[2];
  DWORD size = sizeof back, type = 99;
  EXPECT_EQ(RegQueryValueExW(key, L"\u00C9", nullptr, nullptr, reinterpret_cast<BYTE*>(back), &size), 0);
  EXPECT_EQ(std::wstring(back), L"\u20AC");
  EXPECT_EQ(RegQueryValueExW(key, L"missing", nullptr, &type, nullptr, &size), 2);
  EXPECT_TRUE(size == 0 && type == 99);
  EXPECT_EQ(RegSetValueExW(key, L"v", 0, REG_SZ, nullptr, 4), 998);
  EXPECT_EQ(set(key, std::wstring(16383, L'n').c_str(), REG_NONE, {}), 0);
  EXPECT_EQ(set(key, std::wstring(16384, L'n').c_str(), REG_NONE, {}), 87);
  EXPECT_EQ(RegCloseKey(key), 0);
}

TEST_F(RegistryTest, Enumeration) {
  machine().clock().setTicks(1'000'000'007);
  const HKEY key = opened(HKEY_CURRENT_USER, L"K");
  EXPECT_EQ(create(key, L"child"), 0);
  EXPECT_EQ(set(key, L"zz", REG_BINARY, {1, 2}) + set(key, L"a", REG_BINARY, {1, 2}), 0);
  support::GuardedBuffer<wchar_t> name(6);
  FILETIME written{};
  BYTE data[2];
  DWORD chars = 5, size = 1;
  const auto enumKey = [&](DWORD index) {
    return RegEnumKeyExW(key, index, name.data(), &chars, nullptr, nullptr, nullptr, &written);
  };
  EXPECT_EQ(enumKey(0), 234);
  EXPECT_TRUE(chars == 5 && written.dwLowDateTime == 0 && name.untouched());
  chars = 6;
  EXPECT_EQ(enumKey(0), 0);
  EXPECT_TRUE(chars == 5 && written.dwLowDateTime == 1'000'000'007 && name.guardsIntact());
  EXPECT_EQ(enumKey(1), 259);
  EXPECT_EQ(RegEnumValueW(key, 0, name.data(), &(chars = 3), nullptr, nullptr, data, &size), 234);
  EXPECT_EQ(RegEnumValueW(key, 0, name.data(), &(chars = 3), nullptr, nullptr, data, &(size = 2)), 0);
  EXPECT_EQ(std::wstring(name.data()), L"zz");  // as they came
  EXPECT_EQ(RegEnumValueW(key, 0, name.data(), &(chars = 2), nullptr, nullptr, nullptr, nullptr), 234);
  EXPECT_EQ(RegEnumValueW(key, 2, name.data(), &(chars = 3), nullptr, nullptr, nullptr, nullptr), 259);
  EXPECT_EQ(RegEnumKeyExW(key, 1, name.data(), &(chars = 3), nullptr, nullptr, nullptr, nullptr), 259);
  EXPECT_EQ(RegCloseKey(key), 0);
}

}  // namespace
