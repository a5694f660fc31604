// Queries that fail, and many threads. Native only.
#include <atomic>
#include <thread>

#include "fixture.h"

namespace accounts {
namespace {

constexpr const wchar_t* kUser = L"Quetzalcoatl";

class OnMachine : public Accounts {
 protected:
  void SetUp() override {
    Accounts::SetUp();
    describeUser();
  }

  // Calls every function that hands out names; whether all of them were right.
  template <class Width>
  static bool allAreRight() {
    using Char = typename Width::Char;
    const auto upn = as<Char>("Quetzalcoatl@corp.example"), suffix = as<Char>("corp.example");
    const auto userName = as<Char>("Quetzalcoatl"), domainName = as<Char>("CORP");
    Char names[6][64];
    DWORD sizes[] = {64, 64, 64, 64, 64, 64};
    return Width::convert(upn.c_str(), suffix.c_str(), names[0], &sizes[0], names[1], &sizes[1]) == 0 &&
           Width::decompose(upn.c_str(), names[2], &sizes[2]) && names[2] == as<Char>("CORP\\Quetzalcoatl") &&
           Width::systemCache(suffix.c_str(), names[3], &sizes[3]) && names[3] == domainName &&
           Width::currentUser(names[4], &sizes[4], names[5], &sizes[5]) == 0 && names[0] == userName &&
           names[1] == domainName && names[4] == userName && names[5] == domainName;
  }
  static bool processIsRight() {
    wchar_t user[64], domain[64], initial[64];
    DWORD sizes[] = {64, 64, 64};
    return vlNetGetCurrentProcessUserAndDomainW(user, &sizes[0], domain, &sizes[1]) == 0 &&
           user == std::wstring(kUser) && vlNetGetInitialUserNameBeforeRenameW(kUser, L"CORP", initial, &sizes[2]) &&
           domain == L"CORP"s && initial == L"Xolotl"s;
  }
};

TEST_F(OnMachine, QueriesOfTheSessionThatFail) {
  const std::wstring name = L"GetCurrentUserAndDomain";
  for (const std::uint64_t n : {1, 2}) {
    faults().watch();
    faults().fail("WTSQuerySessionInformationW", n, vlplatform::FaultSpan::once, 7022);
    LogCapture log;
    std::wstring user = L"before", domain = user;
    EXPECT_EQ(vlNetGetCurrentUserAndDomain(user, domain), 7022);
    EXPECT_EQ(user, n == 1 ? L"before" : kUser);
    EXPECT_EQ(domain, L"before");
    EXPECT_TRUE(log.was({entered(name), traced(name + L" Retrieve username and domain"),
                         n == 1 ? left(name + L" Unable to get the username (7022)")
                                : failed(name + L" Unable to get the domain name (7022)")}));
  }
}

TEST_F(OnMachine, AHundredThreadsAtOnce) {
  std::atomic<int> good{0};
  std::vector<std::jthread> threads;
  const auto own = [](const wchar_t* prefix, int i) { return prefix + std::to_wstring(i); };
  for (int i = 0; i < 100; ++i) {
    threads.emplace_back([=, &good] {
      good += allAreRight<Narrow>() && allAreRight<Wide>() && processIsRight();
      // Each has a suffix of its own, and all write to one key.
      const std::wstring upn = own(L"u@s", i);
      machine().network().addPrincipal(upn, own(L"D", i) + L"\\u");
      wchar_t name[32];
      DWORD size = 31;
      good += vlNetGetUserNameDomainFromUPNW(upn.c_str(), name, &size) && name == own(L"D", i) + L"\\u";
    });
  }
  threads.clear();
  EXPECT_EQ(good, 200);
  for (int i = 0; i < 100; ++i) {
    const auto expected = std::pair{DWORD{REG_SZ}, terminated(own(L"D", i))};
    EXPECT_EQ(Key(kOwnCache).stored(own(L"s", i).c_str()), expected);
  }
}

}  // namespace
}  // namespace accounts
