// Every platform call of every function fails, one after the other. Native only.
#include <functional>

#include <support/entrypoints.h>

#include "fixture.h"

namespace registry {
namespace {

using vlplatform::FaultSpan;

LONG deleteKeyEx(HKEY key, LPCWSTR path, REGSAM view, DWORD) {
  return RegDeleteKeyExW(key, path, view, 0);
}

// Below the key: the values "d" and "s", and the keys a\b and c.
struct Operation {
  const char* name;
  std::function<int(const wchar_t* key)> call;
  // Whether what was asked for has happened, or was stored; with that the result must agree.
  std::function<bool()> done;
};

class Sweep : public RegistryTest {
 protected:
  static constexpr DWORD kUntouched = 0xbdbdbdbd;

  std::vector<Operation> operations() {
    const auto sizeLearned = [this] { return bytes != kUntouched; };
    const auto read = [=, this](auto function, const wchar_t* value) {
      return Operation{"read", [=, this](auto key) { return function(kRoot, key, value, nullptr, &bytes, 0); },
                       sizeLearned};
    };
    const auto removed = [](const wchar_t* below) { return [=] { return !Key(path(below)); }; };
    return {
        {"vlRegReadDWORDValueExW", [this](auto key) { return vlRegReadDWORDValueExW(kRoot, key, L"d", &bytes, 0); },
         [this] { return bytes == 1; }},
        read(vlRegReadStringValueExW, L"s"),
        read(vlRegReadMultiStringValueExW, L"m"),
        read(vlRegReadBinaryValueEx, L"b"),
        {"vlRegReadValueEx", [this](auto key) { return vlRegReadValueEx(kRoot, key, L"d", &type, nullptr, &bytes, 0); },
         sizeLearned},
        {"vlRegReadValueEx",
         [this](auto key) { return vlRegReadValueEx(kRoot, key, L"q", &(type = REG_QWORD), data, &bytes, 0); },
         [this] { return data[0] == 8; }},
        {"vlRegWriteDWORDValueEx", [](auto key) { return vlRegWriteDWORDValueEx(kRoot, key, L"new", 1, 0); },
         [] { return Key(path()).stored(L"new").has_value(); }},
        {"vlRegListValueNamesEx",
         [this](auto key) { return vlRegListValueNamesEx(kRoot, key, entries, &count, ~0u, 0); },
         [this] { return entries[0].dwType != kUntouched; }},
        {"vlRegListKeysEx", [this](auto key) { return vlRegListKeysEx(kRoot, key, nullptr, &count, 0); },
         [this] { return count != 9; }},
        {"vlRegDeleteValue", [](auto key) { return vlRegDeleteValue(kRoot, key, L"d", 0); },
         [] { return !Key(path()).stored(L"d").has_value(); }},
        {"vlRegDeleteKey", [](auto key) { return vlRegDeleteKey(kRoot, key, true, KEY_WOW64_64KEY); }, removed(L"")},
        {"vlRegDeleteSubKey", [](auto key) { return vlRegDeleteSubKey(kRoot, key, 0, true); }, removed(L"")},
    };
  }
  void prepare() {
    const Key key = Key::create(path());
    key.set(L"d", REG_DWORD, {1, 0, 0, 0});
    key.set(L"s", REG_SZ, bytesOf(L"s\0"sv));
    key.set(L"m", REG_MULTI_SZ, bytesOf(L"m\0\0"sv));
    key.set(L"b", REG_BINARY, {1});
    key.set(L"q", REG_QWORD, {8, 0, 0, 0, 0, 0, 0, 0});
    RegDeleteValueW(key.get(), L"new");
    create(L"a\\b");
    create(L"c");
    bytes = kUntouched;
    count = 9;
    entries[0].dwType = kUntouched;
    data[0] = 0;
    log.take();
  }

  DWORD bytes = 0, type = 0;
  BYTE data[8];
  int count = 0;
  RegValueEntry entries[9];
};

TEST_F(Sweep, ResultsAgreeWithWhatWasDone) {
  int reached = 0;
  const std::string notDecisive = "RegCloseKey FreeLibrary GetProcAddress wcscpy_s";
  for (const bool found : {false, true}) {
    const support::EntryPoints points(
        L"Advapi32.dll",
        {{"RegDeleteKeyEx", found ? reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&deleteKeyEx)) : nullptr}});
    for (const Operation& operation : operations()) {
      for (const FaultSpan span : {FaultSpan::once, FaultSpan::forEver}) {
        std::string failed = "none";
        for (std::uint64_t n = 1; !failed.empty(); ++n) {
          prepare();
          faults().watch();
          faults().failAny(n, span, 4321);
          const int result = operation.call(path().c_str());
          failed = faults().callName(n);
          const std::uint64_t made = faults().calls();
          faults().reset();
          SCOPED_TRACE(testing::Message() << operation.name << " call " << n << " " << failed);
          EXPECT_EQ(result, operation.done() ? 0 : -1);
          if (failed.empty() || (span == FaultSpan::once && notDecisive.find(failed) != std::string::npos)) {
            EXPECT_EQ(result, 0);
          }
          const auto records = log.take();
          EXPECT_EQ(records.back().level, TXLOG_EXIT);
          EXPECT_NE(records.back().text.find(L" : ret=(" + std::to_wstring(result) + L")"), std::wstring::npos);
          expectNothingOpen();
          EXPECT_LT(made, 70000u);  // also where one call fails for ever
          reached += !failed.empty();
        }
      }
    }
  }
  RecordProperty("faults", reached);
  EXPECT_GT(reached, 250);
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
  EXPECT_EQ(count, 5);
}

}  // namespace
}  // namespace registry
