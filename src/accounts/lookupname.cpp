// An account's SID, from the local security authority or from the registry's memory of it.
#include <iterator>
#include <limits>
#include <string>

#include <vlhostkit/accounts.h>

#include "accounts/usercache.h"
#include "frame/callframe.h"
#include "frame/handle.h"

namespace {

struct Lists {
  vl::LsaBlock<LSA_REFERENCED_DOMAIN_LIST*> domains;
  vl::LsaBlock<LSA_TRANSLATED_SID2*> sids;
};

std::wstring accountName(LPCWSTR userName, LPCWSTR domainName) {
  const std::wstring user = userName;
  const bool qualify = *domainName != L'\0' && user.find(L'\\') == std::wstring::npos;
  return qualify ? std::wstring(domainName) + L'\\' + user : user;
}

// Empty if the computer's name can't be had: the authority then is the local one all the same.
std::wstring targetSystem() {
  wchar_t name[256]{};
  auto chars = static_cast<DWORD>(std::size(name));
  return GetComputerNameW(name, &chars) ? std::wstring(L"\\\\") + name : std::wstring();
}

// False if the text is too long for the 16-bit sizes.
bool count(std::wstring& text, LSA_UNICODE_STRING& counted) {
  const std::size_t bytes = text.size() * sizeof(wchar_t);
  if (bytes + sizeof(wchar_t) > std::numeric_limits<USHORT>::max()) {
    return false;
  }
  counted = {static_cast<USHORT>(bytes), static_cast<USHORT>(bytes + sizeof(wchar_t)), text.data()};
  return true;
}

DWORD openPolicy(vl::Policy& policy) {
  std::wstring target = targetSystem();
  txlogLog(vl::kTag, TXLOG_TRACE, L"vlNetLookupUserNameW Computer name %s", target.c_str());
  LSA_UNICODE_STRING system{};
  const bool named = !target.empty() && count(target, system);
  LSA_OBJECT_ATTRIBUTES attributes{};
  const DWORD code =
      LsaNtStatusToWinError(LsaOpenPolicy(named ? &system : nullptr, &attributes, POLICY_LOOKUP_NAMES, policy.put()));
  if (code != ERROR_SUCCESS) {
    txlogLog(vl::kTag, TXLOG_ERROR, L"vlNetLookupUserNameW Can't open policy (%d)", code);
  }
  return code;
}

// Oldest systems lack the entry point, so it is found at each call.
bool askAuthority(const vl::Policy& policy, const vl::Module& module, std::wstring& account, Lists& lists) {
  if (!module) {
    txlogLog(vl::kTag, TXLOG_ERROR, L"vlNetLookupUserNameW : LoadLibrary(Advapi32.dll) failed");
    return false;
  }
  const auto lookupNames = vl::entryPoint<decltype(&LsaLookupNames2)>(module, "LsaLookupNames2");
  if (lookupNames == nullptr) {
    txlogLog(vl::kTag, TXLOG_ERROR, L"vlNetLookupUserNameW GetProcAddress LsaLookupNames2() Failed");
    return false;
  }
  LSA_UNICODE_STRING name{};
  DWORD code = ERROR_INVALID_PARAMETER;
  if (count(account, name)) {
    code = LsaNtStatusToWinError(lookupNames(policy.get(), 0, 1, &name, lists.domains.put(), lists.sids.put()));
  }
  if (code != ERROR_SUCCESS) {
    txlogLog(vl::kTag, TXLOG_ERROR, L"vlNetLookupUserNameW LsaLookupNames2 failed (%d)", code);
    return false;
  }
  return true;
}

// The caller's block; empty on failure, with the last-error value set.
vl::HeapBlock<PSID> copyOf(PSID sid) {
  const DWORD bytes = GetLengthSid(sid);
  vl::HeapBlock<PSID> copy(static_cast<PSID>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, bytes)));
  if (!copy) {
    txlogLog(vl::kTag, TXLOG_ERROR, L"vlNetLookupUserNameW Can't allocate memory for SID");
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  } else if (!CopySid(bytes, copy.get(), sid)) {
    const vl::LastErrorGuard lastError;
    txlogLog(vl::kTag, TXLOG_ERROR, L"vlNetLookupUserNameW Can't copy SID");
    copy.reset();
  }
  return copy;
}

vl::HeapBlock<PSID> remembered(LPCWSTR userName, LPCWSTR domainName) {
  txlogLog(vl::kTag, TXLOG_TRACE, L"vlNetLookupUserNameW LsaLookupNames2 failed, we'll use the UserCache");
  vl::LocalBlock<PSID> cached;
  if (!vlNetGetSidFromUserCacheW(userName, domainName, cached.put())) {
    return {};
  }
  return copyOf(cached.get());
}

BOOL lookUp(LPCWSTR userName, LPCWSTR domainName, PSID* sid) {
  std::wstring account = accountName(userName, domainName);
  vl::Policy policy;
  const DWORD code = openPolicy(policy);
  if (code != ERROR_SUCCESS) {
    return vl::fail(code);
  }
  const vl::Module module(LoadLibraryW(L"Advapi32.dll"));
  Lists lists;
  const bool live = askAuthority(policy, module, account, lists);
  vl::HeapBlock<PSID> found = live ? copyOf(lists.sids.get()->Sid) : remembered(userName, domainName);
  if (!found) {
    return FALSE;
  }
  if (live) {
    vlNetAddSidToUserCacheW(userName, domainName, found.get());  // the answer stands whatever becomes of this
  }
  *sid = found.release();
  return TRUE;
}

}  // namespace

BOOL vlNetLookupUserNameW(LPCWSTR userName, LPCWSTR domainName, PSID* sid) {
  const vl::CallFrame frame(vl::kTag, L"vlNetLookupUserNameW", vl::ExitPlain(L"vlNetLookupUserNameW"));
  txlogLog(vl::kTag, TXLOG_TRACE, L"vlNetLookupUserNameW username");
  txlogLog(vl::kTag, TXLOG_TRACE, L"vlNetLookupUserNameW domain = %s", domainName);
  return *userName != L'\0' ? lookUp(userName, domainName, sid) : FALSE;
}
