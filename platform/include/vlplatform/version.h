/// The version of the operating system.
#ifndef VLPLATFORM_VERSION_H
#define VLPLATFORM_VERSION_H

#include <vlplatform/basetypes.h>

// wProductType
#define VER_NT_WORKSTATION 0x1u
#define VER_NT_DOMAIN_CONTROLLER 0x2u
#define VER_NT_SERVER 0x3u

// wSuiteMask
#define VER_SUITE_ENTERPRISE 0x2u
#define VER_SUITE_TERMINAL 0x10u
#define VER_SUITE_SINGLEUSERTS 0x100u

#define VER_PLATFORM_WIN32_NT 2u

struct OSVERSIONINFOW {
  DWORD dwOSVersionInfoSize;
  DWORD dwMajorVersion;
  DWORD dwMinorVersion;
  DWORD dwBuildNumber;
  DWORD dwPlatformId;
  WCHAR szCSDVersion[128];
};

struct OSVERSIONINFOEXW {
  DWORD dwOSVersionInfoSize;
  DWORD dwMajorVersion;
  DWORD dwMinorVersion;
  DWORD dwBuildNumber;
  DWORD dwPlatformId;
  WCHAR szCSDVersion[128];
  WORD wServicePackMajor;
  WORD wServicePackMinor;
  WORD wSuiteMask;
  BYTE wProductType;
  BYTE wReserved;
};

struct OSVERSIONINFOEXA {
  DWORD dwOSVersionInfoSize;
  DWORD dwMajorVersion;
  DWORD dwMinorVersion;
  DWORD dwBuildNumber;
  DWORD dwPlatformId;
  CHAR szCSDVersion[128];
  WORD wServicePackMajor;
  WORD wServicePackMinor;
  WORD wSuiteMask;
  BYTE wProductType;
  BYTE wReserved;
};

using LPOSVERSIONINFOW = OSVERSIONINFOW*;
using LPOSVERSIONINFOEXW = OSVERSIONINFOEXW*;
using LPOSVERSIONINFOEXA = OSVERSIONINFOEXA*;

extern "C" {
/// `information` may be an OSVERSIONINFOEXW, with the size that says so. ERROR_INSUFFICIENT_BUFFER for a size that is
/// of neither structure; nothing is stored then.
VLPLATFORM_API BOOL GetVersionExW(LPOSVERSIONINFOW information);
}

#endif
