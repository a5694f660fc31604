/// The size protocol of functions that hand a user name and a domain name to the caller's buffers.
#ifndef VL_ACCOUNTS_NAMES_H
#define VL_ACCOUNTS_NAMES_H

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "frame/log.h"
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

/// What the delivery of two names logs. The first texts show capacity and length, the length with `terminator` added;
/// the second ones may be null, and that of the domain shows it.
struct NameTexts {
  const wchar_t* userTooSmall;
  const wchar_t* userDelivered;
  const wchar_t* domainTooSmall;
  const wchar_t* domainDelivered;
  DWORD terminator;
};

/// Two names at once.
template <class Char>
DWORD deliver(const NameTexts& texts, std::basic_string_view<Char> userName, NameBuffer<Char> user,
              std::basic_string_view<Char> domainName, NameBuffer<Char> domain) {
  const auto logTooSmall = [&](const wchar_t* text, DWORD capacity, std::size_t length) {
    txlogLog(kTag, TXLOG_ERROR, text, capacity, static_cast<DWORD>(length) + texts.terminator);
  };
  if (user.text != nullptr) {
    if (user.tooSmallFor(userName)) {
      logTooSmall(texts.userTooSmall, *user.size, userName.size());
      user.storeSize(userName);
      domain.storeSize(domainName);
      return ERROR_INSUFFICIENT_BUFFER;
    }
    user.copy(userName);
    if (texts.userDelivered != nullptr) {
      txlogLog(kTag, TXLOG_TRACE, texts.userDelivered);
    }
  }
  user.storeSize(userName);

  DWORD result = ERROR_SUCCESS;
  if (domain.text != nullptr) {
    if (domain.tooSmallFor(domainName)) {
      logTooSmall(texts.domainTooSmall, *domain.size, domainName.size());
      result = ERROR_INSUFFICIENT_BUFFER;
    } else {
      domain.copy(domainName);
      if (texts.domainDelivered != nullptr) {
        txlogLog(kTag, TXLOG_TRACE, texts.domainDelivered, domain.text);
      }
    }
  }
  domain.storeSize(domainName);
  return result;
}

}  // namespace vl

#endif
