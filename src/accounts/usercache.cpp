#include "accounts/usercache.h"

#include <string>

#include "accounts/registrytext.h"
#include "frame/callframe.h"
#include "frame/registrycalls.h"

namespace {

constexpr const wchar_t* kPath = L"SOFTWARE\\Velorin\\System\\UserCache";

std::wstring valueName(LPCWSTR userName, LPCWSTR domainName) {
  std::wstring name = userName;
  if (*domainName != L'\0') {
    name += L'.';
    name += domainName;
  }
  return name;
}

// The value's text, or no block if there is no memory; the registry's code on failure. The value may have changed
// since its size was asked for, and it may lack its terminator.
DWORD readText(const vl::RegistryKey& key, const std::wstring& name, vl::HeapBlock<LPWSTR>& text) {
  DWORD bytes = 0;
  DWORD code = vl::queryValue(key, name.c_str(), nullptr, nullptr, &bytes);
  if (code != ERROR_SUCCESS) {
    txlogLog(vl::kTag, TXLOG_ERROR, L"vlNetGetSidFromUserCacheW Can't get buffer size for registry value (%d)", code);
    return code;
  }
  text.reset(static_cast<LPWSTR>(HeapAlloc(GetProcessHeap(), 0, bytes + sizeof(wchar_t))));
  if (!text) {
    return ERROR_SUCCESS;
  }
  code = vl::queryValue(key, name.c_str(), nullptr, text.get(), &bytes);
  if (code != ERROR_SUCCESS) {
    txlogLog(vl::kTag, TXLOG_ERROR, L"vlNetGetSidFromUserCacheW Can't get value of registry key");
    return code;
  }
  text.get()[vl::registryText(text.get(), bytes).size()] = L'\0';
  return ERROR_SUCCESS;
}

}  // namespace

BOOL vlNetAddSidToUserCacheW(LPCWSTR userName, LPCWSTR domainName, PSID sid) {
  const vl::CallFrame frame(vl::kTag, L"vlNetAddSidToUserCacheW", vl::ExitPlain(L"vlNetAddSidToUserCacheW"));
  txlogLog(vl::kTag, TXLOG_TRACE, L"vlNetAddSidToUserCacheW username");
  txlogLog(vl::kTag, TXLOG_TRACE, L"vlNetAddSidToUserCacheW domain = %s", domainName);
  if (*userName == L'\0' || sid == nullptr) {
    return vl::fail(ERROR_INVALID_PARAMETER);
  }
  const std::wstring name = valueName(userName, domainName);
  vl::RegistryKey key;
  DWORD code = vl::openKey(HKEY_LOCAL_MACHINE, kPath, KEY_WRITE, key);
  if (code != ERROR_SUCCESS) {
    txlogLog(vl::kTag, TXLOG_ERROR, L"vlNetAddSidToUserCacheW Can't open UserCache key");
    return vl::fail(code);
  }
  vl::LocalBlock<LPWSTR> text;
  if (!ConvertSidToStringSidW(sid, text.put())) {
    const vl::LastErrorGuard lastError;
    txlogLog(vl::kTag, TXLOG_ERROR, L"vlNetAddSidToUserCacheW Cannot convert sid to string sid");
    return FALSE;
  }
  const std::wstring_view view = text.get();
  code = vl::setValue(key, name.c_str(), REG_SZ, view.data(), static_cast<DWORD>((view.size() + 1) * sizeof(wchar_t)));
  if (code != ERROR_SUCCESS) {
    txlogLog(vl::kTag, TXLOG_ERROR, L"vlNetAddSidToUserCacheW Can't add user to UserCache registry key");
    return vl::fail(code);
  }
  return TRUE;
}

BOOL vlNetGetSidFromUserCacheW(LPCWSTR userName, LPCWSTR domainName, PSID* sid) {
  const vl::CallFrame frame(vl::kTag, L"vlNetGetSidFromUserCacheW", vl::ExitPlain(L"vlNetGetSidFromUserCacheW"));
  txlogLog(vl::kTag, TXLOG_TRACE, L"vlNetGetSidFromUserCacheW username");
  txlogLog(vl::kTag, TXLOG_TRACE, L"vlNetGetSidFromUserCacheW domain = %s", domainName);
  if (*userName == L'\0') {
    return vl::fail(ERROR_INVALID_PARAMETER);
  }
  const std::wstring name = valueName(userName, domainName);
  vl::RegistryKey key;
  DWORD code = vl::openKey(HKEY_LOCAL_MACHINE, kPath, KEY_QUERY_VALUE, key);
  if (code != ERROR_SUCCESS) {
    txlogLog(vl::kTag, TXLOG_ERROR, L"vlNetGetSidFromUserCacheW Can't open registry key %s", kPath);
    return vl::fail(code);
  }
  vl::HeapBlock<LPWSTR> text;
  code = readText(key, name, text);
  if (code != ERROR_SUCCESS) {
    return vl::fail(code);
  }
  if (!text || !ConvertStringSidToSidW(text.get(), sid)) {
    code = text ? GetLastError() : ERROR_NOT_ENOUGH_MEMORY;
    txlogLog(vl::kTag, TXLOG_ERROR, L"vlNetGetSidFromUserCacheW Can't convert string sid to valid sid");
    return vl::fail(code);
  }
  return TRUE;
}
