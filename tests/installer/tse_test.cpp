// Terminal Services, on every generation of the system.
#include <support/entrypoints.h>

#include "fixture.h"

namespace installer {
namespace {

using namespace std::string_view_literals;
using support::Bytes;
using support::bytesOf;
using support::Key;

constexpr const wchar_t* kOptions = L"System\\CurrentControlSet\\Control\\ProductOptions";
constexpr const wchar_t* kServices = L"SYSTEM\\CurrentControlSet\\Control\\Terminal Server";

// The platform's test of the suite.
struct Verifier {
  static inline int answer = 0;
  static inline int calls = 0;
  static BOOL WINAPI verify(OSVERSIONINFOEXA* info, DWORD types, ULONGLONG mask) {
    ++calls;
    OSVERSIONINFOEXA expected{};
    expected.dwOSVersionInfoSize = 156;
    expected.wSuiteMask = 16;
    EXPECT_EQ(std::memcmp(info, &expected, 156), 0);
    EXPECT_EQ(types, 0x40u);
    EXPECT_EQ(mask & 7u << 18, 6u << 18);
    return answer;
  }
};

FARPROC address(decltype(&Verifier::verify) function) {
  return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function));
}

using Stored = std::optional<std::pair<DWORD, Bytes>>;

class Tse : public support::MachineTest {
 protected:
  void TearDown() override {
    RegDeleteValueW(Key(kOptions).get(), L"ProductSuite");
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, kServices);
    session.reset();
    MachineTest::TearDown();
  }
  void setVersion(DWORD word) {
#ifdef _WIN32
    version_ = word;
#else
    machine().version().set({.major = word & 0xFFu,
                             .minor = word >> 8 & 0xFFu,
                             .suiteMask = static_cast<WORD>(Verifier::answer == 1 ? VER_SUITE_TERMINAL : 0),
                             .platform = word >> 31 != 0 ? VER_PLATFORM_WIN32_WINDOWS : VER_PLATFORM_WIN32_NT});
#endif
  }
  static void store(const wchar_t* path, const wchar_t* name, const Stored& value) {
    const Key key = Key::create(path);
    RegDeleteValueW(key.get(), name);
    if (value) {
      key.set(name, value->first, value->second);
    }
  }

  std::optional<Session> session{std::in_place};

 private:
#ifdef _WIN32
  static DWORD WINAPI version() {
    return version_;
  }
  static inline DWORD version_ = 0;
  support::ImportPatch patch_{L"vlhostkitu.dll", "GetVersion", reinterpret_cast<FARPROC>(&Tse::version)};
#endif
};

Stored list(std::wstring_view texts) {
  return std::pair{REG_MULTI_SZ, bytesOf(texts)};
}
Stored number(BYTE value) {
  return std::pair{REG_DWORD, Bytes{value, 0, 0, 0}};
}

constexpr DWORD version(DWORD major, DWORD minor) {
  return major | minor << 8 | 2600u << 16;
}

TEST_F(Tse, TheAnswerOfEachGeneration) {
  const Stored none;
  const Stored suite = list(L"Small Business\0Terminal Server\0\0"sv);
  const struct {
    DWORD version;
    int verified;  // -2: must not be asked
    Stored suite, denied;
    int answer;
  } rows[] = {
      {version(4, 0) | 0x80000000u, -2, suite, number(0), -1},
      {version(4, 0), -2, suite, none, 1},
      {version(3, 51), -2, list(L"Terminal Server\0\0"sv), none, 1},
      {version(4, 2), -2, list(L"Terminal Server"sv), none, 1},
      {version(4, 0), -2, list(L"A\0Terminal Server\0"sv), none, 1},
      {version(4, 0), -2, list(L"A\0terminal server\0\0"sv), none, 0},
      {version(4, 0), -2, list(L"Terminal Server 2\0Terminal\0\0"sv), none, 0},
      {version(4, 0), -2, list(L"A\0\0Terminal Server\0\0"sv), none, 0},
      {version(4, 0), -2, list(L"\0Terminal Server\0\0"sv), none, 0},
      {version(4, 0), -2, list(L""sv), none, 0},
      {version(4, 0), -2, std::pair{REG_MULTI_SZ, Bytes{'T'}}, none, 0},
      {version(4, 0), -2, std::pair{REG_SZ, bytesOf(L"Terminal Server\0"sv)}, none, 0},
      {version(4, 0), -2, none, number(0), 0},
      {version(5, 0), 1, none, number(1), 1},
      {version(5, 1), 1, none, none, 1},
      {version(5, 1), 0, suite, number(0), 0},
      {version(6, 1), 1, none, number(1), 1},
      {version(5, 2), 1, none, number(0), 1},
      {version(5, 2), 1, none, number(1), 0},
      {version(6, 2), 1, none, number(2), 0},
      {version(5, 2), 1, none, none, -1},
      {version(5, 2), 1, none, std::pair{REG_SZ, bytesOf(L"0\0"sv)}, -1},
      {version(5, 2), 1, none, std::pair{REG_DWORD, Bytes(8)}, -1},
      {version(5, 2), 0, none, number(0), 0},
      {version(10, 0), 1, none, number(1), 1},
      {version(10, 0), 5, none, number(0), 5},
      {version(6, 3), 5, none, number(0), 5},
  };
  const support::EntryPoints points(L"kernel32.dll", {{"VerifyVersionInfoA", address(&Verifier::verify)}});
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    Verifier::answer = row.verified;
    Verifier::calls = 0;
    setVersion(row.version);
    store(kOptions, L"ProductSuite", row.suite);
    store(kServices, L"fDenyTSConnections", row.denied);
    EXPECT_EQ(IsTerminalServicesEnabled(), row.answer);
    EXPECT_EQ(Verifier::calls, row.verified == -2 ? 0 : 1);
    EXPECT_EQ(DetectTSE(session->handle()), row.answer);
    EXPECT_EQ(session->get(L"TSE_ENABLED"), std::to_wstring(row.answer));
  }
  RegDeleteKeyW(HKEY_LOCAL_MACHINE, kServices);
  Verifier::answer = 1;
  setVersion(version(5, 2));
  EXPECT_EQ(IsTerminalServicesEnabled(), -1);
}

TEST_F(Tse, WithoutTheTestOfTheSuiteNothingIsKnown) {
  setVersion(version(6, 1));
  for (const char* const function : {"VerSetConditionMask", "VerifyVersionInfoA"}) {
    const support::EntryPoints points(function[3] == 'S' ? L"ntdll.dll" : L"kernel32.dll", {{function, nullptr}});
    EXPECT_EQ(DetectTSE(session->handle()), -1);
    EXPECT_EQ(session->get(L"TSE_ENABLED"), L"-1");
  }
  session->set(L"TSE_ENABLED", L"as it was");
  const support::EntryPoints points(L"msi.dll", {{"MsiSetPropertyW", nullptr}});
  EXPECT_EQ(DetectTSE(session->handle()), IsTerminalServicesEnabled());
  EXPECT_EQ(session->get(L"TSE_ENABLED"), L"as it was");
}

TEST_F(Tse, ThePlatformsOwnTestIsAsked) {
  for (const int met : {0, 1}) {
    Verifier::answer = met;
    setVersion(version(6, 1));
#ifdef _WIN32
    EXPECT_EQ(DetectTSE(session->handle()), 0);  // whatever the machine, Wine says no
#else
    EXPECT_EQ(DetectTSE(session->handle()), met);
#endif
  }
}

}  // namespace
}  // namespace installer
