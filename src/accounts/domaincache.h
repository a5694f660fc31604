/// The caches behind the decomposition of user principal names, in both widths. Not exported.
#ifndef VL_ACCOUNTS_DOMAINCACHE_H
#define VL_ACCOUNTS_DOMAINCACHE_H

#include <vlhostkit/accounts.h>

#include "frame/width.h"

extern "C" {

/// Reads the NETBIOS domain name of the suffix of `upn`, the text behind its first "@", from this library's own cache.
/// `size`: in, the buffer's capacity with the terminator; out, on success, the name's length without it. A null
/// `domainName` fails with 122. Boolean result.
BOOL vlNetGetNETBIOSDomainNameFromUPNVistaW(LPCWSTR upn, LPWSTR domainName, DWORD* size);
BOOL vlNetGetNETBIOSDomainNameFromUPNVistaA(LPCSTR upn, LPSTR domainName, DWORD* size);

}  // extern "C"

namespace vl {

/// The platform calls of the chain and its caches.
struct NarrowUpn : Narrow {
  static constexpr Text<3> pathConversion{L"%S"};
  static constexpr const char* systemCache = "Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\DomainCache";
  static constexpr const char* ownCache = "SOFTWARE\\Velorin\\System\\DomainCache";
  static constexpr const char* translateName = "TranslateNameA";
  static constexpr auto lookInSystemCache = &vlNetGetNETBIOSDomainNameFromUPNA;
  static constexpr auto lookInOwnCache = &vlNetGetNETBIOSDomainNameFromUPNVistaA;

  static DWORD open(const char* path, REGSAM access, HKEY* key) {
    return static_cast<DWORD>(RegOpenKeyExA(HKEY_LOCAL_MACHINE, path, 0, access, key));
  }
  static DWORD enumerate(HKEY key, DWORD index, char* name, DWORD* chars, BYTE* data, DWORD* bytes) {
    DWORD type = 0;
    return static_cast<DWORD>(RegEnumValueA(key, index, name, chars, nullptr, &type, data, bytes));
  }
  static DWORD query(HKEY key, const char* name, BYTE* data, DWORD* bytes) {
    DWORD type = 0;
    return static_cast<DWORD>(RegQueryValueExA(key, name, nullptr, &type, data, bytes));
  }
  static DWORD set(HKEY key, const char* name, const BYTE* data, DWORD bytes) {
    return static_cast<DWORD>(RegSetValueExA(key, name, 0, REG_SZ, data, bytes));
  }
};

struct WideUpn : Wide {
  static constexpr Text<4> pathConversion{L"%ls"};
  static constexpr const wchar_t* systemCache =
      L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\DomainCache";
  static constexpr const wchar_t* ownCache = L"SOFTWARE\\Velorin\\System\\DomainCache";
  static constexpr const char* translateName = "TranslateNameW";
  static constexpr auto lookInSystemCache = &vlNetGetNETBIOSDomainNameFromUPNW;
  static constexpr auto lookInOwnCache = &vlNetGetNETBIOSDomainNameFromUPNVistaW;

  static DWORD open(const wchar_t* path, REGSAM access, HKEY* key) {
    return static_cast<DWORD>(RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, access, key));
  }
  static DWORD enumerate(HKEY key, DWORD index, wchar_t* name, DWORD* chars, BYTE* data, DWORD* bytes) {
    DWORD type = 0;
    return static_cast<DWORD>(RegEnumValueW(key, index, name, chars, nullptr, &type, data, bytes));
  }
  static DWORD query(HKEY key, const wchar_t* name, BYTE* data, DWORD* bytes) {
    DWORD type = 0;
    return static_cast<DWORD>(RegQueryValueExW(key, name, nullptr, &type, data, bytes));
  }
  static DWORD set(HKEY key, const wchar_t* name, const BYTE* data, DWORD bytes) {
    return static_cast<DWORD>(RegSetValueExW(key, name, 0, REG_SZ, data, bytes));
  }
};

/// The first "@" of `upn`, null if there is none.
template <class Char>
const Char* findAt(const Char* upn) {
  return std::char_traits<Char>::find(upn, std::char_traits<Char>::length(upn), Char{'@'});
}

}  // namespace vl

#endif
