#include <vlhostkit/registry.h>

#include "registry/call.h"

namespace {

using vl::Text;
using namespace vl::registry;

// Whether the key was new is not asked, and it stays if the value can't be stored.
template <Text Function>
int store(HKEY root, LPCWSTR path, LPCWSTR name, DWORD type, const void* data, DWORD bytes, DWORD section) {
  HKEY opened = nullptr;
  auto code = static_cast<DWORD>(
      RegCreateKeyExW(root, path, 0, nullptr, REG_OPTION_NON_VOLATILE, section | KEY_WRITE, nullptr, &opened, nullptr));
  if (code != ERROR_SUCCESS) {
    trace<Function, L" : RegCreateKeyEx failed 0x%x">(code);
    return kCallFailed;
  }
  const vl::RegistryKey key(opened);
  code = vl::setValue(key, name, type, data, bytes);
  trace<Function, L" : RegSetValueEx returns 0x%x">(code);
  return code == ERROR_SUCCESS ? kSuccess : kCallFailed;
}

template <Text Function>
int write(HKEY root, LPCWSTR path, LPCWSTR name, DWORD type, const void* data, DWORD bytes, DWORD section) {
  int result = kCallFailed;
  const Call<Function> call(result);
  if (!sectionPasses<Function>(section)) {
    result = kInvalidArgument;
  } else if (path == nullptr) {
    trace<Function, L" : pszKey is NULL">();
    result = kInvalidArgument;
  } else {
    result = store<Function>(root, path, name, type, data, bytes, section);
  }
  return result;
}

}  // namespace

int vlRegWriteDWORDValueEx(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, DWORD dwValue, DWORD dwSection) {
  return write<L"vlRegWriteDWORDValueEx">(hKey, pszKey, pszValueName, REG_DWORD, &dwValue, sizeof dwValue, dwSection);
}
int vlRegWriteDWORDValue(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, DWORD dwValue) {
  return vlRegWriteDWORDValueEx(hKey, pszKey, pszValueName, dwValue, 0);
}

int vlRegWriteStringValueEx(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, const void* pData, DWORD cbData,
                            DWORD dwSection) {
  return write<L"vlRegWriteStringValueEx">(hKey, pszKey, pszValueName, REG_SZ, pData, cbData, dwSection);
}
int vlRegWriteStringValue(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, const void* pData, DWORD cbData) {
  return vlRegWriteStringValueEx(hKey, pszKey, pszValueName, pData, cbData, 0);
}

int vlRegWriteMultiStringValueEx(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, const void* pData, DWORD cbData,
                                 DWORD dwSection) {
  return write<L"vlRegWriteMultiStringValueEx">(hKey, pszKey, pszValueName, REG_MULTI_SZ, pData, cbData, dwSection);
}
int vlRegWriteMultiStringValue(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, const void* pData, DWORD cbData) {
  return vlRegWriteMultiStringValueEx(hKey, pszKey, pszValueName, pData, cbData, 0);
}

int vlRegWriteBinaryValueEx(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, const void* pData, DWORD cbData,
                            DWORD dwSection) {
  return write<L"vlRegWriteBinaryValueEx">(hKey, pszKey, pszValueName, REG_BINARY, pData, cbData, dwSection);
}
int vlRegWriteBinaryValue(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, const void* pData, DWORD cbData) {
  return vlRegWriteBinaryValueEx(hKey, pszKey, pszValueName, pData, cbData, 0);
}
