// SIDs by name, by token, and as text.
#include <array>
#include <cstdlib>
#include <cstring>
#include <random>

#include "forms.h"

#ifdef _WIN32
#include <sddl.h>
#endif

namespace sysfacts {
namespace {

template <class Width>
class Sids : public MachineTest {
 protected:
  using String = std::basic_string<typename Width::Char>;
  // The text of a SID, whose buffer is as large as is demanded.
  static String textOf(PSID sid) {
    DWORD bytes = 0;
    EXPECT_FALSE(Width::convertSid(sid, nullptr, &bytes));
    EXPECT_EQ(GetLastError(), 122u);
    GuardedBuffer<typename Width::Char> text(bytes / sizeof(typename Width::Char));
    EXPECT_TRUE(Width::convertSid(sid, text.data(), &bytes));
    EXPECT_TRUE(text.guardsIntact());
    return text.data();
  }
  static String platformsTextOf(PSID sid) {
    LPWSTR text = nullptr;
    EXPECT_TRUE(ConvertSidToStringSidW(sid, &text));
    String result(text, text + std::wcslen(text));
    LocalFree(text);
    return result;
  }
};
TYPED_TEST_SUITE(Sids, Widths);

struct MadeSid {
  alignas(SID) BYTE bytes[68] = {SID_REVISION};

  MadeSid(const std::array<BYTE, 6>& authority, const std::vector<DWORD>& subAuthorities) {
    bytes[1] = static_cast<BYTE>(subAuthorities.size());
    std::copy(authority.begin(), authority.end(), bytes + 2);
    std::copy_n(reinterpret_cast<const BYTE*>(subAuthorities.data()), subAuthorities.size() * sizeof(DWORD), bytes + 8);
  }
};

TYPED_TEST(Sids, Texts) {
  std::string longest = "S-1-0xffffffffffff";
  for (int i = 0; i < 14; ++i) {
    longest += "-4294967295";
  }
  const std::tuple<std::array<BYTE, 6>, std::vector<DWORD>, std::string> rows[] = {
      {{0, 0, 0, 0, 0, 5}, {21, 1, 2, 3, 500}, "S-1-5-21-1-2-3-500"},
      {{0, 0, 0, 0, 0, 5}, {}, "S-1-5"},
      {{0, 0, 255, 255, 255, 255}, {0}, "S-1-4294967295-0"},
      {{0, 1, 0, 0, 0, 0}, {7, 8}, "S-1-0x000100000000-7-8"},
      {{0xFE, 0xDC, 0xBA, 0x98, 0x76, 0x05}, {1}, "S-1-0xfedcba987605-1"},
      {{255, 255, 255, 255, 255, 255}, std::vector<DWORD>(14, 4294967295), longest}};
  for (const auto& [authority, subAuthorities, text] : rows) {
    EXPECT_EQ(this->textOf(MadeSid(authority, subAuthorities).bytes), as<typename TypeParam::Char>(text));
  }
  // The platform prints the same wherever it prints decimals.
  std::mt19937 random(20130328);
  const auto byte = [&] { return static_cast<BYTE>(random()); };
  for (int i = 0; i < 500; ++i) {
    std::vector<DWORD> numbers(1 + random() % 14);
    for (DWORD& number : numbers) {
      number = static_cast<DWORD>(random() >> random() % 32);
    }
    MadeSid sid({0, 0, static_cast<BYTE>(random() % 128), byte(), byte(), byte()}, numbers);
    EXPECT_EQ(this->textOf(sid.bytes), this->platformsTextOf(sid.bytes));
  }
}

TYPED_TEST(Sids, SizesAreWorstCasesInBytes) {
  using Char = typename TypeParam::Char;
  MadeSid sid({0, 0, 0, 0, 0, 5}, {32, 544});
  const DWORD demanded = 52 * sizeof(Char);
  LogCapture log;
  for (const DWORD given : {DWORD{0}, demanded - 1, demanded, demanded + 40}) {
    GuardedBuffer<Char> text(100);
    DWORD bytes = given;
    const bool fits = given >= demanded;
    EXPECT_EQ(TypeParam::convertSid(sid.bytes, text.data(), &bytes) != 0, fits);
    EXPECT_EQ(bytes, std::max(given, demanded));
    EXPECT_TRUE(text.untouched(fits ? 13 : 0) && (fits || GetLastError() == 122));
    EXPECT_TRUE(!fits || text.data() == as<Char>("S-1-5-32-544"));
  }
  sid.bytes[0] = 9;  // no such revision
  DWORD bytes = 0;
  EXPECT_FALSE(TypeParam::convertSid(sid.bytes, nullptr, &bytes));
  EXPECT_EQ(bytes, 0u);
  EXPECT_TRUE(log.was({}));
}

TYPED_TEST(Sids, OfTokensAndOfNames) {
  using Char = typename TypeParam::Char;
  wchar_t user[256], domain[256];
  DWORD userSize = 256, domainSize = 256, bytes = 0;
  ASSERT_EQ(vlNetGetCurrentProcessUserAndDomainW(user, &userSize, domain, &domainSize), 0);
  HANDLE token = nullptr;
  ASSERT_TRUE(OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token));
  LogCapture log;
  EXPECT_FALSE(TypeParam::obtainSid(token, nullptr, &bytes));
  EXPECT_EQ(GetLastError(), 122u);
  GuardedBuffer<Char> text(bytes / sizeof(Char)), untouched(8);
  EXPECT_TRUE(TypeParam::obtainSid(token, text.data(), &bytes));
  CloseHandle(token);
  EXPECT_FALSE(TypeParam::obtainSid(nullptr, untouched.data(), &bytes));
  EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_HANDLE});
  EXPECT_TRUE(untouched.untouched() && log.was({}));

  const std::wstring name = L"vlSysGetUserSID", flat = name + TypeParam::letter, nobody = L"nobodyofthisname";
  const std::basic_string<Char> domainIn(domain, domain + domainSize - 1);
  for (const std::wstring& row : {std::wstring(user), nobody}) {
    void* const before = &bytes;
    void* sid = before;
    const std::basic_string<Char> userIn(row.begin(), row.end());
    const int result = static_cast<int>(TypeParam::userSid(userIn.c_str(), domainIn.c_str(), &sid));
    const std::wstring number = inParentheses(result);
    EXPECT_EQ(result, row == nobody ? 1332 : 0);
    const Log error = {failed(name + L" Unable to lookup for the SID of the account" + number)};
    EXPECT_TRUE(log.was(Log{entered(flat + L"(" + pointer(domainIn.c_str()) + L"," + pointer(&sid) + L")"),
                            entered(name + L"(" + domain + L"," + pointer(before) + L")")} +
                        (result == 0 ? Log() : error) + Log{left(name + number), left(flat + number)}));
    EXPECT_EQ(sid != nullptr, result == 0);
    EXPECT_TRUE(sid == nullptr || text.data() == this->platformsTextOf(sid));
    std::free(sid);
  }
}

}  // namespace
}  // namespace sysfacts
