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
    Char user[64], domain[64], sam[64], cached[64];
    DWORD sizes[] = {64, 64, 64, 64};
    const bool right = Width::convert(upn.c_str(), suffix.c_str(), user, &sizes[0], domain, &sizes[1]) == 0 &&
                       Width::decompose(upn.c_str(), sam, &sizes[2]) &&
                       Width::systemCache(suffix.c_str(), cached, &sizes[3]) && user == as<Char>("Quetzalcoatl") &&
                       domain == as<Char>("CORP") && sam == as<Char>("CORP\\Quetzalcoatl") &&
                       cached == as<Char>("CORP");
    sizes[0] = sizes[1] = 64;
    return right && Width::currentUser(user, &sizes[0], domain, &sizes[1]) == 0 && user == as<Char>("Quetzalcoatl");
  }
  static bool processIsRight() {
    wchar_t user[64], domain[64], initial[64];
    DWORD sizes[] = {64, 64, 64};
    PSID sid = nullptr;
    const bool found = vlNetLookupUserNameW(kUser, L"CORP", &sid) && sid != nullptr;
    HeapFree(GetProcessHeap(), 0, sid);
    return found && vlNetGetCurrentProcessUserAndDomainW(user, &sizes[0], domain, &sizes[1]) == 0 &&
           vlNetGetInitialUserNameBeforeRenameW(kUser, L"CORP", initial, &sizes[2]) && user == std::wstring(kUser) &&
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
  std::vector<std::thread> threads;
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
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(good, 200);
  for (int i = 0; i < 100; ++i) {
    const auto expected = std::pair{DWORD{REG_SZ}, terminated(own(L"D", i))};
    EXPECT_EQ(Key(kOwnCache).stored(own(L"s", i).c_str()), expected);
  }
}

}  // namespace
}  // namespace accounts
