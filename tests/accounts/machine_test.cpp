// Platform calls and allocations that fail, what reaches the log, and many threads. Native only.
#include <functional>
#include <set>
#include <thread>

#include <support/allocfault.h>
#include <support/faultsweep.h>

#include "fixture.h"

namespace accounts {
namespace {

constexpr const wchar_t* kUser = L"Quetzalcoatl";

// 0, or the number of the failure. A call looks itself whether what it wrote agrees with that.
struct Operation {
  std::string name;
  std::function<DWORD()> call;
};

class OnMachine : public Accounts {
 protected:
  void SetUp() override {
    Accounts::SetUp();
    machine().accounts().addDomain(L"CORP", L"S-1-5-21-11-22-33");
    machine().accounts().addUser(L"CORP", kUser, 1104);
    machine().accounts().setProcessUser(std::wstring(L"CORP\\") + kUser);
    machine().sessions().setUser(L"CORP", kUser);
    machine().network().setAlive(true);
    machine().network().addPrincipal(L"Quetzalcoatl@corp.example", L"CORP\\Quetzalcoatl");
    put(kOwnCache, L"corp.example", L"CORP");
    put(kSystemCache, L"CORP", L"corp.example");
    put(kUserCache, L"Quetzalcoatl.CORP", kSid);
    put(kProfile, L"ProfileImagePath", L"C:\\Users\\Xolotl");
  }

  // Of functions that hand out both names.
  template <class Char, class Function>
  static Operation pair(const char* name, Function function) {
    return {name, [=]() -> DWORD {
              GuardedBuffer<Char> user(64), domain(64);
              DWORD userSize = 64, domainSize = 64;
              const int result = function(user.data(), &userSize, domain.data(), &domainSize);
              EXPECT_TRUE(user.untouched(result == 0 ? 13 : 0) && domain.untouched(result == 0 ? 5 : 0));
              EXPECT_EQ(userSize + domainSize, result == 0 ? 18u : 128u);
              EXPECT_TRUE(result != 0 || user.data() == as<Char>("Quetzalcoatl"));
              EXPECT_TRUE(result != 0 || domain.data() == as<Char>("CORP"));
              return static_cast<DWORD>(result);
            }};
  }
  // Of functions that hand out a text, and their size after a success. A failure leaves both; the chain puts a cache's
  // domain into the buffer before it can fail.
  template <class Char, class Function>
  static Operation single(const char* name, const char* text, DWORD success, Function function) {
    return {name, [=]() -> DWORD {
              GuardedBuffer<Char> buffer(65);
              DWORD size = 64;
              SetLastError(kUntouchedError);
              const BOOL result = function(buffer.data(), &size);
              const DWORD code = result ? 0 : GetLastError();
              EXPECT_TRUE(buffer.guardsIntact());
              EXPECT_TRUE(!result || (size == success && buffer.data() == as<Char>(text)));
              EXPECT_TRUE(result || name == "decompose"sv || (size == 64 && buffer.untouched()));
              return code;
            }};
  }
  template <class Width>
  static std::vector<Operation> inWidth() {
    using Char = typename Width::Char;
    static const auto upn = as<Char>("Quetzalcoatl@corp.example"), suffix = as<Char>("corp.example");
    return {
        pair<Char>("convert", [](auto... out) { return Width::convert(upn.c_str(), suffix.c_str(), out...); }),
        pair<Char>("currentUser", Width::currentUser),
        single<Char>("decompose", "CORP\\Quetzalcoatl", 18,
                     [](auto... out) { return Width::decompose(upn.c_str(), out...); }),
        single<Char>("systemCache", "CORP", 4, [](auto... out) { return Width::systemCache(suffix.c_str(), out...); })};
  }
  static std::vector<Operation> operations() {
    std::vector<Operation> all = inWidth<Narrow>();
    for (const Operation& operation : inWidth<Wide>()) {
      all.push_back(operation);
    }
    all.push_back(pair<wchar_t>("processUser", &vlNetGetCurrentProcessUserAndDomainW));
    all.push_back(single<wchar_t>("initialName", "Xolotl", 7, [](auto... out) {
      return vlNetGetInitialUserNameBeforeRenameW(kUser, L"CORP", out...);
    }));
    all.push_back({"lookUp", [] {
                     PSID sid = nullptr;
                     SetLastError(kUntouchedError);
                     const DWORD code = vlNetLookupUserNameW(kUser, L"CORP", &sid) ? 0 : GetLastError();
                     EXPECT_EQ(sid != nullptr, code == 0);
                     HeapFree(GetProcessHeap(), 0, sid);
                     return code;
                   }});
    return all;
  }
  // Takes the log, in which there is no user's name.
  static std::size_t recordsWithoutNames(LogCapture& log) {
    const Log records = log.take();
    for (const LogRecord& record : records) {
      for (const std::wstring name : {kUser, L"Xolotl"}) {
        const auto has = [&](const Bytes& bytes) {
          return std::search(record.data.begin(), record.data.end(), bytes.begin(), bytes.end()) != record.data.end();
        };
        EXPECT_EQ(record.text.find(name), std::wstring::npos) << testing::PrintToString(record.text);
        EXPECT_FALSE(has(bytesOf<wchar_t>(name)) || has(bytesOf<char>(std::string(name.begin(), name.end()))));
      }
    }
    return records.size();
  }
};

// The number of the call that failed is the result, or another route made it good. User names never reach the log.
TEST_F(OnMachine, EveryPlatformCallThatFailsEndsWellOrIsMadeGood) {
  const std::set<std::string> ownNumber = {"8 HeapAlloc", "2 LoadLibraryW", "2 GetProcAddress"};
  std::set<std::string> decisive;
  int reached = 0, failures = 0;
  std::size_t seen = 0;
  LogCapture log;
  for (const bool online : {true, false}) {
    for (const Operation& operation : operations()) {
      reached += sweepFaults(
          operation.name + (online ? " online" : " offline"),
          [&](auto arm) {
            machine().network().setAlive(online);
            arm();
            return operation.call();
          },
          [&](DWORD code, const std::string& failed, FaultSpan span) {
            EXPECT_TRUE(code == 0 || !failed.empty()) << code;
            EXPECT_NE(code, kUntouchedError);
            if (code != 0 && span == FaultSpan::once) {
              EXPECT_TRUE(code == kSweepCode || ownNumber.contains(std::to_string(code) + " " + failed)) << code;
              decisive.insert(operation.name + " " + failed);
            }
            failures += code != 0;
            expectNothingOpen();
            seen += recordsWithoutNames(log);
          });
    }
  }
  std::wstring user, domain;
  vlNetConvertUserIdToNETBIOS(std::wstring(L"CORP\\") + kUser, L"", user, domain);
  EXPECT_GT(recordsWithoutNames(log), 0u);
  RecordProperty("faults", reached);
  if (!isWholeSweep()) {
    return;
  }
  EXPECT_GT(failures, 60);
  EXPECT_GT(reached, failures);
  EXPECT_GT(seen, 1000u);
  for (const char* const call :
       {"processUser OpenProcessToken", "processUser GetTokenInformation", "processUser LsaOpenPolicy",
        "processUser LsaLookupSids", "processUser HeapAlloc", "lookUp LsaOpenPolicy", "lookUp CopySid",
        "lookUp HeapAlloc", "initialName RegQueryValueExW", "decompose LoadLibraryW", "decompose GetProcAddress",
        "currentUser WTSQuerySessionInformationW", "currentUser WTSQuerySessionInformationA"}) {
    EXPECT_TRUE(decisive.contains(call)) << call;
  }
}

TEST_F(OnMachine, QueriesOfTheSessionThatFail) {
  const std::wstring name = L"GetCurrentUserAndDomain";
  for (const std::uint64_t n : {1, 2}) {
    faults().watch();
    faults().fail("WTSQuerySessionInformationW", n, FaultSpan::once, 7022);
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

// Strings may throw; whatever the function holds then is released.
TEST_F(OnMachine, AllocationsThatFailLeaveNothingOpen) {
  int thrown = 0;
  for (const Operation& operation : operations()) {
    for (std::uint64_t n = 1; n < 40; ++n) {
      machine().network().setAlive(n % 2 == 0);
      AllocFault fault(n);
      try {
        operation.call();
      } catch (const std::bad_alloc&) {
        ++thrown;
      }
      fault.end();
      expectNothingOpen();
    }
  }
  EXPECT_GT(thrown, 5);
}

TEST_F(OnMachine, AHundredThreadsAtOnce) {
  std::atomic<int> good{0};
  std::vector<std::thread> threads;
  const auto own = [](const wchar_t* prefix, int i) { return prefix + std::to_wstring(i); };
  for (int i = 0; i < 100; ++i) {
    threads.emplace_back([=, &good] {
      for (const Operation& operation : operations()) {
        good += operation.call() == 0;
      }
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
  EXPECT_EQ(good, 100 * static_cast<int>(operations().size() + 1));
  for (int i = 0; i < 100; ++i) {
    const auto expected = std::pair{DWORD{REG_SZ}, terminated(own(L"D", i))};
    EXPECT_EQ(Key(kOwnCache).stored(own(L"s", i).c_str()), expected);
  }
}

}  // namespace
}  // namespace accounts
