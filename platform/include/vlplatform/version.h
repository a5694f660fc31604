/// The version of the operating system.
#ifndef VLPLATFORM_VERSION_H
#define VLPLATFORM_VERSION_H

#include <vlplatform/basetypes.h>

// wProductType
#define VER_NT_WORKSTATION 0x1u

// wSuiteMask
#define VER_SUITE_ENTERPRISE 0x2u
#define VER_SUITE_TERMINAL 0x10u
#define VER_SUITE_SINGLEUSERTS 0x100u

// Of VerifyVersionInfoA and VerSetConditionMask
#define VER_SUITENAME 0x40u
#define VER_AND 6u
#define VER_OR 7u

#define VER_PLATFORM_WIN32_WINDOWS 1u
#define VER_PLATFORM_WIN32_NT 2u

struct OSVERSIONINFOW {
  DWORD dwOSVersionInfoSize;
  DWORD dwMajorVersion;
  DWORD dwMinorVersion;
  DWORD dwBuildNumber;
  DWORD dwPlatformId;
  WCHAR szCSDVersion[128];
};

template <class Char>
struct OsVersionInfoEx {
  DWORD dwOSVersionInfoSize;
  DWORD dwMajorVersion;
  DWORD dwMinorVersion;
  DWORD dwBuildNumber;
  DWORD dwPlatformId;
  Char szCSDVersion[128];
  WORD wServicePackMajor;
  WORD wServicePackMinor;
  WORD wSuiteMask;
  BYTE wProductType;
  BYTE wReserved;
};
using OSVERSIONINFOEXW = OsVersionInfoEx<WCHAR>;
using OSVERSIONINFOEXA = OsVersionInfoEx<char>;

using LPOSVERSIONINFOW = OSVERSIONINFOW*;
using LPOSVERSIONINFOEXA = OSVERSIONINFOEXA*;

extern "C" {
/// `information` may be an OSVERSIONINFOEXW, with the size that says so. ERROR_INSUFFICIENT_BUFFER for a size that is
/// of neither structure; nothing is stored then.
VLPLATFORM_API BOOL GetVersionExW(LPOSVERSIONINFOW information);
/// The lowest byte is the major version and the next the minor; of systems of the NT line the upper half is the build,
/// and of all others the top bit is set. Can't fail.
VLPLATFORM_API DWORD GetVersion();

/// `mask` with a condition for one kind of test, for VerifyVersionInfoA. Can't fail.
VLPLATFORM_API ULONGLONG VerSetConditionMask(ULONGLONG mask, DWORD type, BYTE condition);
/// Only the test of suites, VER_SUITENAME with VER_AND (all of `information->wSuiteMask`) or VER_OR (one of them):
/// ERROR_NOT_SUPPORTED for other tests, ERROR_BAD_ARGUMENTS for another condition. ERROR_OLD_WIN_VERSION where the
/// machine lacks what is asked for.
VLPLATFORM_API BOOL VerifyVersionInfoA(LPOSVERSIONINFOEXA information, DWORD types, ULONGLONG mask);
}

#endif
