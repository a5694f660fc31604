// The operating system's cache of domain names, read only. Nothing is logged here.
#include <algorithm>
#include <string_view>

#include <vlhostkit/accounts.h>

#include "accounts/registrytext.h"
#include "frame/registrycalls.h"
#include "frame/width.h"

namespace {

constexpr vl::Text kPath{L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\DomainCache"};

template <class Char>
DWORD deliver(std::basic_string_view<Char> name, Char* domainName, DWORD* size) {
  const auto length = static_cast<DWORD>(name.size());
  DWORD code = ERROR_SUCCESS;
  if (domainName != nullptr) {
    if (*size < length) {
      code = ERROR_INSUFFICIENT_BUFFER;
    } else {
      *std::copy(name.begin(), name.end(), domainName) = Char{};
    }
  }
  *size = length;
  return code;
}

// The values' names are domains and their data are suffixes. An entry over the limits ends the search.
template <class Char>
DWORD find(const Char* suffix, Char* domainName, DWORD* size) {
  vl::RegistryKey key;
  DWORD code = vl::openKey(HKEY_LOCAL_MACHINE, vl::literal<Char, kPath>(), KEY_READ, key);
  for (DWORD index = 0; code == ERROR_SUCCESS; ++index) {
    Char name[vl::kShortReadChars];
    Char data[vl::kShortReadChars];
    DWORD chars = vl::kShortReadChars - 1;
    DWORD bytes = vl::kShortReadBytes<Char>;
    code = vl::enumerateValue(key, index, name, &chars, data, &bytes);
    if (code == ERROR_SUCCESS && vl::registryText(data, bytes) == suffix) {
      return deliver(std::basic_string_view<Char>(name, chars), domainName, size);
    }
  }
  return code;
}

template <class Char>
BOOL lookUp(const Char* suffix, Char* domainName, DWORD* size) {
  const DWORD code = find(suffix, domainName, size);
  return code == ERROR_SUCCESS ? TRUE : vl::fail(code);
}

}  // namespace

BOOL vlNetGetNETBIOSDomainNameFromUPNW(LPCWSTR upnSuffix, LPWSTR domainName, DWORD* size) {
  return lookUp(upnSuffix, domainName, size);
}

BOOL vlNetGetNETBIOSDomainNameFromUPNA(LPCSTR upnSuffix, LPSTR domainName, DWORD* size) {
  return lookUp(upnSuffix, domainName, size);
}
