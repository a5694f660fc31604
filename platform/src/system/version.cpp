#include <vlplatform/version.h>

#include "gate.h"

namespace vlplatform {

void Version::reset() {
  set({});
}

void Version::set(const VersionFacts& facts) {
  const std::lock_guard lock(mutex_);
  facts_ = facts;
}

void Version::setNumbers(DWORD major, DWORD minor) {
  const std::lock_guard lock(mutex_);
  facts_.major = major;
  facts_.minor = minor;
}

VersionFacts Version::facts() const {
  const std::lock_guard lock(mutex_);
  return facts_;
}

}  // namespace vlplatform

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
  information->dwPlatformId = VER_PLATFORM_WIN32_NT;
  information->szCSDVersion[0] = L'\0';
  if (size == sizeof(OSVERSIONINFOEXW)) {
    auto* const extended = reinterpret_cast<OSVERSIONINFOEXW*>(information);
    extended->wServicePackMajor = facts.servicePackMajor;
    extended->wServicePackMinor = facts.servicePackMinor;
    extended->wSuiteMask = facts.suiteMask;
    extended->wProductType = facts.productType;
    extended->wReserved = 0;
  }
  return TRUE;
}
