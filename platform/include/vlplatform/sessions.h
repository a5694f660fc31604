/// Terminal Services: who is logged on to the session.
#ifndef VLPLATFORM_SESSIONS_H
#define VLPLATFORM_SESSIONS_H

#include <vlplatform/basetypes.h>

#define WTS_CURRENT_SERVER_HANDLE (static_cast<HANDLE>(nullptr))
#define WTS_CURRENT_SESSION 0xFFFFFFFFu

enum WTS_INFO_CLASS { WTSSessionId = 4, WTSUserName = 5, WTSWinStationName = 6, WTSDomainName = 7 };

extern "C" {
/// WTSUserName and WTSDomainName of the current session: a terminated text for WTSFreeMemory, empty if nobody is
/// logged on. `bytes` has the terminator. ERROR_INVALID_HANDLE for another server, ERROR_FILE_NOT_FOUND for another
/// session, ERROR_NOT_SUPPORTED for the other classes; the pointer then stays.
VLPLATFORM_API BOOL WTSQuerySessionInformationW(HANDLE server, DWORD session, WTS_INFO_CLASS infoClass, LPWSTR* buffer,
                                                DWORD* bytes);
VLPLATFORM_API BOOL WTSQuerySessionInformationA(HANDLE server, DWORD session, WTS_INFO_CLASS infoClass, LPSTR* buffer,
                                                DWORD* bytes);
VLPLATFORM_API void WTSFreeMemory(PVOID block);
}

#endif
