// Terminal Services, on every generation of the system.
#include <support/entrypoints.h>

#include "fixture.h"

namespace installer {
namespace {

using Stored = std::optional<std::pair<DWORD, Bytes>>;

constexpr const wchar_t* kOptions = L"System\\CurrentControlSet\\Control\\ProductOptions";
constexpr const wchar_t* kServices = L"SYSTEM\\CurrentControlSet\\Control\\Terminal Server";

int suiteAnswer = 0, suiteCalls = 0;
DWORD versionWord = 0;

// The platform's test of the suite, and its version.
BOOL WINAPI verify(OSVERSIONINFOEXA* info, DWORD types, ULONGLONG mask) {
  ++suiteCalls;
  OSVERSIONINFOEXA expected{};
  expected.dwOSVersionInfoSize = 156;
  expected.wSuiteMask = 16;
  EXPECT_TRUE(std::memcmp(info, &expected, 156) == 0 && types == 0x40 && (mask >> 18 & 7) == 6);
  return suiteAnswer;
}
DWORD WINAPI version() {
  return versionWord;
}
FARPROC address(auto* function) {
  return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function));
}

class Tse : public support::MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
    session.emplace();
  }
  void TearDown() override {
    session.reset();
    RegDeleteValueW(Key(kOptions).get(), L"ProductSuite");
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, kServices);
    MachineTest::TearDown();
  }
  void setVersion(DWORD word) {
    versionWord = word;
#ifdef _WIN32
  }
  support::ImportPatch patch_{L"vlhostkitu.dll", "GetVersion", address(&version)};
#else
    machine().version().set({.major = word & 0xFFu,
                             .minor = word >> 8 & 0xFFu,
                             .suiteMask = static_cast<WORD>(suiteAnswer == 1 ? VER_SUITE_TERMINAL : 0),
                             .platform = word >> 31 != 0 ? VER_PLATFORM_WIN32_WINDOWS : VER_PLATFORM_WIN32_NT});
    EXPECT_EQ(GetVersion() & 0x8000FFFFu, version());
  }
#endif
  static void store(const wchar_t* path, const wchar_t* name, const Stored& value) {
    const Key key = Key::create(path);
    RegDeleteValueW(key.get(), name);
    if (value) {
      key.set(name, value->first, value->second);
    }
  }

  std::optional<Session> session;
};

Stored list(std::wstring_view texts) {
  return std::pair{REG_MULTI_SZ, support::bytesOf(texts)};
}
Stored number(BYTE value) {
  return std::pair{REG_DWORD, Bytes{value, 0, 0, 0}};
}

TEST_F(Tse, TheAnswerOfEachGeneration) {
  constexpr int kNotAsked = -2;
  const Stored none;
  const Stored suite = list(L"Small Business\0Terminal Server\0\0"sv);
  const struct {
    DWORD version;
    int suiteAnswer;
    Stored suite, denied;
    int answer;
  } rows[] = {
      {0x80000004, kNotAsked, suite, number(0), -1},
      {0x0004, kNotAsked, suite, none, 1},
      {0x3303, kNotAsked, list(L"Terminal Server\0\0"sv), none, 1},
      {0x0204, kNotAsked, list(L"Terminal Server"sv), none, 1},
      {0x0004, kNotAsked, list(L"A\0Terminal Server\0"sv), none, 1},
      {0x0004, kNotAsked, list(L"A\0terminal server\0\0"sv), none, 0},
      {0x0004, kNotAsked, list(L"Terminal Server 2\0Terminal\0\0"sv), none, 0},
      {0x0004, kNotAsked, list(L"A\0\0Terminal Server\0\0"sv), none, 0},
      {0x0004, kNotAsked, list(L"\0Terminal Server\0\0"sv), none, 0},
      {0x0004, kNotAsked, list(L""sv), none, 0},
      {0x0004, kNotAsked, std::pair{REG_MULTI_SZ, Bytes{'T'}}, none, 0},
      {0x0004, kNotAsked, std::pair{REG_SZ, support::bytesOf(L"Terminal Server\0"sv)}, none, 0},
      {0x0004, kNotAsked, none, number(0), 0},
      {0x0005, 1, none, number(1), 1},
      {0x0105, 1, none, none, 1},
      {0x0105, 0, suite, number(0), 0},
      {0x0106, 1, none, number(1), 1},
      {0x0205, 1, none, number(0), 1},
      {0x0205, 1, none, number(1), 0},
      {0x0206, 1, none, number(2), 0},
      {0x0205, 1, none, none, -1},
      {0x0205, 1, none, std::pair{REG_SZ, support::bytesOf(L"0\0"sv)}, -1},
      {0x0205, 1, none, std::pair{REG_DWORD, Bytes(8)}, -1},
      {0x0205, 0, none, number(0), 0},
      {0x000A, 1, none, number(1), 1},
      {0x0306, 5, none, number(0), 5},
  };
  const support::EntryPoints points(L"kernel32.dll", {{"VerifyVersionInfoA", address(&verify)}});
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    suiteAnswer = row.suiteAnswer;
    suiteCalls = 0;
    setVersion(row.version);
    store(kOptions, L"ProductSuite", row.suite);
    store(kServices, L"fDenyTSConnections", row.denied);
    EXPECT_EQ(DetectTSE(session->handle), row.answer);
    EXPECT_EQ(suiteCalls, row.suiteAnswer == kNotAsked ? 0 : 1);
    EXPECT_EQ(session->get(L"TSE_ENABLED"), std::to_wstring(row.answer));
  }
}

TEST_F(Tse, ThePlatformsOwnTestAndNone) {
  for (const int met : {0, 1}) {
    suiteAnswer = met;
    setVersion(0x0106);
#ifdef _WIN32
    EXPECT_EQ(IsTerminalServicesEnabled(), 0);  // Wine says no on every machine
#else
    EXPECT_EQ(IsTerminalServicesEnabled(), met);
    setVersion(0x0205);
    EXPECT_EQ(IsTerminalServicesEnabled(), met == 0 ? 0 : -1);  // there is no key
#endif
  }
  for (const auto& [module, function] :
       {std::pair{L"ntdll.dll", "VerSetConditionMask"}, {L"kernel32.dll", "VerifyVersionInfoA"}}) {
    const support::EntryPoints points(module, {{function, nullptr}});
    EXPECT_EQ(DetectTSE(session->handle), -1);
    EXPECT_EQ(session->get(L"TSE_ENABLED"), L"-1");
  }
}

}  // namespace
}  // namespace installer
