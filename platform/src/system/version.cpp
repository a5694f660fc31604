#include <vlplatform/version.h>

#include <bit>

#include "gate.h"

BOOL GetVersionExW(LPOSVERSIONINFOW information) {
  if (vlplatform::gateFails("GetVersionExW")) {
    return FALSE;
  }
  const DWORD size = information->dwOSVersionInfoSize;
  if (size != sizeof(OSVERSIONINFOW) && size != sizeof(OSVERSIONINFOEXW)) {
    return vlplatform::succeed(ERROR_INSUFFICIENT_BUFFER);
  }
  const vlplatform::VersionFacts facts = vlplatform::machine().version().facts();
  information->dwMajorVersion = facts.major;
  information->dwMinorVersion = facts.minor;
  information->dwBuildNumber = facts.build;
  information->dwPlatformId = facts.platform;
  information->szCSDVersion[0] = L'\0';
  if (size == sizeof(OSVERSIONINFOEXW)) {
    auto* const extended = reinterpret_cast<OSVERSIONINFOEXW*>(information);
    extended->wServicePackMajor = extended->wServicePackMinor = 0;
    extended->wSuiteMask = facts.suiteMask;
    extended->wProductType = VER_NT_WORKSTATION;
    extended->wReserved = 0;
  }
  return TRUE;
}

DWORD GetVersion() {
  vlplatform::gate("GetVersion");
  const vlplatform::VersionFacts facts = vlplatform::machine().version().facts();
  const DWORD numbers = (facts.major & 0xFFu) | (facts.minor & 0xFFu) << 8;
  return facts.platform == VER_PLATFORM_WIN32_NT ? numbers | (facts.build & 0x7FFFu) << 16 : numbers | 0x80000000u;
}

// Three bits for each kind of test, in the order of the kinds' own bits.
ULONGLONG VerSetConditionMask(ULONGLONG mask, DWORD type, BYTE condition) {
  vlplatform::gate("VerSetConditionMask");
  return type == 0 ? mask : mask | ULONGLONG{condition & 7u} << 3 * (std::bit_width(type) - 1);
}

BOOL VerifyVersionInfoA(LPOSVERSIONINFOEXA information, DWORD types, ULONGLONG mask) {
  if (vlplatform::gateFails("VerifyVersionInfoA")) {
    return FALSE;
  }
  if (types != VER_SUITENAME) {
    return vlplatform::succeed(types == 0 ? ERROR_BAD_ARGUMENTS : ERROR_NOT_SUPPORTED);
  }
  const ULONGLONG condition = mask >> 3 * (std::bit_width(VER_SUITENAME) - 1) & 7u;
  if (condition != VER_AND && condition != VER_OR) {
    return vlplatform::succeed(ERROR_BAD_ARGUMENTS);
  }
  const unsigned wanted = information->wSuiteMask;
  const unsigned present = wanted & vlplatform::machine().version().facts().suiteMask;
  const bool met = condition == VER_AND ? present == wanted : present != 0;
  return vlplatform::succeed(met ? ERROR_SUCCESS : ERROR_OLD_WIN_VERSION);
}
