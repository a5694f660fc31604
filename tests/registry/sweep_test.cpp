// Every platform call of every function fails, one after the other. Native only.
#include <support/entrypoints.h>
#include <support/faultsweep.h>

#include "fixture.h"

namespace registry {
namespace {

using support::FaultSpan;

LONG deleteKeyEx(HKEY key, LPCWSTR path, REGSAM view, DWORD) {
  return RegDeleteKeyExW(key, path, view, 0);
}

// What is called, and whether what it was to do has happened then, with which the result must agree.
struct Operation {
  std::function<int(const wchar_t* key)> call;
  std::function<bool()> done;
};

class Sweep : public RegistryTest {
 protected:
  std::vector<Operation> operations() {
    const auto sized = [this](auto function, const wchar_t* value) {
      return Operation{[=, this](auto key) { return function(kRoot, key, value, nullptr, &number, 0); },
                       [this] { return number != 77; }};
    };
    const auto filled = [this](auto function, const wchar_t* value, DWORD valueType = 0) {
      return Operation{[=, this](auto key) {
                         type = valueType;
                         DWORD size = sizeof data;
                         return function(key, value, &size);
                       },
                       [this] { return data[0] != 77; }};
    };
    const auto written = [](auto function) {
      return Operation{[=](auto key) { return function(kRoot, key, L"new", "\1\0\0", 4, 0); },
                       [] { return Key(path()).stored(L"new").has_value(); }};
    };
    const auto gone = [] { return !Key(path()); };
    return {
        {[this](auto key) { return vlRegReadDWORDValueExW(kRoot, key, L"d", &number, 0); },
         [this] { return number == 1; }},
        {[this](auto key) { return vlRegReadDWORDValueExA(kRoot, narrow(key).c_str(), "d", &number, 0); },
         [this] { return number == 1; }},
        sized(vlRegReadStringValueExW, L"s"),
        sized(vlRegReadMultiStringValueExW, L"m"),
        sized(vlRegReadBinaryValueEx, L"b"),
        {[this](auto key) { return vlRegReadValueEx(kRoot, key, L"d", &type, nullptr, &number, 0); },
         [this] { return number != 77; }},
        {[](auto key) { return vlRegWriteDWORDValueEx(kRoot, key, L"new", 1, 0); },
         [] { return Key(path()).stored(L"new").has_value(); }},
        {[this](auto key) { return vlRegListValueNamesEx(kRoot, key, entries, &count, ~0u, 0); },
         [this] { return entries[0].dwType != 77; }},
        {[this](auto key) { return vlRegListKeysEx(kRoot, key, nullptr, &count, 0); }, [this] { return count != 9; }},
        {[this](auto key) { return vlRegListKeysEx(kRoot, key, names, &count, 0); }, [this] { return names[0] != 77; }},
        filled(
            [this](auto key, auto value, DWORD* size) {
              return vlRegReadStringValueExA(kRoot, narrow(key).c_str(), narrow(value).c_str(), data, size, 0);
            },
            L"s"),
        filled(
            [this](auto key, auto value, DWORD* size) {
              return vlRegReadMultiStringValueExA(kRoot, narrow(key).c_str(), narrow(value).c_str(), data, size, 0);
            },
            L"m"),
        filled([this](auto key, auto value,
                      DWORD* size) { return vlRegReadValueEx(kRoot, key, value, &type, data, size, 0); },
               L"b", REG_BINARY),
        written(vlRegWriteStringValueEx),
        written(vlRegWriteMultiStringValueEx),
        written(vlRegWriteBinaryValueEx),
        {[](auto key) { return vlRegDeleteKey(kRoot, (std::wstring(key) + L"\\c").c_str(), false, 0x100); },
         [] { return !Key(path() + L"\\c"); }},
        {[](auto key) { return vlRegDeleteValue(kRoot, key, L"d", 0); },
         [] { return !Key(path()).stored(L"d").has_value(); }},
        {[](auto key) { return vlRegDeleteKey(kRoot, key, true, KEY_WOW64_64KEY); }, gone},
        {[](auto key) { return vlRegDeleteSubKey(kRoot, key, 0, true); }, gone}};
  }
  static std::string narrow(const std::wstring& text) { return std::string(text.begin(), text.end()); }
  void prepare() {
    const Key key = Key::create(path());
    key.set(L"d", REG_DWORD, {1, 0, 0, 0});
    key.set(L"s", REG_SZ, bytesOf(L"s\0"sv));
    key.set(L"m", REG_MULTI_SZ, bytesOf(L"m\0\0"sv));
    key.set(L"b", REG_BINARY, {1});
    RegDeleteValueW(key.get(), L"new");
    create(L"a\\b");
    create(L"c");
    number = entries[0].dwType = data[0] = 77;
    names[0] = 77;
    count = 9;
    log.take();
  }

  DWORD number = 0, type = 0;
  int count = 0;
  RegValueEntry entries[9];
  BYTE data[64];
  WCHAR names[9 * 255];
};

TEST_F(Sweep, ResultsAgreeWithWhatWasDone) {
  int reached = 0;
  const std::string notDecisive = "RegCloseKey FreeLibrary wcscpy_s";
  for (const bool found : {false, true}) {
    const auto address = found ? reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&deleteKeyEx)) : nullptr;
    const support::EntryPoints points(L"Advapi32.dll", {{"RegDeleteKeyEx", address}});
    const auto all = operations();
    for (std::size_t i = 0; i < all.size(); ++i) {
      const auto run = [&](auto arm) {
        prepare();
        arm();
        return all[i].call(path().c_str());
      };
      reached += support::sweepFaults(
          std::to_string(i) + (found ? " found" : ""), run, [&](int result, const std::string& failed, FaultSpan span) {
            EXPECT_EQ(result, all[i].done() ? 0 : -1);
            EXPECT_TRUE(result == 0 || span == FaultSpan::forEver || notDecisive.find(failed) == std::string::npos);
            EXPECT_TRUE(log.records().back().text.ends_with(L" : ret=(" + std::to_wstring(result) + L")"));
            expectNothingOpen();
          });
    }
  }
  RecordProperty("faults", reached);
  if (!support::isWholeSweep()) {
    return;
  }
  EXPECT_GT(reached, 250);
}

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
