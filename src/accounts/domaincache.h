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

/// This library's own cache, below HKEY_LOCAL_MACHINE.
template <class Char>
inline constexpr const Char* kOwnDomainCache = literal<Char, L"SOFTWARE\\Velorin\\System\\DomainCache">();

/// The first "@" of `upn`, null if there is none.
template <class Char>
const Char* findAt(const Char* upn) {
  return std::char_traits<Char>::find(upn, std::char_traits<Char>::length(upn), Char{'@'});
}

}  // namespace vl

#endif
