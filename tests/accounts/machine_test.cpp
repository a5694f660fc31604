// Platform calls and allocations that fail, what reaches the log, and many threads. Native only.
#include <functional>
#include <thread>

#include <support/allocfault.h>

#include "fixture.h"

namespace accounts {
namespace {

using vlplatform::FaultSpan;

constexpr const wchar_t* kSid = L"S-1-5-21-11-22-33-1104";
constexpr const wchar_t* kProfiles =
    L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\ProfileList\\S-1-5-21-11-22-33-1104";
constexpr const wchar_t* kUser = L"Quetzalcoatl";

// What a call gave, and whether it kept to what it promises about buffers.
struct Outcome {
  bool success;
  DWORD code;  // of the failure
};

struct Operation {
  const char* name;
  std::function<Outcome()> call;
};

class OnMachine : public Accounts {
 protected:
  void SetUp() override {
    Accounts::SetUp();
    describe();
    faults().watch();
  }
  static void describe() {
    machine().accounts().addDomain(L"CORP", L"S-1-5-21-11-22-33");
    machine().accounts().addUser(L"CORP", kUser, 1104);
    machine().accounts().setProcessUser(std::wstring(L"CORP\\") + kUser);
    machine().sessions().setUser(L"CORP", kUser);
    machine().network().addPrincipal(L"Quetzalcoatl@corp.example", L"CORP\\Quetzalcoatl");
    put(kOwnCache, L"corp.example", L"CORP");
    put(kSystemCache, L"CORP", L"corp.example");
    put(kUserCache, L"Quetzalcoatl.CORP", kSid);
    put(kProfiles, L"ProfileImagePath", L"C:\\Users\\Xolotl");
  }

  // Two buffers of one width, and a function that fills them.
  template <class Char, class Function>
  static Operation pair(const char* name, Function function) {
    return {name, [function]() -> Outcome {
              GuardedBuffer<Char> user(64);
              GuardedBuffer<Char> domain(64);
              DWORD userSize = 64;
              DWORD domainSize = 64;
              const int result = function(user.data(), &userSize, domain.data(), &domainSize);
              EXPECT_TRUE(user.untouched(result == 0 ? 13 : 0));
              EXPECT_TRUE(domain.untouched(result == 0 ? 5 : 0));
              EXPECT_EQ(userSize + domainSize, result == 0 ? 18u : 128u);
              if (result == 0) {
                EXPECT_EQ(user.data(), as<Char>("Quetzalcoatl"));
                EXPECT_EQ(domain.data(), as<Char>("CORP"));
              }
              return {result == 0, static_cast<DWORD>(result)};
            }};
  }
  template <class Function>
  static Operation boolean(const char* name, Function function) {
    return {name, [function]() -> Outcome {
              SetLastError(kUntouchedError);
              const BOOL result = function();
              return {result != 0, GetLastError()};
            }};
  }
  template <class Width>
  static void addBoth(std::vector<Operation>& all) {
    using Char = typename Width::Char;
    all.push_back(pair<Char>("convert", [](Char* user, DWORD* userSize, Char* domain, DWORD* domainSize) {
      return Width::convert(as<Char>("Quetzalcoatl@corp.example").c_str(), nullptr, user, userSize, domain, domainSize);
    }));
    all.push_back(pair<Char>("currentUser", Width::currentUser));
    all.push_back(boolean("decompose", [] {
      GuardedBuffer<Char> name(65);
      DWORD size = 64;
      const BOOL result = Width::decompose(as<Char>("Quetzalcoatl@corp.example").c_str(), name.data(), &size);
      EXPECT_TRUE(name.guardsIntact());
      if (result) {
        EXPECT_EQ(name.data(), as<Char>("CORP\\Quetzalcoatl"));
        EXPECT_EQ(size, 18u);
      }
      return result;
    }));
    all.push_back(boolean("systemCache", [] {
      GuardedBuffer<Char> name(65);
      DWORD size = 64;
      const BOOL result = Width::systemCache(as<Char>("corp.example").c_str(), name.data(), &size);
      EXPECT_TRUE(name.untouched(result ? 5 : 0));
      EXPECT_EQ(size, result ? 4u : 64u);
      return result;
    }));
  }
  static std::vector<Operation> operations() {
    std::vector<Operation> all;
    addBoth<Narrow>(all);
    addBoth<Wide>(all);
    all.push_back(pair<wchar_t>("processUser", &vlNetGetCurrentProcessUserAndDomainW));
    all.push_back(boolean("lookUp", [] {
      PSID sid = nullptr;
      const BOOL result = vlNetLookupUserNameW(kUser, L"CORP", &sid);
      EXPECT_EQ(sid != nullptr, result != 0);
      const DWORD lastError = GetLastError();
      HeapFree(GetProcessHeap(), 0, sid);
      SetLastError(lastError);
      return result;
    }));
    all.push_back(boolean("initialName", [] {
      GuardedBuffer<wchar_t> name(65);
      DWORD size = 64;
      const BOOL result = vlNetGetInitialUserNameBeforeRenameW(kUser, L"CORP", name.data(), &size);
      EXPECT_TRUE(name.untouched(result ? 7 : 0));
      EXPECT_EQ(size, result ? 7u : 64u);
      if (result) {
        EXPECT_STREQ(name.data(), L"Xolotl");
      }
      return result;
    }));
    return all;
  }
};

TEST_F(OnMachine, EveryPlatformCallThatFailsEndsWellOrIsMadeGood) {
  constexpr DWORD kCode = 4321;
  int faultsReached = 0;
  int failures = 0;
  for (const bool online : {true, false}) {
    machine().network().setAlive(online);
    for (const Operation& operation : operations()) {
      for (const FaultSpan span : {FaultSpan::once, FaultSpan::forEver}) {
        for (std::uint64_t n = 1;; ++n) {
          faults().watch();
          faults().failAny(n, span, kCode);
          const Outcome outcome = operation.call();
          const std::string failed = faults().callName(n);
          faults().watch();
          EXPECT_TRUE(outcome.success || (outcome.code != 0 && outcome.code != kUntouchedError))
              << operation.name << ", call " << n << " " << failed;
          expectNothingOpen();
          if (failed.empty()) {
            EXPECT_TRUE(outcome.success) << operation.name;
            break;
          }
          ++faultsReached;
          failures += !outcome.success;
        }
      }
    }
  }
  RecordProperty("faults", faultsReached);
  EXPECT_GT(failures, 60);
  EXPECT_GT(faultsReached, failures);
}

TEST_F(OnMachine, TheCodeOfTheCallThatFailedIsTheResult) {
  const struct {
    const char* function;
    const char* operation;
    std::uint64_t n;
    DWORD code;  // of the outcome
  } rows[] = {{"OpenProcessToken", "processUser", 1, 4321},
              {"GetTokenInformation", "processUser", 1, 4321},
              {"GetTokenInformation", "processUser", 2, 4321},
              {"LsaOpenPolicy", "processUser", 1, 4321},
              {"LsaLookupSids", "processUser", 1, 4321},
              {"HeapAlloc", "processUser", 1, 8},
              {"LsaOpenPolicy", "lookUp", 1, 4321},
              {"CopySid", "lookUp", 1, 4321},
              {"HeapAlloc", "lookUp", 1, 8},
              {"LsaOpenPolicy", "initialName", 1, 4321},
              {"RegQueryValueExW", "initialName", 1, 4321},
              {"LoadLibraryW", "decompose", 1, 2},
              {"GetProcAddress", "decompose", 1, 2},
              {"WTSQuerySessionInformationW", "currentUser", 2, 4321},
              {"WTSQuerySessionInformationA", "currentUser", 1, 4321}};
  for (const auto& row : rows) {
    bool reached = false;
    for (const Operation& operation : operations()) {
      if (operation.name == std::string_view(row.operation)) {
        faults().watch();
        faults().fail(row.function, row.n, FaultSpan::once, 4321);
        const Outcome outcome = operation.call();
        if (faults().calls(row.function) >= row.n) {
          reached = true;
          EXPECT_FALSE(outcome.success) << row.operation << " " << row.function;
          EXPECT_EQ(outcome.code, row.code) << row.operation << " " << row.function;
        }
      }
    }
    EXPECT_TRUE(reached) << row.function;
  }
}

// Strings may throw; whatever the function holds then is released, and what it does without them succeeds.
TEST_F(OnMachine, AllocationsThatFailLeaveNothingOpen) {
  int thrown = 0;
  for (const Operation& operation : operations()) {
    if (operation.name == std::string_view("decompose")) {
      continue;  // makes no strings; the test's own would fail
    }
    for (std::uint64_t n = 1; n < 40; ++n) {
      machine().network().setAlive(n % 2 == 0);
      support::AllocFault fault(n);
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

TEST_F(OnMachine, UserNamesStayOutOfTheLog) {
  support::LogCapture log;
  int seen = 0;
  for (const bool online : {true, false}) {
    for (std::uint64_t n = 0; n < 60; ++n) {
      machine().network().setAlive(online);
      for (const Operation& operation : operations()) {
        faults().watch();
        if (n != 0) {
          faults().failAny(n, FaultSpan::once, 4321);
        }
        operation.call();
        std::wstring user;
        std::wstring domain;
        vlNetConvertUserIdToNETBIOS(std::wstring(L"CORP\\") + kUser, L"", user, domain);
      }
      for (const LogRecord& record : log.take()) {
        ++seen;
        EXPECT_EQ(record.text.find(kUser), std::wstring::npos) << testing::PrintToString(record.text);
        const auto inData = [&](const Bytes& name) {
          return std::search(record.data.begin(), record.data.end(), name.begin(), name.end()) != record.data.end();
        };
        EXPECT_FALSE(inData(bytesOf<wchar_t>(kUser)) || inData(bytesOf<char>("Quetzalcoatl")));
        EXPECT_EQ(record.text.find(L"Xolotl"), std::wstring::npos) << testing::PrintToString(record.text);
      }
    }
  }
  EXPECT_GT(seen, 1000);
}

TEST_F(OnMachine, AHundredThreadsAtOnce) {
  std::atomic<int> good{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < 100; ++i) {
    threads.emplace_back([i, &good] {
      for (const Operation& operation : operations()) {
        good += operation.call().success;
      }
      // Each has a suffix of its own, and all write to one key.
      const std::wstring upn = L"u" + std::to_wstring(i) + L"@s" + std::to_wstring(i);
      machine().network().addPrincipal(upn, L"D" + std::to_wstring(i) + L"\\u");
      wchar_t name[32];
      DWORD size = 31;
      good += vlNetGetUserNameDomainFromUPNW(upn.c_str(), name, &size) && name[1] == std::to_wstring(i)[0];
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(good, 100 * static_cast<int>(operations().size() + 1));
  const Key key(kOwnCache);
  for (int i = 0; i < 100; ++i) {
    const auto stored = key.stored((L"s" + std::to_wstring(i)).c_str());
    const std::wstring domain = L"D" + std::to_wstring(i);
    ASSERT_TRUE(stored);
    EXPECT_EQ(stored->second, bytesOf<wchar_t>({domain.c_str(), domain.size() + 1}));
  }
}

}  // namespace
}  // namespace accounts
