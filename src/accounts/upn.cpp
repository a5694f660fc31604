// The SAM-compatible name of a user principal name: the platform's translation, then the caches.
#include <algorithm>
#include <array>
#include <cstddef>
#include <string>

#include "accounts/domaincache.h"
#include "accounts/registrytext.h"
#include "frame/registrycalls.h"

namespace {

using vl::kText;
using vl::Text;

struct Narrow : vl::Narrow {
  static constexpr const char* translateName = "TranslateNameA";
  static constexpr auto lookInSystemCache = &vlNetGetNETBIOSDomainNameFromUPNA;
  static constexpr auto lookInOwnCache = &vlNetGetNETBIOSDomainNameFromUPNVistaA;
};

struct Wide : vl::Wide {
  static constexpr const char* translateName = "TranslateNameW";
  static constexpr auto lookInSystemCache = &vlNetGetNETBIOSDomainNameFromUPNW;
  static constexpr auto lookInOwnCache = &vlNetGetNETBIOSDomainNameFromUPNVistaW;
};

template <class Char>
using Translate = BOOLEAN(WINAPI*)(const Char* name, EXTENDED_NAME_FORMAT form, EXTENDED_NAME_FORMAT wanted,
                                   Char* translated, ULONG* size);

// What is composed from a cache's domain has at most this many characters, terminator counted.
constexpr std::size_t kMostComposed = 255;

// Remembers a live answer under the suffix of `upn`. The caller has its answer whatever becomes of this. `samName` is
// cut at its domain for the time of the call.
template <class Width, class Char = typename Width::Char>
void remember(const Char* upn, Char* samName) {
  static constexpr Text kName = Text(L"vlNetGetUserNameDomainFromUPN") + Width::suffix;
  const Char* const at = vl::findAt(upn);
  if (at == nullptr) {
    return;
  }
  vl::RegistryKey key;
  DWORD code = vl::openKey(HKEY_LOCAL_MACHINE, vl::kOwnDomainCache<Char>, KEY_WRITE, key);
  if (code != ERROR_SUCCESS) {
    txlogLog(vl::kTag, TXLOG_ERROR,
             kText<kName + Text(L" Can't open registry key ") + Width::longConversion + Text(L" (%d)")>,
             vl::kOwnDomainCache<Char>, code);
    return;
  }
  using Traits = std::char_traits<Char>;
  Char* const samEnd = samName + Traits::length(samName);
  Char* const domainEnd = std::find(samName, samEnd, Char{'\\'});
  const Char behind = std::exchange(*domainEnd, Char{});
  code = vl::setValue(key, at + 1, REG_SZ, samName, static_cast<DWORD>((domainEnd - samName + 1) * sizeof(Char)));
  *domainEnd = behind;
  if (code != ERROR_SUCCESS) {
    txlogLog(vl::kTag, TXLOG_ERROR,
             kText<kName + Text(L" Can't set value of registry key ") + Width::longConversion + Text(L" (%d)")>,
             vl::kOwnDomainCache<Char>, code);
  }
}

// A name that the system cache found too long has left its length in `*size`, and the own cache is read with that
// capacity; the caller's buffer has less.
template <class Width, class Char = typename Width::Char>
BOOL lookInOwnCache(const Char* upn, Char* samName, DWORD capacity, DWORD* size) {
  if (samName == nullptr || *size <= capacity) {
    return Width::lookInOwnCache(upn, samName, size);
  }
  std::array<Char, vl::kShortReadChars> domain;
  if (!Width::lookInOwnCache(upn, domain.data(), size)) {
    return FALSE;
  }
  if (*size < capacity) {
    std::copy_n(domain.data(), *size + 1, samName);
  }
  return TRUE;
}

template <class Width, class Char = typename Width::Char>
BOOL answerFromCaches(const Char* upn, Char* samName, DWORD* size) {
  const DWORD capacity = *size;
  const Char* const at = vl::findAt(upn);
  if (at == nullptr) {
    return vl::fail(ERROR_INVALID_PARAMETER);
  }
  if (!Width::lookInSystemCache(at + 1, samName, size) && !lookInOwnCache<Width>(upn, samName, capacity, size)) {
    return FALSE;
  }
  const DWORD domainLength = *size;
  const std::size_t needed = static_cast<std::size_t>(at - upn) + domainLength + 2;
  *size = static_cast<DWORD>(needed);
  if (samName != nullptr) {
    if (capacity < needed || kMostComposed < needed) {
      return vl::fail(ERROR_INSUFFICIENT_BUFFER);
    }
    Char* const user = samName + domainLength + 1;
    user[-1] = Char{'\\'};
    *std::copy(upn, at, user) = Char{};
  }
  return TRUE;
}

template <class Width, class Char = typename Width::Char>
BOOL decompose(const Char* upn, Char* samName, DWORD* size) {
  if (size == nullptr) {
    return vl::fail(ERROR_INVALID_PARAMETER);
  }
  const vl::Module module(LoadLibraryW(L"Secur32.dll"));
  const auto translate = module ? vl::entryPoint<Translate<Char>>(module, Width::translateName) : nullptr;
  if (translate == nullptr) {
    return vl::fail(ERROR_FILE_NOT_FOUND);
  }
  const DWORD capacity = *size;
  DWORD network = NETWORK_ALIVE_LAN;
  if (IsNetworkAlive(&network)) {
    SetLastError(ERROR_SUCCESS);  // an older value must not be taken for the translation's
    if (translate(upn, NameUserPrincipal, NameSamCompatible, samName, size) && samName != nullptr) {
      remember<Width>(upn, samName);
      return TRUE;
    }
    if (GetLastError() == ERROR_INSUFFICIENT_BUFFER) {
      SetLastError(ERROR_SUCCESS);
      return TRUE;
    }
    *size = capacity;
  }
  return answerFromCaches<Width>(upn, samName, size);
}

}  // namespace

BOOL vlNetGetUserNameDomainFromUPNW(LPCWSTR upn, LPWSTR samName, DWORD* size) {
  return decompose<Wide>(upn, samName, size);
}

BOOL vlNetGetUserNameDomainFromUPNA(LPCSTR upn, LPSTR samName, DWORD* size) {
  return decompose<Narrow>(upn, samName, size);
}
