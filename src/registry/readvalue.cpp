#include <vlhostkit/registry.h>

#include "registry/call.h"
#include "registry/read.h"

namespace {

using namespace vl::registry;

constexpr vl::Text kName{L"vlRegReadValueEx"};

// The stored type is the reader's to check.
int readAs(DWORD type, HKEY root, LPCWSTR path, LPCWSTR name, BYTE* data, DWORD* bytes, DWORD section) {
  switch (type) {
    case REG_SZ:
      return vlRegReadStringValueExW(root, path, name, data, bytes, section);
    case REG_BINARY:
      return vlRegReadBinaryValueEx(root, path, name, data, bytes, section);
    case REG_DWORD:
      return vlRegReadDWORDValueExW(root, path, name, reinterpret_cast<DWORD*>(data), section);
    case REG_MULTI_SZ:
      return vlRegReadMultiStringValueExW(root, path, name, data, bytes, section);
    case REG_QWORD:
      return vlRegReadQWORDValueExW(root, path, name, reinterpret_cast<ULONGLONG*>(data), section);
    default:
      return kWrongType;
  }
}

int probe(HKEY root, LPCWSTR path, LPCWSTR name, DWORD* type, DWORD* bytes, DWORD section) {
  vl::RegistryKey key;
  DWORD code = vl::openKey(root, path, section | KEY_QUERY_VALUE, key);
  if (code != ERROR_SUCCESS) {
    trace<kName, L" : RegOpenKeyEx failed 0x%x">(code);
    return kCallFailed;
  }
  DWORD needed = *bytes;
  code = vl::queryValue(key, name, type, nullptr, &needed);
  if (code != ERROR_SUCCESS) {
    trace<kName, L" : RegQueryValueEx fails 0x%x">(code);
    return kCallFailed;
  }
  *bytes = needed;
  trace<kName, L" : RegQueryValueEx returns type %d">(*type);
  trace<kName, L" : RegQueryValueEx returns length %d">(needed);
  return kSuccess;
}

}  // namespace

int vlRegReadValueEx(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, DWORD* pdwType, BYTE* pData, DWORD* pcbData,
                     DWORD dwSection) {
  int result = kCallFailed;
  const Call<kName> call(result);
  if (!sectionPasses<kName>(dwSection)) {
    result = kInvalidArgument;
  } else if (pszKey == nullptr || pdwType == nullptr || pcbData == nullptr) {
    trace<kName, L" : pszKey or pdwValue is NULL">();
    result = kInvalidArgument;
  } else if (pData != nullptr) {
    result = readAs(*pdwType, hKey, pszKey, pszValueName, pData, pcbData, dwSection);
  } else {
    result = probe(hKey, pszKey, pszValueName, pdwType, pcbData, dwSection);
  }
  return result;
}

int vlRegReadValue(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, DWORD* pdwType, BYTE* pData, DWORD* pcbData) {
  return vlRegReadValueEx(hKey, pszKey, pszValueName, pdwType, pData, pcbData, 0);
}
