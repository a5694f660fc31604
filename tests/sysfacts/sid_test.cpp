// SIDs by name, by token, and as text.
#include <cstdlib>
#include <memory>
#include <random>

#include "forms.h"

#ifdef _WIN32
#include <sddl.h>
#endif

namespace sysfacts {
namespace {

template <class Width>
class Sids : public support::MachineTest {};
TYPED_TEST_SUITE(Sids, Widths);

struct MadeSid {
  alignas(SID) BYTE bytes[68];

  MadeSid(std::array<BYTE, 6> authority, const std::vector<DWORD>& subAuthorities) {
    SID_IDENTIFIER_AUTHORITY identifier;
    std::copy(authority.begin(), authority.end(), identifier.Value);
    EXPECT_TRUE(InitializeSid(bytes, &identifier, static_cast<BYTE>(subAuthorities.size())));
    for (DWORD i = 0; i < subAuthorities.size(); ++i) {
      *GetSidSubAuthority(bytes, i) = subAuthorities[i];
    }
  }
};

template <class Width>
std::basic_string<typename Width::Char> textOf(MadeSid& sid) {
  using Char = typename Width::Char;
  DWORD bytes = 0;
  EXPECT_FALSE(Width::convertSid(sid.bytes, nullptr, &bytes));
  EXPECT_EQ(GetLastError(), 122u);
  GuardedBuffer<Char> text(bytes / sizeof(Char));
  EXPECT_TRUE(Width::convertSid(sid.bytes, text.data(), &bytes));
  EXPECT_EQ(bytes, text.size() * sizeof(Char));
  EXPECT_TRUE(text.guardsIntact());
  return text.data();
}

TYPED_TEST(Sids, Texts) {
  using Char = typename TypeParam::Char;
  const struct {
    std::array<BYTE, 6> authority;
    std::vector<DWORD> subAuthorities;
    const wchar_t* text;
  } rows[] = {
      {{0, 0, 0, 0, 0, 5}, {21, 1, 2, 3, 500}, L"S-1-5-21-1-2-3-500"},
      {{0, 0, 0, 0, 0, 5}, {}, L"S-1-5"},
      {{0, 0, 255, 255, 255, 255}, {0}, L"S-1-4294967295-0"},
      {{0, 0, 1, 2, 3, 4}, {4294967295}, L"S-1-16909060-4294967295"},
      {{0, 1, 0, 0, 0, 0}, {7, 8}, L"S-1-0x000100000000-7-8"},
      {{0xFE, 0xDC, 0xBA, 0x98, 0x76, 0x05}, {1}, L"S-1-0xfedcba987605-1"},
      {{255, 255, 255, 255, 255, 255},
       std::vector<DWORD>(14, 4294967295),
       L"S-1-0xffffffffffff-4294967295-4294967295-4294967295-4294967295-4294967295-4294967295-4294967295-4294967295-"
       L"4294967295-4294967295-4294967295-4294967295-4294967295-4294967295"},
  };
  for (const auto& row : rows) {
    MadeSid sid(row.authority, row.subAuthorities);
    EXPECT_EQ(textOf<TypeParam>(sid), as<Char>(row.text));
  }
}

TYPED_TEST(Sids, SizesAreWorstCasesInBytes) {
  using Char = typename TypeParam::Char;
  MadeSid sid({0, 0, 0, 0, 0, 5}, {32, 544});
  const DWORD demanded = 52 * sizeof(Char);
  support::LogCapture log;
  GuardedBuffer<Char> text(100);
  for (const DWORD given : {demanded - 1, DWORD{0}}) {
    DWORD bytes = given;
    EXPECT_FALSE(TypeParam::convertSid(sid.bytes, text.data(), &bytes));
    EXPECT_EQ(GetLastError(), 122u);
    EXPECT_EQ(bytes, demanded);
    EXPECT_TRUE(text.untouched());
  }
  for (const DWORD given : {demanded, demanded + 40}) {
    text.refill();
    DWORD bytes = given;
    EXPECT_TRUE(TypeParam::convertSid(sid.bytes, text.data(), &bytes));
    EXPECT_EQ(bytes, given);
    EXPECT_TRUE(text.untouched(13));
    EXPECT_EQ(text.data(), as<Char>(L"S-1-5-32-544"));
  }
  sid.bytes[0] = 9;  // no such revision
  text.refill();
  DWORD bytes = 0;
  EXPECT_FALSE(TypeParam::convertSid(sid.bytes, text.data(), &bytes));
  EXPECT_EQ(bytes, 0u);
  EXPECT_TRUE(text.untouched());
  EXPECT_TRUE(log.was({}));
}

TYPED_TEST(Sids, AgreeWithThePlatformWhereItPrintsDecimals) {
  using Char = typename TypeParam::Char;
  std::mt19937 random(20130328);
  for (int i = 0; i < 500; ++i) {
    std::vector<DWORD> subAuthorities(1 + random() % 14);
    for (DWORD& number : subAuthorities) {
      number = static_cast<DWORD>(random() >> random() % 32);
    }
    MadeSid sid({0, 0, static_cast<BYTE>(random() % 128), static_cast<BYTE>(random()), static_cast<BYTE>(random()),
                 static_cast<BYTE>(random())},
                subAuthorities);
    LPWSTR platforms = nullptr;
    ASSERT_TRUE(ConvertSidToStringSidW(sid.bytes, &platforms));
    EXPECT_EQ(textOf<TypeParam>(sid), as<Char>(platforms));
    LocalFree(platforms);
  }
}

TYPED_TEST(Sids, OfTokensAndOfNames) {
  using Char = typename TypeParam::Char;
  using String = std::basic_string<Char>;
  HANDLE token = nullptr;
  ASSERT_TRUE(OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token));
  support::LogCapture log;
  DWORD bytes = 0;
  EXPECT_FALSE(TypeParam::obtainSid(token, nullptr, &bytes));
  EXPECT_EQ(GetLastError(), 122u);
  GuardedBuffer<Char> text(bytes / sizeof(Char));
  EXPECT_TRUE(TypeParam::obtainSid(token, text.data(), &bytes));
  EXPECT_EQ(String(text.data()).substr(0, 4), as<Char>(L"S-1-"));
  CloseHandle(token);
  text.refill();
  EXPECT_FALSE(TypeParam::obtainSid(nullptr, text.data(), &bytes));
  EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_HANDLE});
  EXPECT_TRUE(text.untouched());
  EXPECT_TRUE(log.was({}));

  wchar_t user[256];
  wchar_t domain[256];
  DWORD userSize = 256;
  DWORD domainSize = 256;
  ASSERT_EQ(vlNetGetCurrentProcessUserAndDomainW(user, &userSize, domain, &domainSize), 0);
  log.take();
  const std::wstring name = L"vlSysGetUserSID";
  const std::wstring flat = name + TypeParam::letter;
  const struct {
    std::wstring user;
    std::wstring domain;
    bool known;
  } rows[] = {{user, domain, true}, {L"nobodyofthisname", domain, false}};
  for (const auto& row : rows) {
    const String domainIn = as<Char>(row.domain);
    void* const before = &bytes;
    void* sid = before;
    const DWORD result = TypeParam::userSid(as<Char>(row.user).c_str(), domainIn.c_str(), &sid);
    EXPECT_EQ(result, row.known ? 0u : 1332u);
    EXPECT_EQ(sid != nullptr, row.known);
    const std::wstring number = std::to_wstring(result);
    Lines lines = {{TXLOG_ENTRY, flat + L"(" + pointer(domainIn.c_str()) + L"," + pointer(&sid) + L")"},
                   {TXLOG_ENTRY, name + L"(" + row.domain + L"," + pointer(before) + L")"}};
    if (!row.known) {
      lines.push_back({TXLOG_ERROR, name + L" Unable to lookup for the SID of the account (" + number + L")"});
    }
    lines.push_back({TXLOG_EXIT, name + L" (" + number + L")"});
    lines.push_back({TXLOG_EXIT, flat + L" (" + number + L")"});
    EXPECT_TRUE(log.was(records(lines)));
    if (sid != nullptr) {
      text.refill();
      EXPECT_TRUE(TypeParam::convertSid(sid, text.data(), &bytes));
      LPWSTR same = nullptr;
      EXPECT_TRUE(ConvertSidToStringSidW(sid, &same));
      EXPECT_EQ(text.data(), as<Char>(same));
      LocalFree(same);
    }
    std::free(sid);
  }
}

}  // namespace
}  // namespace sysfacts
