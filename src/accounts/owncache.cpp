// This library's own cache of domain names, read when nothing else answers.
#include <algorithm>
#include <limits>

#include "accounts/domaincache.h"
#include "accounts/registrytext.h"
#include "frame/callframe.h"
#include "frame/registrycalls.h"

namespace {

using vl::kText;
using vl::Text;

// The value stays inside the capacity with its terminator, or counts as one that is longer.
template <class Char>
DWORD read(const vl::RegistryKey& key, const Char* name, Char* domainName, DWORD* size) {
  const DWORD capacity = std::min<DWORD>(*size, std::numeric_limits<DWORD>::max() / sizeof(Char));
  DWORD bytes = capacity * sizeof(Char);
  const DWORD code = vl::queryValue(key, name, nullptr, domainName, &bytes);
  if (code != ERROR_SUCCESS) {
    return code;
  }
  const auto length = static_cast<DWORD>(vl::registryText(domainName, bytes).size());
  if (length >= capacity) {
    return ERROR_MORE_DATA;
  }
  domainName[length] = Char{};
  *size = length;
  return ERROR_SUCCESS;
}

template <class Width, class Char = typename Width::Char>
DWORD find(const Char* upn, Char* domainName, DWORD* size) {
  static constexpr Text kName = Text(L"vlNetGetNETBIOSDomainNameFromUPNVista") + Width::suffix;
  DWORD code = ERROR_INSUFFICIENT_BUFFER;
  const vl::CallFrame frame(vl::kTag, kText<kName>, vl::ExitWith(kText<kName + Text(L" (%d)")>, code));
  if (domainName == nullptr) {
    return code;
  }
  vl::RegistryKey key;
  code = vl::openKey(HKEY_LOCAL_MACHINE, vl::kOwnDomainCache<Char>, KEY_QUERY_VALUE, key);
  if (code != ERROR_SUCCESS) {
    txlogLog(vl::kTag, TXLOG_ERROR, kText<kName + Text(L" Can't open registry key ") + Width::longConversion>,
             vl::kOwnDomainCache<Char>);
    return code;
  }
  const Char* const suffix = vl::findAt(upn) + 1;
  code = read(key, suffix, domainName, size);
  if (code != ERROR_SUCCESS) {
    txlogLog(vl::kTag, TXLOG_ERROR, kText<kName + Text(L" Can't get value of registry key ") + Width::longConversion>,
             suffix);
  }
  return code;
}

template <class Width, class Char = typename Width::Char>
BOOL lookUp(const Char* upn, Char* domainName, DWORD* size) {
  const DWORD code = find<Width>(upn, domainName, size);
  return code == ERROR_SUCCESS ? TRUE : vl::fail(code);
}

}  // namespace

BOOL vlNetGetNETBIOSDomainNameFromUPNVistaW(LPCWSTR upn, LPWSTR domainName, DWORD* size) {
  return lookUp<vl::Wide>(upn, domainName, size);
}

BOOL vlNetGetNETBIOSDomainNameFromUPNVistaA(LPCSTR upn, LPSTR domainName, DWORD* size) {
  return lookUp<vl::Narrow>(upn, domainName, size);
}
