#include <vlplatform/machine/network.h>

#include <ifaddrs.h>
#include <net/if.h>

#include <memory>

#include "gate.h"
#include "unicode.h"

namespace vlplatform {
namespace {

bool thisComputersNetworkAlive() {
  ifaddrs* addresses = nullptr;
  if (getifaddrs(&addresses) != 0) {
    return false;
  }
  const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> guard(addresses, &freeifaddrs);
  for (const ifaddrs* next = addresses; next != nullptr; next = next->ifa_next) {
    constexpr unsigned kUp = IFF_UP | IFF_RUNNING;
    const bool internet =
        next->ifa_addr != nullptr && (next->ifa_addr->sa_family == AF_INET || next->ifa_addr->sa_family == AF_INET6);
    if (internet && (next->ifa_flags & (kUp | IFF_LOOPBACK)) == kUp) {
      return true;
    }
  }
  return false;
}

std::wstring_view suffixOf(std::wstring_view principal) {
  return principal.substr(std::min(principal.find(L'@'), principal.size()));
}

}  // namespace

bool Network::alive() const {
  const auto alive = facts_.get(&Facts::alive);
  return alive ? *alive : thisComputersNetworkAlive();
}

void Network::addPrincipal(std::wstring_view principal, std::wstring_view samName) {
  facts_.with([&](Facts& facts) { facts.principals[lowerCase(principal)] = samName; });
}

DWORD Network::translate(std::wstring_view principal, std::wstring* samName) const {
  if (!alive()) {
    return ERROR_NO_SUCH_DOMAIN;
  }
  return facts_.with([&](const Facts& facts) -> DWORD {
    const std::wstring key = lowerCase(principal);
    if (const auto found = facts.principals.find(key); found != facts.principals.end()) {
      *samName = found->second;
      return ERROR_SUCCESS;
    }
    for (const auto& [known, name] : facts.principals) {
      if (suffixOf(known) == suffixOf(key)) {
        return ERROR_NONE_MAPPED;
      }
    }
    return ERROR_NO_SUCH_DOMAIN;
  });
}

namespace {

template <class Char>
DWORD translate(const Char* name, EXTENDED_NAME_FORMAT format, EXTENDED_NAME_FORMAT desired, Char* translated,
                ULONG* size) {
  if (name == nullptr || size == nullptr || format != NameUserPrincipal || desired != NameSamCompatible) {
    return ERROR_INVALID_PARAMETER;
  }
  const OwnAllocations own;
  const Network& network = machine().network();
  std::wstring samName;
  if (const DWORD code = network.translate(wideOrEmpty(name), &samName); code != ERROR_SUCCESS) {
    return code;
  }
  const std::basic_string<Char> text = inWidth<Char>(samName);
  const ULONG capacity = *size;
  *size = static_cast<ULONG>(text.size() + 1);
  if (translated == nullptr) {
    return network.sizeQuerySucceeds() ? ERROR_SUCCESS : ERROR_INSUFFICIENT_BUFFER;
  }
  if (capacity < *size) {
    return ERROR_INSUFFICIENT_BUFFER;
  }
  copyTerminated<Char>(text, translated);
  return ERROR_SUCCESS;
}

}  // namespace
}  // namespace vlplatform

BOOL IsNetworkAlive(LPDWORD flags) {
  if (vlplatform::gateFails("IsNetworkAlive")) {
    return FALSE;
  }
  if (flags == nullptr) {
    return vlplatform::succeed(ERROR_INVALID_PARAMETER);
  }
  const vlplatform::OwnAllocations own;
  if (!vlplatform::machine().network().alive()) {
    return FALSE;
  }
  *flags = NETWORK_ALIVE_LAN;
  return TRUE;
}

BOOLEAN TranslateNameW(LPCWSTR name, EXTENDED_NAME_FORMAT format, EXTENDED_NAME_FORMAT desired, LPWSTR translated,
                       PULONG size) {
  return !vlplatform::gateFails("TranslateNameW") &&
         vlplatform::succeed(vlplatform::translate(name, format, desired, translated, size));
}

BOOLEAN TranslateNameA(LPCSTR name, EXTENDED_NAME_FORMAT format, EXTENDED_NAME_FORMAT desired, LPSTR translated,
                       PULONG size) {
  return !vlplatform::gateFails("TranslateNameA") &&
         vlplatform::succeed(vlplatform::translate(name, format, desired, translated, size));
}
