// As which account the process itself runs, from its token.
#include <string_view>

#include <vlhostkit/accounts.h>

#include "accounts/names.h"
#include "frame/callframe.h"
#include "frame/handle.h"

namespace {

using Buffer = vl::NameBuffer<wchar_t>;

std::wstring_view textOf(const LSA_UNICODE_STRING& text) {
  return {text.Buffer, text.Length / sizeof(wchar_t)};
}

DWORD openToken(vl::Token& token) {
  if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token.put())) {
    return ERROR_SUCCESS;
  }
  const DWORD code = GetLastError();
  txlogLog(vl::kTag, TXLOG_ERROR, L"vlNetGetCurrentProcessUserAndDomainW Can't open the process token (%d)", code);
  return code;
}

DWORD readUser(const vl::Token& token, vl::HeapBlock<TOKEN_USER*>& user) {
  DWORD bytes = 0;
  if (!GetTokenInformation(token.get(), TokenUser, nullptr, 0, &bytes)) {
    const DWORD code = GetLastError();
    if (code != ERROR_INSUFFICIENT_BUFFER) {
      txlogLog(vl::kTag, TXLOG_ERROR,
               L"vlNetGetCurrentProcessUserAndDomainW unexpected error while retrieving TOKEN_USER buffer size (%d)",
               code);
      return code;
    }
  }
  user.reset(static_cast<TOKEN_USER*>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, bytes)));
  if (!user) {
    txlogLog(vl::kTag, TXLOG_ERROR,
             L"vlNetGetCurrentProcessUserAndDomainW can't allocate memory for TOKEN_USER structure");
    return ERROR_NOT_ENOUGH_MEMORY;
  }
  if (!GetTokenInformation(token.get(), TokenUser, user.get(), bytes, &bytes)) {
    const DWORD code = GetLastError();
    txlogLog(vl::kTag, TXLOG_ERROR, L"vlNetGetCurrentProcessUserAndDomainW Can't retrieve TokenUser information (%d)",
             code);
    return code;
  }
  return ERROR_SUCCESS;
}

DWORD openPolicy(vl::Policy& policy) {
  LSA_OBJECT_ATTRIBUTES attributes{};
  const DWORD code = LsaNtStatusToWinError(LsaOpenPolicy(nullptr, &attributes, POLICY_LOOKUP_NAMES, policy.put()));
  if (code != ERROR_SUCCESS) {
    txlogLog(vl::kTag, TXLOG_ERROR, L"vlNetGetCurrentProcessUserAndDomainW Can't open policy (%d)", code);
  }
  return code;
}

// Both names or none.
DWORD deliverBoth(std::wstring_view userName, Buffer user, std::wstring_view domainName, Buffer domain) {
  DWORD result = ERROR_INSUFFICIENT_BUFFER;
  if (user.text == nullptr || user.tooSmallFor(userName) || domain.text == nullptr || domain.tooSmallFor(domainName)) {
    txlogLog(vl::kTag, TXLOG_ERROR, L"vlNetGetCurrentProcessUserAndDomainW Insufficient buffers (%d,%d)", *user.size,
             *domain.size);
  } else {
    user.copy(userName);
    domain.copy(domainName);
    result = ERROR_SUCCESS;
  }
  user.storeSize(userName);
  domain.storeSize(domainName);
  return result;
}

DWORD lookUp(const vl::Policy& policy, PSID sid, Buffer user, Buffer domain) {
  vl::LsaBlock<LSA_REFERENCED_DOMAIN_LIST*> domains;
  vl::LsaBlock<LSA_TRANSLATED_NAME*> names;
  const DWORD code = LsaNtStatusToWinError(LsaLookupSids(policy.get(), 1, &sid, domains.put(), names.put()));
  if (code != ERROR_SUCCESS) {
    txlogLog(vl::kTag, TXLOG_ERROR, L"vlNetGetCurrentProcessUserAndDomainW LsaLookupSids failed (%d)", code);
    return code;
  }
  const bool hasDomain = domains && domains.get()->Entries > 0;
  return deliverBoth(textOf(names.get()->Name), user,
                     hasDomain ? textOf(domains.get()->Domains[0].Name) : std::wstring_view(), domain);
}

DWORD processUser(Buffer user, Buffer domain) {
  vl::Token token;
  vl::HeapBlock<TOKEN_USER*> tokenUser;
  vl::Policy policy;
  DWORD code = openToken(token);
  if (code == ERROR_SUCCESS) {
    code = readUser(token, tokenUser);
  }
  if (code == ERROR_SUCCESS) {
    code = openPolicy(policy);
  }
  return code == ERROR_SUCCESS ? lookUp(policy, tokenUser.get()->User.Sid, user, domain) : code;
}

}  // namespace

int vlNetGetCurrentProcessUserAndDomainW(LPWSTR userName, DWORD* userNameSize, LPWSTR domainName,
                                         DWORD* domainNameSize) {
  DWORD result = ERROR_INVALID_PARAMETER;
  const vl::CallFrame frame(vl::kTag, L"vlNetGetCurrentProcessUserAndDomainW (%p,%p,%p)",
                            vl::ExitWith(L"vlNetGetCurrentProcessUserAndDomainW (%d)", result), userNameSize,
                            domainName, domainNameSize);
  if (userNameSize == nullptr || domainNameSize == nullptr) {
    txlogLog(vl::kTag, TXLOG_ERROR, L"vlNetGetCurrentProcessUserAndDomainW invalid parameter");
    return static_cast<int>(result);
  }
  result = processUser({userName, userNameSize}, {domainName, domainNameSize});
  return static_cast<int>(result);
}
