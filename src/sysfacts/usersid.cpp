// The SID of a named account.
#include <cstdlib>
#include <string>

#include <vlhostkit/sysfacts.h>

#include "frame/callframe.h"
#include "frame/handle.h"
#include "frame/width.h"

namespace {

using vl::kText;
using vl::Text;

struct Narrow : vl::Narrow {
  static constexpr auto lookUp = &LookupAccountNameA;
};

struct Wide : vl::Wide {
  static constexpr auto lookUp = &LookupAccountNameW;
};

DWORD lookupFailed(DWORD code) {
  txlogLog(vl::kTag, TXLOG_ERROR, L"vlSysGetUserSID Unable to lookup for the SID of the account (%d)", code);
  return code;
}

DWORD outOfMemory() {
  txlogLog(vl::kTag, TXLOG_ERROR, L"vlSysGetUserSID Memory allocation failed\n");
  return ERROR_NOT_ENOUGH_MEMORY;
}

// From its allocation on, the block is the caller's, whatever follows.
template <class Width, class String = typename Width::String>
DWORD lookUp(const String& account, void*& sid) {
  using Char = typename Width::Char;
  DWORD sidBytes = 0;
  DWORD domainChars = 0;
  SID_NAME_USE use{};
  if (Width::lookUp(nullptr, account.c_str(), nullptr, &sidBytes, nullptr, &domainChars, &use)) {
    return ERROR_SUCCESS;
  }
  const DWORD code = GetLastError();
  if (code != ERROR_INSUFFICIENT_BUFFER) {
    return lookupFailed(code);
  }
  sid = std::calloc(sidBytes, 1);
  if (sid == nullptr) {
    return outOfMemory();
  }
  const vl::RuntimeBlock<Char*> domain(static_cast<Char*>(std::calloc(domainChars, sizeof(Char))));
  if (!domain) {
    return outOfMemory();
  }
  if (!Width::lookUp(nullptr, account.c_str(), sid, &sidBytes, domain.get(), &domainChars, &use)) {
    return lookupFailed(GetLastError());
  }
  return ERROR_SUCCESS;
}

template <class Width, class String = typename Width::String>
unsigned long getUserSid(const String& user, const String& domain, void*& sid) {
  using Char = typename Width::Char;
  DWORD result = ERROR_SUCCESS;
  const vl::CallFrame frame(vl::kTag, kText<Text(L"vlSysGetUserSID(") + Width::conversion + Text(L",%p)")>,
                            vl::ExitWith(L"vlSysGetUserSID (%d)", result), domain.c_str(), sid);
  const String account = domain + Char{'\\'} + user;
  sid = nullptr;
  result = lookUp<Width>(account, sid);
  return result;
}

template <class Width, class Char = typename Width::Char>
DWORD getUserSidFlat(const Char* user, const Char* domain, void** sid) {
  static constexpr Text kName = Text(L"vlSysGetUserSID") + Width::suffix;
  DWORD result = ERROR_SUCCESS;
  const vl::CallFrame frame(vl::kTag, kText<kName + Text(L"(%p,%p)")>,
                            vl::ExitWith(kText<kName + Text(L" (%d)")>, result), domain, sid);
  using String = typename Width::String;
  result = static_cast<DWORD>(vlSysGetUserSID(String(user), String(domain), *sid));
  return result;
}

}  // namespace

unsigned long vlSysGetUserSID(const std::wstring& user, const std::wstring& domain, void*& sid) {
  return getUserSid<Wide>(user, domain, sid);
}

unsigned long vlSysGetUserSID(const std::string& user, const std::string& domain, void*& sid) {
  return getUserSid<Narrow>(user, domain, sid);
}

DWORD vlSysGetUserSIDW(LPCWSTR user, LPCWSTR domain, void** sid) {
  return getUserSidFlat<Wide>(user, domain, sid);
}

DWORD vlSysGetUserSIDA(LPCSTR user, LPCSTR domain, void** sid) {
  return getUserSidFlat<Narrow>(user, domain, sid);
}
