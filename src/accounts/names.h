/// The size protocol of functions that hand a user name and a domain name to the caller's buffers.
#ifndef VL_ACCOUNTS_NAMES_H
#define VL_ACCOUNTS_NAMES_H

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "platform.h"

namespace vl {

/// A caller's buffer, null to ask for the size only, and its capacity in characters with the terminator.
template <class Char>
struct NameBuffer {
  Char* text;
  DWORD* size;

  bool tooSmallFor(std::basic_string_view<Char> name) const { return *size <= name.size(); }
  void copy(std::basic_string_view<Char> name) const { *std::copy(name.begin(), name.end(), text) = Char{}; }
  void storeSize(std::basic_string_view<Char> name) const { *size = static_cast<DWORD>(name.size() + 1); }
};

/// Two names at once. `Records` logs on the way: userTooSmall and domainTooSmall with capacity and length,
/// userDelivered, and domainDelivered with the buffer.
template <class Records, class Char>
DWORD deliver(std::basic_string_view<Char> userName, NameBuffer<Char> user, std::basic_string_view<Char> domainName,
              NameBuffer<Char> domain) {
  if (user.text != nullptr) {
    if (user.tooSmallFor(userName)) {
      Records::userTooSmall(*user.size, static_cast<DWORD>(userName.size()));
      user.storeSize(userName);
      domain.storeSize(domainName);
      return ERROR_INSUFFICIENT_BUFFER;
    }
    user.copy(userName);
    Records::userDelivered();
  }
  user.storeSize(userName);

  DWORD result = ERROR_SUCCESS;
  if (domain.text != nullptr) {
    if (domain.tooSmallFor(domainName)) {
      Records::domainTooSmall(*domain.size, static_cast<DWORD>(domainName.size()));
      result = ERROR_INSUFFICIENT_BUFFER;
    } else {
      domain.copy(domainName);
      Records::domainDelivered(domain.text);
    }
  }
  domain.storeSize(domainName);
  return result;
}

}  // namespace vl

#endif
