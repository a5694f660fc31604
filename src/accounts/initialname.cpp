// The name that an account had when its profile folder was made.
#include <string>
#include <string_view>

#include <vlhostkit/accounts.h>

#include "accounts/names.h"
#include "accounts/registrytext.h"
#include "frame/callframe.h"
#include "frame/registrycalls.h"

namespace {

// The buffer's text is terminated on success.
DWORD readProfilePath(LPCWSTR sid, wchar_t (&path)[vl::kShortReadChars]) {
  const std::wstring keyPath = std::wstring(L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\ProfileList\\") + sid;
  vl::RegistryKey key;
  DWORD code = vl::openKey(HKEY_LOCAL_MACHINE, keyPath.c_str(), KEY_QUERY_VALUE, key);
  if (code != ERROR_SUCCESS) {
    txlogLog(vl::kTag, TXLOG_ERROR, L"vlNetGetInitialUserNameBeforeRenameW Can't open registry key %s (%d)",
             keyPath.c_str(), code);
    return code;
  }
  DWORD bytes = vl::kShortReadBytes<wchar_t>;
  code = vl::queryValue(key, L"ProfileImagePath", nullptr, path, &bytes);
  if (code != ERROR_SUCCESS) {
    txlogLog(vl::kTag, TXLOG_ERROR,
             L"vlNetGetInitialUserNameBeforeRenameW Can't read registry value 'ProfileImagePath' (%d)", code);
    return code;
  }
  path[vl::registryText(path, bytes).size()] = L'\0';
  return ERROR_SUCCESS;
}

BOOL deliver(std::wstring_view name, vl::NameBuffer<wchar_t> buffer) {
  const bool fits = buffer.text != nullptr && !buffer.tooSmallFor(name);
  if (fits) {
    buffer.copy(name);
    txlogLog(vl::kTag, TXLOG_TRACE, L"vlNetGetInitialUserNameBeforeRenameW Initial user name before rename ");
  }
  buffer.storeSize(name);
  return fits ? TRUE : vl::fail(ERROR_MORE_DATA);
}

BOOL find(LPCWSTR currentUserName, LPCWSTR domainName, vl::NameBuffer<wchar_t> buffer) {
  const DWORD lastErrorBefore = GetLastError();
  vl::HeapBlock<PSID> sid;
  if (!vlNetLookupUserNameW(currentUserName, domainName, sid.put())) {
    return FALSE;
  }
  vl::LocalBlock<LPWSTR> sidText;
  if (!ConvertSidToStringSidW(sid.get(), sidText.put())) {
    const vl::LastErrorGuard lastError;
    txlogLog(vl::kTag, TXLOG_ERROR, L"vlNetGetInitialUserNameBeforeRenameW Cannot convert sid to string sid");
    return FALSE;
  }
  txlogLog(vl::kTag, TXLOG_TRACE, L"vlNetGetInitialUserNameBeforeRenameW SID : %s", sidText.get());
  wchar_t path[vl::kShortReadChars];
  const DWORD code = readProfilePath(sidText.get(), path);
  if (code != ERROR_SUCCESS) {
    return vl::fail(code);
  }
  const std::wstring_view text = path;
  const std::size_t backslash = text.rfind(L'\\');
  if (backslash == std::wstring_view::npos) {
    txlogLog(vl::kTag, TXLOG_ERROR,
             L"vlNetGetInitialUserNameBeforeRenameW invalid format for value 'ProfileImagePath': %s ", path);
    return vl::fail(lastErrorBefore);  // this failure has no number of its own
  }
  return deliver(text.substr(backslash + 1), buffer);
}

}  // namespace

BOOL vlNetGetInitialUserNameBeforeRenameW(LPCWSTR currentUserName, LPCWSTR domainName, LPWSTR initialUserName,
                                          DWORD* size) {
  const vl::CallFrame frame(vl::kTag, L"vlNetGetInitialUserNameBeforeRenameW",
                            vl::ExitPlain(L"vlNetGetInitialUserNameBeforeRenameW"));
  txlogLog(vl::kTag, TXLOG_TRACE, L"vlNetGetInitialUserNameBeforeRenameW current user name");
  txlogLog(vl::kTag, TXLOG_TRACE, L"vlNetGetInitialUserNameBeforeRenameW domain name = %s", domainName);
  if (*currentUserName == L'\0') {
    return vl::fail(ERROR_INVALID_PARAMETER);
  }
  return find(currentUserName, domainName, {initialUserName, size});
}
