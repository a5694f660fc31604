// SIDs of accounts, live and from the registry's memory, and names from before a rename.
#include "fixture.h"

#ifdef _WIN32
#include <ntsecapi.h>
#include <sddl.h>
#endif

namespace accounts {
namespace {

const std::wstring kLookup = L"vlNetLookupUserNameW", kInitial = L"vlNetGetInitialUserNameBeforeRenameW";
const std::wstring kRead = L"vlNetGetSidFromUserCacheW", kStore = L"vlNetAddSidToUserCacheW";

struct Lookup {
  BOOL result;
  DWORD lastError;
  std::wstring sid;

  Lookup(const std::wstring& user, const std::wstring& domain) {
    PSID block = nullptr;
    SetLastError(kUntouchedError);
    result = vlNetLookupUserNameW(user.c_str(), domain.c_str(), &block);
    lastError = GetLastError();
    EXPECT_EQ(block != nullptr, result != 0);
    LPWSTR text = nullptr;
    if (block != nullptr && ConvertSidToStringSidW(block, &text)) {
      sid = text;
    }
    LocalFree(text);
    EXPECT_TRUE(block == nullptr || HeapFree(GetProcessHeap(), 0, block));
  }
};

std::wstring askedName;

// The authority's answer in place of the platform's: it knows nobody.
NTSTATUS WINAPI knowsNobody(LSA_HANDLE, ULONG flags, ULONG count, LSA_UNICODE_STRING* name,
                            LSA_REFERENCED_DOMAIN_LIST**, LSA_TRANSLATED_SID2**) {
  EXPECT_EQ(std::pair(flags, count), (std::pair<ULONG, ULONG>(0, 1)));
  EXPECT_EQ(name->MaximumLength, name->Length + sizeof(wchar_t));
  askedName.assign(name->Buffer, name->Length / sizeof(wchar_t));
  return static_cast<NTSTATUS>(0xC0000073);
}

const std::vector<EntryPoint> kNobody = {{"LsaLookupNames2", address(&knowsNobody)}};

using LookupName = Accounts;

TEST_F(LookupName, NamesAskedAndRemembered) {
  const EntryPoints nobody(L"advapi32.dll", kNobody);
  const struct {
    const wchar_t *user, *domain, *asked, *value;
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
  EXPECT_EQ(Lookup(std::wstring(70000, L'u'), L"CORP").result, FALSE);
  EXPECT_EQ(askedName, L"");
}

TEST_F(LookupName, CachedTextsAreBounded) {
  const EntryPoints nobody(L"advapi32.dll", kNobody);
  Bytes odd = bytesOf<wchar_t>(kSid);
  odd.push_back(0x41);
  const std::tuple<Bytes, DWORD, bool> rows[] = {{terminated(kSid), REG_SZ, true},
                                                 {bytesOf<wchar_t>(kSid), REG_SZ, true},
                                                 {odd, REG_BINARY, true},
                                                 {terminated(kSid + L"\0garbage"s), REG_BINARY, true},
                                                 {terminated(L"S-1-garbage"), REG_SZ, false}};
  for (const auto& [data, type, good] : rows) {
    Key::create(kUserCache).set(L"alice.CORP", type, data);
    const Lookup found(L"alice", L"CORP");
    EXPECT_EQ(found.sid, good ? kSid : L"");
    EXPECT_TRUE(good || (found.lastError != 0 && found.lastError != kUntouchedError));
  }
}

TEST_F(LookupName, RecordsOfAFailure) {
  std::optional<EntryPoints> points(std::in_place, L"advapi32.dll", kNobody);
  wchar_t computer[256];
  DWORD chars = 256;
  ASSERT_TRUE(GetComputerNameW(computer, &chars));
  const Log begin = {entered(kLookup), traced(kLookup + L" username"), traced(kLookup + L" domain = CORP")};
  LogCapture log;
  const auto check = [&](const std::wstring& live, const std::wstring& cache, DWORD lastError) {
    const Lookup failure(L"alice", L"CORP");
    EXPECT_FALSE(failure.result);
    EXPECT_TRUE(failure.lastError == lastError || lastError == 0);
    EXPECT_TRUE(log.was(begin + Log{traced(kLookup + L" Computer name \\\\" + computer), failed(kLookup + live),
                                    traced(kLookup + L" LsaLookupNames2 failed, we'll use the UserCache"),
                                    entered(kRead), traced(kRead + L" username"), traced(kRead + L" domain = CORP"),
                                    failed(kRead + cache), left(kRead), left(kLookup)}));
  };
  const std::wstring noAnswer = L" LsaLookupNames2 failed (1332)", noSid = L" Can't convert string sid to valid sid";
  check(noAnswer, std::wstring(L" Can't open registry key ") + kUserCache, 2);
  put(kUserCache, L"alice", kSid);
  check(noAnswer, L" Can't get buffer size for registry value (2)", 2);
  put(kUserCache, L"alice.CORP", L"none");
  check(noAnswer, noSid, 0);
  points.reset();
  points.emplace(L"advapi32.dll", std::vector<EntryPoint>{{"LsaLookupNames2", nullptr}});
  check(L" GetProcAddress LsaLookupNames2() Failed", noSid, 0);
  const Lookup empty(L"", L"CORP");
  EXPECT_FALSE(empty.result);
  EXPECT_EQ(empty.lastError, kUntouchedError);
  EXPECT_TRUE(log.was(begin + Log{left(kLookup)}));
}

TEST_F(LookupName, NameBeforeARename) {
  const EntryPoints nobody(L"advapi32.dll", kNobody);
  put(kUserCache, L"alice.CORP", kSid);
  const std::wstring longest = L"C:\\" + std::wstring(123, L'u'), smith = L"C:\\Users\\smith";
  const LogRecord done = traced(kInitial + L" Initial user name before rename ");
  const LogRecord unread = failed(kInitial + L" Can't read registry value 'ProfileImagePath' (234)");
  const LogRecord sid = traced(kInitial + L" SID : " + kSid);
  constexpr DWORD kNone = 99;  // no buffer
  const struct {
    std::optional<Bytes> path;
    DWORD capacity, lastError, size;
    const wchar_t* name;  // of a success
    LogRecord record;     // the last one before the exit
  } rows[] = {
      {terminated(smith), 6, 0, 6, L"smith", done},
      {bytesOf<wchar_t>(smith), 6, 0, 6, L"smith", done},
      {terminated(L"%SystemDrive%\\Users\\smith.CORP"), 30, 0, 11, L"smith.CORP", done},
      {terminated(L"C:\\Users\\"), 1, 0, 1, L"", done},
      {terminated(longest), 200, 0, 124, longest.c_str() + 3, done},
      {terminated(longest + L'u'), 200, 234, 200, nullptr, unread},
      {terminated(smith), 5, 234, 6, nullptr, sid},
      {terminated(smith), 0, 234, 6, nullptr, sid},
      {terminated(smith), kNone, 234, 6, nullptr, sid},
      {terminated(L"smith"), 30, kUntouchedError, 30, nullptr,
       failed(kInitial + L" invalid format for value 'ProfileImagePath': smith ")},
      {{}, 30, 2, 30, nullptr, failed(kInitial + L" Can't open registry key " + kProfile + L" (2)")},
  };
  for (const auto& row : rows) {
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, kProfile);
    if (row.path) {
      Key::create(kProfile).set(L"ProfileImagePath", REG_SZ, *row.path);
    }
    GuardedBuffer<wchar_t> name(200);
    DWORD size = row.capacity;
    SetLastError(kUntouchedError);
    LogCapture log;
    wchar_t* const buffer = row.capacity == kNone ? nullptr : name.data();
    EXPECT_EQ(vlNetGetInitialUserNameBeforeRenameW(L"alice", L"CORP", buffer, &size) != 0, row.name != nullptr);
    EXPECT_TRUE(row.name != nullptr || GetLastError() == row.lastError) << GetLastError();
    EXPECT_EQ(size, row.size);
    EXPECT_TRUE(name.untouched(row.name != nullptr ? size : 0));
    EXPECT_TRUE(row.name == nullptr || name.data() == std::wstring_view(row.name));
    const Log seen = log.take();
    EXPECT_EQ((Log{seen.end() - 2, seen.end()}), (Log{row.record, left(kInitial)}));
  }
  DWORD size = 1;
  LogCapture log;
  EXPECT_FALSE(vlNetGetInitialUserNameBeforeRenameW(L"", L"CORP", nullptr, &size));
  EXPECT_EQ(GetLastError(), 87u);
  EXPECT_TRUE(log.was({entered(kInitial), traced(kInitial + L" current user name"),
                       traced(kInitial + L" domain name = CORP"), left(kInitial)}));
}

// With the platform's own authority.
using LiveLookup = Accounts;

TEST_F(LiveLookup, AnswersAreRemembered) {
  wchar_t user[256], domain[256], sid[256];
  DWORD userSize = 256, domainSize = 256, bytes = sizeof sid;
  ASSERT_EQ(vlNetGetCurrentProcessUserAndDomainW(user, &userSize, domain, &domainSize), 0);
  HANDLE token = nullptr;
  ASSERT_TRUE(OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token));
  EXPECT_TRUE(vlSysObtainSIDW(token, sid, &bytes));
  CloseHandle(token);

  const auto stores = [&](const std::wstring& userName, const std::wstring& domainName, const Log& error) {
    LogCapture log;
    EXPECT_EQ(Lookup(userName, domainName).sid, sid);
    const Log expected =
        Log{entered(kStore), traced(kStore + L" username"), traced(kStore + L" domain = " + domainName)} + error +
        Log{left(kStore), left(kLookup)};
    const Log seen = log.take();
    ASSERT_EQ(seen.size(), expected.size() + 4);
    EXPECT_EQ((Log{seen.begin() + 4, seen.end()}), expected);
  };
  const std::wstring value = std::wstring(user) + L"." + domain, qualified = std::wstring(domain) + L"\\" + user;
  stores(user, domain, {failed(kStore + L" Can't open UserCache key")});
  put(kUserCache, value, L"older");
  stores(user, domain, {});
  stores(qualified, L"", {});
  const auto expected = std::pair{DWORD{REG_SZ}, terminated(sid)};
  EXPECT_EQ(Key(kUserCache).stored(value.c_str()), expected);
  EXPECT_EQ(Key(kUserCache).stored(qualified.c_str()), expected);
  EXPECT_EQ(Lookup(L"nobodyofthisname", domain).lastError, 2u);  // and is not stored
}

}  // namespace
}  // namespace accounts
