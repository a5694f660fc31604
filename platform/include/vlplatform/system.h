/// The computer's name, drives and environment, and formatting by the platform's user library.
#ifndef VLPLATFORM_SYSTEM_H
#define VLPLATFORM_SYSTEM_H

#include <vlplatform/basetypes.h>

#define MAX_COMPUTERNAME_LENGTH 15

#define DRIVE_UNKNOWN 0u
#define DRIVE_NO_ROOT_DIR 1u
#define DRIVE_REMOVABLE 2u
#define DRIVE_FIXED 3u
#define DRIVE_REMOTE 4u
#define DRIVE_CDROM 5u
#define DRIVE_RAMDISK 6u

extern "C" {
/// `size`: the capacity with terminator; on success the length without it. ERROR_BUFFER_OVERFLOW if it is too small,
/// and `size` receives what is needed.
VLPLATFORM_API BOOL GetComputerNameW(LPWSTR name, LPDWORD size);

/// The root texts ("C:\") in order, each with a terminator, and one more at the end. Returns the characters written
/// without that last one; if `chars` are too few, what is needed, with it, and the buffer stays. 0 on failure.
VLPLATFORM_API DWORD GetLogicalDriveStringsW(DWORD chars, LPWSTR buffer);
VLPLATFORM_API DWORD GetLogicalDriveStringsA(DWORD chars, LPSTR buffer);
/// DRIVE_NO_ROOT_DIR for what is no root of a drive with its backslash. Null asks for the drive of the system. A
/// planned fault gives DRIVE_UNKNOWN.
VLPLATFORM_API UINT GetDriveTypeW(LPCWSTR root);
VLPLATFORM_API UINT GetDriveTypeA(LPCSTR root);

/// The characters written without terminator; if `chars` are too few, what is needed, with it, and the buffer stays.
/// 0 with ERROR_ENVVAR_NOT_FOUND if there is no such variable, 0 without an error for an empty one. Names are
/// case-insensitive.
VLPLATFORM_API DWORD GetEnvironmentVariableW(LPCWSTR name, LPWSTR buffer, DWORD chars);
VLPLATFORM_API DWORD GetEnvironmentVariableA(LPCSTR name, LPSTR buffer, DWORD chars);
/// Changes the machine's environment, not the process's own. A null value removes the variable, with
/// ERROR_ENVVAR_NOT_FOUND if there is none. ERROR_INVALID_PARAMETER for an empty name or one with '='.
VLPLATFORM_API BOOL SetEnvironmentVariableW(LPCWSTR name, LPCWSTR value);

/// The conversions of swprintf_s, with %s of the function's own width and %S of the other. The text ends after 1023
/// characters, or before what is no conversion; its length is the result. Can't fail.
VLPLATFORM_API int wsprintfW(LPWSTR buffer, LPCWSTR format, ...);
VLPLATFORM_API int wsprintfA(LPSTR buffer, LPCSTR format, ...);
}

#endif
