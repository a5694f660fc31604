/// The state of the network, and name translation, which needs it.
#ifndef VLPLATFORM_NETWORK_H
#define VLPLATFORM_NETWORK_H

#include <vlplatform/basetypes.h>

#define NETWORK_ALIVE_LAN 0x1u

enum EXTENDED_NAME_FORMAT { NameSamCompatible = 2, NameUserPrincipal = 8 };

extern "C" {
/// Nonzero with NETWORK_ALIVE_LAN in `flags` if there is a network. A planned fault makes it 0.
VLPLATFORM_API BOOL IsNetworkAlive(LPDWORD flags);

/// In secur32.dll's table only (LoadLibraryW, GetProcAddress): declared for their type.
///
/// From NameUserPrincipal to NameSamCompatible, ERROR_INVALID_PARAMETER for other formats. `size` counts characters
/// with the terminator and holds what is needed afterwards. Without a buffer only the size is told, and that is a
/// success; with a buffer too small, ERROR_INSUFFICIENT_BUFFER and the buffer untouched. ERROR_NONE_MAPPED for a user
/// whom the domain does not know, ERROR_NO_SUCH_DOMAIN if nobody answers for the suffix or there is no network; `size`
/// then stays.
BOOLEAN TranslateNameW(LPCWSTR name, EXTENDED_NAME_FORMAT format, EXTENDED_NAME_FORMAT desired, LPWSTR translated,
                       PULONG size);
BOOLEAN TranslateNameA(LPCSTR name, EXTENDED_NAME_FORMAT format, EXTENDED_NAME_FORMAT desired, LPSTR translated,
                       PULONG size);
}

#endif
