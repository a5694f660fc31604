// SIDs of accounts, live and from the registry's memory, and names from before a rename.
#include "fixture.h"

#ifdef _WIN32
#include <ntsecapi.h>
#include <sddl.h>
#endif

namespace accounts {
namespace {

constexpr const wchar_t* kSid = L"S-1-5-21-11-22-33-1104";
constexpr const wchar_t* kProfiles =
    L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\ProfileList\\S-1-5-21-11-22-33-1104";

// The text of a block of the process heap, which is released.
std::wstring textAndFree(PSID sid) {
  LPWSTR text = nullptr;
  EXPECT_TRUE(ConvertSidToStringSidW(sid, &text));
  std::wstring result = text != nullptr ? text : L"";
  LocalFree(text);
  EXPECT_TRUE(HeapFree(GetProcessHeap(), 0, sid));
  return result;
}

struct Lookup {
  BOOL result;
  DWORD lastError;
  std::wstring sid;

  Lookup(const wchar_t* user, const wchar_t* domain) {
    PSID block = nullptr;
    SetLastError(kUntouchedError);
    result = vlNetLookupUserNameW(user, domain, &block);
    lastError = GetLastError();
    EXPECT_EQ(block != nullptr, result != 0);
    sid = block != nullptr ? textAndFree(block) : L"";
  }
};

std::wstring askedName;

// The authority's answer in place of the platform's: it knows nobody.
NTSTATUS WINAPI knowsNobody(LSA_HANDLE, ULONG flags, ULONG count, LSA_UNICODE_STRING* name,
                            LSA_REFERENCED_DOMAIN_LIST**, LSA_TRANSLATED_SID2**) {
  EXPECT_EQ(flags, 0u);
  EXPECT_EQ(count, 1u);
  EXPECT_EQ(name->MaximumLength, name->Length + sizeof(wchar_t));
  askedName.assign(name->Buffer, name->Length / sizeof(wchar_t));
  return static_cast<NTSTATUS>(0xC0000073);
}

class LookupName : public Accounts {
 protected:
  void SetUp() override {
    Accounts::SetUp();
    nobody_.emplace(L"advapi32.dll", std::vector<support::EntryPoint>{{"LsaLookupNames2", entry(&knowsNobody)}});
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, kProfiles);
    askedName.clear();
  }
  void TearDown() override {
    nobody_.reset();
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, kProfiles);
    Accounts::TearDown();
  }
  std::optional<EntryPoints> nobody_;
};

TEST_F(LookupName, NamesAskedAndRemembered) {
  const struct {
    const wchar_t* user;
    const wchar_t* domain;
    const wchar_t* asked;
    const wchar_t* value;
  } rows[] = {{L"alice", L"CORP", L"CORP\\alice", L"alice.CORP"},
              {L"alice", L"", L"alice", L"alice"},
              {L"CORP\\alice", L"CORP", L"CORP\\alice", L"CORP\\alice.CORP"},
              {L"CORP\\alice", L"", L"CORP\\alice", L"CORP\\alice"}};
  for (const auto& row : rows) {
    removeCaches();
    put(kUserCache, row.value, kSid);
    EXPECT_EQ(Lookup(row.user, row.domain).sid, kSid) << testing::PrintToString(row.value);
    EXPECT_EQ(askedName, row.asked);
  }
  // Too long for a counted string: not asked, and not known.
  askedName.clear();
  EXPECT_EQ(Lookup(std::wstring(70000, L'u').c_str(), L"CORP").result, FALSE);
  EXPECT_EQ(askedName, L"");
}

TEST_F(LookupName, CachedTextsAreBounded) {
  Bytes odd = bytesOf<wchar_t>(kSid);
  odd.push_back(0x41);
  const struct {
    const char* what;
    Bytes data;
    DWORD type;
    bool good;
  } rows[] = {{"terminated", bytesOf(L"S-1-5-21-11-22-33-1104\0"sv), REG_SZ, true},
              {"no terminator", bytesOf<wchar_t>(kSid), REG_SZ, true},
              {"odd length, another type", odd, REG_BINARY, true},
              {"more behind", bytesOf(L"S-1-5-21-11-22-33-1104\0\0garbage"sv), REG_BINARY, true},
              {"no SID", bytesOf(L"S-1-garbage\0"sv), REG_SZ, false}};
  for (const auto& row : rows) {
    Key::create(kUserCache).set(L"alice.CORP", row.type, row.data);
    const Lookup found(L"alice", L"CORP");
    EXPECT_EQ(found.sid, row.good ? kSid : L"") << row.what;
    EXPECT_TRUE(row.good || (found.lastError != 0 && found.lastError != kUntouchedError)) << row.what;
  }
}

TEST_F(LookupName, RecordsOfAFailure) {
  const auto expected = [](const std::vector<std::pair<int, std::wstring>>& cache) {
    Lines lines = {{TXLOG_TRACE, L"vlNetLookupUserNameW LsaLookupNames2 failed, we'll use the UserCache"},
                   {TXLOG_ENTRY, L"vlNetGetSidFromUserCacheW"},
                   {TXLOG_TRACE, L"vlNetGetSidFromUserCacheW username"},
                   {TXLOG_TRACE, L"vlNetGetSidFromUserCacheW domain = CORP"}};
    lines.insert(lines.end(), cache.begin(), cache.end());
    lines.push_back({TXLOG_EXIT, L"vlNetGetSidFromUserCacheW"});
    lines.push_back({TXLOG_EXIT, L"vlNetLookupUserNameW"});
    return lines;
  };
  wchar_t computer[256];
  DWORD chars = 256;
  ASSERT_TRUE(GetComputerNameW(computer, &chars));
  const Lines begin = {{TXLOG_ENTRY, L"vlNetLookupUserNameW"},
                       {TXLOG_TRACE, L"vlNetLookupUserNameW username"},
                       {TXLOG_TRACE, L"vlNetLookupUserNameW domain = CORP"},
                       {TXLOG_TRACE, std::wstring(L"vlNetLookupUserNameW Computer name \\\\") + computer}};
  const Lines noAnswer = {{TXLOG_ERROR, L"vlNetLookupUserNameW LsaLookupNames2 failed (1332)"}};
  const Lines noEntry = {{TXLOG_ERROR, L"vlNetLookupUserNameW GetProcAddress LsaLookupNames2() Failed"}};
  const Lines noKey = {{TXLOG_ERROR, std::wstring(L"vlNetGetSidFromUserCacheW Can't open registry key ") + kUserCache}};
  const Lines noValue = {{TXLOG_ERROR, L"vlNetGetSidFromUserCacheW Can't get buffer size for registry value (2)"}};
  const Lines noSid = {{TXLOG_ERROR, L"vlNetGetSidFromUserCacheW Can't convert string sid to valid sid"}};
  const auto check = [&](const Lines& live, const Lines& cache, DWORD lastError) {
    support::LogCapture log;
    const Lookup failed(L"alice", L"CORP");
    EXPECT_FALSE(failed.result);
    if (lastError != 0) {
      EXPECT_EQ(failed.lastError, lastError);
    }
    Lines lines = begin;
    for (const Lines& more : {live, expected(cache)}) {
      lines.insert(lines.end(), more.begin(), more.end());
    }
    EXPECT_TRUE(log.was(records(lines)));
  };
  check(noAnswer, noKey, 2);
  put(kUserCache, L"alice", kSid);
  check(noAnswer, noValue, 2);
  put(kUserCache, L"alice.CORP", L"none");
  check(noAnswer, noSid, 0);
  const EntryPoints none(L"advapi32.dll", {{"LsaLookupNames2", nullptr}});
  check(noEntry, noSid, 0);
  support::LogCapture log;
  const Lookup empty(L"", L"CORP");
  EXPECT_FALSE(empty.result);
  EXPECT_EQ(empty.lastError, kUntouchedError);
  EXPECT_TRUE(log.was(records({begin[0], begin[1], begin[2], {TXLOG_EXIT, L"vlNetLookupUserNameW"}})));
}

TEST_F(LookupName, NameBeforeARename) {
  put(kUserCache, L"alice.CORP", kSid);
  const std::wstring longest = L"C:\\" + std::wstring(123, L'u');
  const struct {
    std::optional<std::wstring> path;
    DWORD capacity;
    DWORD lastError;  // 0: success
    DWORD size;
    const wchar_t* name;
  } rows[] = {
      {L"C:\\Users\\smith", 6, 0, 6, L"smith"},
      {L"%SystemDrive%\\Users\\smith.CORP", 30, 0, 11, L"smith.CORP"},
      {L"C:\\Users\\", 1, 0, 1, L""},
      {L"C:\\Users\\smith", 5, 234, 6, nullptr},
      {L"C:\\Users\\smith", 0, 234, 6, nullptr},
      {longest, 200, 0, 124, longest.c_str() + 3},
      {longest + L'u', 200, 234, 200, nullptr},
      {L"smith", 30, kUntouchedError, 30, nullptr},
      {std::nullopt, 30, 2, 30, nullptr},
  };
  for (const auto& row : rows) {
    const Key key = Key::create(kProfiles);
    RegDeleteValueW(key.get(), L"ProfileImagePath");
    if (row.path) {
      put(kProfiles, L"ProfileImagePath", *row.path);
    }
    GuardedBuffer<wchar_t> name(200);
    DWORD size = row.capacity;
    SetLastError(kUntouchedError);
    support::LogCapture log(TXLOG_LEVEL_BIT(TXLOG_ERROR) | TXLOG_LEVEL_BIT(TXLOG_TRACE));
    EXPECT_EQ(vlNetGetInitialUserNameBeforeRenameW(L"alice", L"CORP", name.data(), &size) != 0, row.lastError == 0);
    if (row.lastError != 0) {
      EXPECT_EQ(GetLastError(), row.lastError);
    }
    EXPECT_EQ(size, row.size);
    EXPECT_TRUE(name.untouched(row.name != nullptr ? size : 0));
    const auto last = log.take().back();
    if (row.name != nullptr) {
      EXPECT_STREQ(name.data(), row.name);
      EXPECT_EQ(last,
                records({{TXLOG_TRACE, L"vlNetGetInitialUserNameBeforeRenameW Initial user name before rename "}})[0]);
    } else if (row.lastError == kUntouchedError) {
      EXPECT_EQ(last, records({{TXLOG_ERROR,
                                L"vlNetGetInitialUserNameBeforeRenameW invalid format for value "
                                L"'ProfileImagePath': smith "}})[0]);
    }
  }
  put(kProfiles, L"ProfileImagePath", L"C:\\Users\\smith");
  DWORD size = 50;
  EXPECT_FALSE(vlNetGetInitialUserNameBeforeRenameW(L"alice", L"CORP", nullptr, &size));
  EXPECT_EQ(GetLastError(), 234u);
  EXPECT_EQ(size, 6u);
  Key::create(kProfiles).set(L"ProfileImagePath", REG_SZ, bytesOf(L"C:\\Users\\jones"sv));  // no terminator
  wchar_t name[8];
  size = 8;
  EXPECT_TRUE(vlNetGetInitialUserNameBeforeRenameW(L"alice", L"CORP", name, &size));
  EXPECT_STREQ(name, L"jones");

  RegDeleteKeyW(HKEY_LOCAL_MACHINE, kProfiles);
  support::LogCapture log;
  EXPECT_FALSE(vlNetGetInitialUserNameBeforeRenameW(L"alice", L"CORP", nullptr, &size));
  EXPECT_EQ(GetLastError(), 2u);
  const auto seen = log.take();
  const auto end =
      records({{TXLOG_TRACE, std::wstring(L"vlNetGetInitialUserNameBeforeRenameW SID : ") + kSid},
               {TXLOG_ERROR,
                std::wstring(L"vlNetGetInitialUserNameBeforeRenameW Can't open registry key ") + kProfiles + L" (2)"},
               {TXLOG_EXIT, L"vlNetGetInitialUserNameBeforeRenameW"}});
  ASSERT_GE(seen.size(), end.size());
  EXPECT_EQ(std::vector(seen.end() - 3, seen.end()), end);
  EXPECT_FALSE(vlNetGetInitialUserNameBeforeRenameW(L"", L"CORP", nullptr, &size));
  EXPECT_EQ(GetLastError(), 87u);
}

// With the platform's own authority.
using LiveLookup = Accounts;

TEST_F(LiveLookup, AnswersAreRemembered) {
  wchar_t user[256];
  wchar_t domain[256];
  DWORD userSize = 256;
  DWORD domainSize = 256;
  ASSERT_EQ(vlNetGetCurrentProcessUserAndDomainW(user, &userSize, domain, &domainSize), 0);
  HANDLE token = nullptr;
  ASSERT_TRUE(OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token));
  wchar_t sid[256];
  DWORD bytes = sizeof sid;
  EXPECT_TRUE(vlSysObtainSIDW(token, sid, &bytes));
  CloseHandle(token);

  const auto stores = [&](const wchar_t* userName, const wchar_t* domainName, const Lines& error) {
    support::LogCapture log;
    EXPECT_EQ(Lookup(userName, domainName).sid, sid);
    Lines lines = {{TXLOG_ENTRY, L"vlNetAddSidToUserCacheW"},
                   {TXLOG_TRACE, L"vlNetAddSidToUserCacheW username"},
                   {TXLOG_TRACE, std::wstring(L"vlNetAddSidToUserCacheW domain = ") + domainName}};
    lines.insert(lines.end(), error.begin(), error.end());
    lines.push_back({TXLOG_EXIT, L"vlNetAddSidToUserCacheW"});
    lines.push_back({TXLOG_EXIT, L"vlNetLookupUserNameW"});
    auto seen = log.take();
    ASSERT_GT(seen.size(), 4u);
    seen.erase(seen.begin(), seen.begin() + 4);
    EXPECT_EQ(seen, records(lines));
  };
  stores(user, domain, {{TXLOG_ERROR, L"vlNetAddSidToUserCacheW Can't open UserCache key"}});
  const std::wstring value = std::wstring(user) + L"." + domain;
  put(kUserCache, value.c_str(), L"older");
  stores(user, domain, {});
  stores((std::wstring(domain) + L"\\" + user).c_str(), L"", {});
  const auto expected = std::pair{DWORD{REG_SZ}, bytesOf<wchar_t>({sid, std::wcslen(sid) + 1})};
  EXPECT_EQ(Key(kUserCache).stored(value.c_str()), expected);
  EXPECT_EQ(Key(kUserCache).stored((std::wstring(domain) + L"\\" + user).c_str()), expected);
  // What nobody knows is not stored.
  EXPECT_EQ(Lookup(L"nobodyofthisname", domain).lastError, 2u);
}

}  // namespace
}  // namespace accounts
