// The session's user and the process's.
#include "fixture.h"

#ifdef _WIN32
#include <wtsapi32.h>
#endif

namespace accounts {
namespace {

template <class Width>
class CurrentUser : public Accounts {};
using Widths = testing::Types<Narrow, Wide>;
TYPED_TEST_SUITE(CurrentUser, Widths);

TYPED_TEST(CurrentUser, SizeProtocolAndRecords) {
  using Char = typename TypeParam::Char;
  using String = std::basic_string<Char>;
  support::LogCapture log;
  String user = as<Char>("before");
  String domain = user;
  ASSERT_EQ(vlNetGetCurrentUserAndDomain(user, domain), 0);
  const bool wide = sizeof(Char) != 1;
  auto overload = records({{TXLOG_ENTRY, wide ? L"GetCurrentUserAndDomain" : L"GetCurrentUserAndDomain std::string"},
                           {TXLOG_TRACE, L"GetCurrentUserAndDomain Retrieve username and domain"}});
  overload.push_back(binary(L"GetCurrentUserAndDomain Domain", domain));
  overload.push_back({L"txhostkit", TXLOG_EXIT, L"GetCurrentUserAndDomain (0)"});
  EXPECT_TRUE(log.was(overload));

  const DWORD userLength = static_cast<DWORD>(user.size());
  const DWORD domainLength = static_cast<DWORD>(domain.size());
  const std::wstring name = std::wstring(L"vlNetGetCurrentUserAndDomain") + TypeParam::letter;
  const auto pair = [](DWORD capacity, DWORD needed) {
    return L" (" + std::to_wstring(capacity) + L" < " + std::to_wstring(needed) + L")";
  };
  const struct {
    bool hasUser;
    bool hasDomain;
    DWORD userCapacity;
    DWORD domainCapacity;
    int result;
    bool userWritten;
    bool domainWritten;
    std::wstring error;
  } rows[] = {
      {true, true, userLength + 1, domainLength + 1, 0, true, true, L""},
      {true, true, userLength, 0, 122, false, false,
       L" Insufficient buffer for user's name" + pair(userLength, userLength + 1)},
      {true, true, 100, domainLength, 122, true, false,
       L" Insufficient buffer for user's account domain" + pair(domainLength, domainLength + 1)},
      {false, true, 0, 100, 0, false, true, L""},
      {true, false, 100, 0, 0, true, false, L""},
      {false, false, 0, 0, 0, false, false, L""},
  };
  for (const auto& row : rows) {
    GuardedBuffer<Char> userOut(256);
    GuardedBuffer<Char> domainOut(256);
    DWORD userSize = row.userCapacity;
    DWORD domainSize = row.domainCapacity;
    Char* const domainBuffer = row.hasDomain ? domainOut.data() : nullptr;
    EXPECT_EQ(TypeParam::currentUser(row.hasUser ? userOut.data() : nullptr, &userSize, domainBuffer, &domainSize),
              row.result);
    EXPECT_EQ(userSize, userLength + 1);
    EXPECT_EQ(domainSize, domainLength + 1);
    EXPECT_TRUE(userOut.untouched(row.userWritten ? userSize : 0));
    EXPECT_TRUE(domainOut.untouched(row.domainWritten ? domainSize : 0));
    if (row.userWritten) {
      EXPECT_EQ(userOut.data(), user);
    }
    if (row.domainWritten) {
      EXPECT_EQ(domainOut.data(), domain);
    }
    std::vector<LogRecord> expected =
        records({{TXLOG_ENTRY, name + L" (" + pointer(&userSize) + L"," + pointer(domainBuffer) + L"," +
                                   pointer(&domainSize) + L")"}});
    expected.insert(expected.end(), overload.begin(), overload.end());
    if (!row.error.empty()) {
      expected.push_back({L"txhostkit", TXLOG_ERROR, name + row.error});
    }
    expected.push_back({L"txhostkit", TXLOG_EXIT, name + L" (" + std::to_wstring(row.result) + L")"});
    EXPECT_TRUE(log.was(expected));
  }
  DWORD size = 5;
  EXPECT_EQ(TypeParam::currentUser(nullptr, nullptr, nullptr, &size), 87);
  EXPECT_EQ(TypeParam::currentUser(nullptr, &size, nullptr, nullptr), 87);
  EXPECT_EQ(size, 5u);
  EXPECT_EQ(log.take()[1], records({{TXLOG_ERROR, name + L" invalid parameter"}})[0]);
}

using ProcessUser = Accounts;

TEST_F(ProcessUser, BothNamesOrNone) {
  wchar_t user[256];
  wchar_t domain[256];
  DWORD userSize = 256;
  DWORD domainSize = 256;
  ASSERT_EQ(vlNetGetCurrentProcessUserAndDomainW(user, &userSize, domain, &domainSize), 0);
  EXPECT_EQ(userSize, std::wcslen(user) + 1);
  EXPECT_EQ(domainSize, std::wcslen(domain) + 1);
  const struct {
    bool hasUser;
    bool hasDomain;
    DWORD userCapacity;
    DWORD domainCapacity;
    int result;
  } rows[] = {{true, true, userSize, domainSize, 0},  {true, true, userSize - 1, 200, 122},
              {true, true, 200, domainSize - 1, 122}, {true, true, 0, 0, 122},
              {false, true, 200, 200, 122},           {true, false, 200, 200, 122}};
  for (const auto& row : rows) {
    GuardedBuffer<wchar_t> userOut(256);
    GuardedBuffer<wchar_t> domainOut(256);
    DWORD userNeeded = row.userCapacity;
    DWORD domainNeeded = row.domainCapacity;
    EXPECT_EQ(vlNetGetCurrentProcessUserAndDomainW(row.hasUser ? userOut.data() : nullptr, &userNeeded,
                                                   row.hasDomain ? domainOut.data() : nullptr, &domainNeeded),
              row.result);
    EXPECT_EQ(userNeeded, userSize);
    EXPECT_EQ(domainNeeded, domainSize);
    EXPECT_TRUE(userOut.untouched(row.result == 0 ? userSize : 0));
    EXPECT_TRUE(domainOut.untouched(row.result == 0 ? domainSize : 0));
  }
  support::LogCapture log;
  EXPECT_EQ(vlNetGetCurrentProcessUserAndDomainW(user, nullptr, domain, &domainSize), 87);
  const auto seen = log.take();
  ASSERT_EQ(seen.size(), 3u);
  EXPECT_EQ(seen[0].text, L"vlNetGetCurrentProcessUserAndDomainW (" + pointer(nullptr) + L"," + pointer(domain) + L"," +
                              pointer(&domainSize) + L")");
  EXPECT_EQ(seen[1].level, TXLOG_ERROR);
  EXPECT_EQ(seen[2].level, TXLOG_EXIT);
}

#ifdef _WIN32
template <int Failing>
BOOL WINAPI queryFails(HANDLE, DWORD, WTS_INFO_CLASS what, LPWSTR* text, DWORD*) {
  if (what == Failing) {
    SetLastError(7022);
    return FALSE;
  }
  static const wchar_t* const names[] = {L"alice", L"CORP"};
  *text = static_cast<LPWSTR>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, 32));
  std::wcscpy(*text, names[what == WTSDomainName]);
  return TRUE;
}
VOID WINAPI freeName(PVOID block) {
  HeapFree(GetProcessHeap(), 0, block);
  SetLastError(1);
}

TEST_F(ProcessUser, QueriesOfTheSessionThatFail) {
  const struct {
    FARPROC query;
    const wchar_t* user;
    int level;
    const wchar_t* error;
  } rows[] = {{entry(&queryFails<WTSUserName>), L"before", TXLOG_EXIT,
               L"GetCurrentUserAndDomain Unable to get the username (7022)"},
              {entry(&queryFails<WTSDomainName>), L"alice", TXLOG_ERROR,
               L"GetCurrentUserAndDomain Unable to get the domain name (7022)"}};
  for (const auto& row : rows) {
    const support::ImportPatch query(L"vlhostkitu.dll", "WTSQuerySessionInformationW", row.query);
    const support::ImportPatch release(L"vlhostkitu.dll", "WTSFreeMemory", entry(&freeName));
    support::LogCapture log;
    std::wstring user = L"before";
    std::wstring domain = L"before";
    EXPECT_EQ(vlNetGetCurrentUserAndDomain(user, domain), 7022);
    EXPECT_EQ(user, row.user);
    EXPECT_EQ(domain, L"before");
    EXPECT_TRUE(log.was(records({{TXLOG_ENTRY, L"GetCurrentUserAndDomain"},
                                 {TXLOG_TRACE, L"GetCurrentUserAndDomain Retrieve username and domain"},
                                 {row.level, row.error}})));
  }
}
#endif

}  // namespace
}  // namespace accounts
