// LookupAccountNameW and LookupAccountNameA.
#include <string>

#include "accounts/sidvalue.h"
#include "accounts/status.h"
#include "gate.h"
#include "unicode.h"

namespace vlplatform {
namespace {

template <class Char>
DWORD lookUp(const Char* system, const Char* name, PSID sid, DWORD* sidSize, Char* domain, DWORD* domainSize,
             SID_NAME_USE* use) {
  if (sidSize == nullptr || domainSize == nullptr || use == nullptr) {
    return ERROR_INVALID_PARAMETER;
  }
  const OwnAllocations own;
  Accounts& accounts = machine().accounts();
  if (!accounts.isThisComputer(wideOrEmpty(system))) {
    return RPC_S_SERVER_UNAVAILABLE;
  }
  Account account;
  const NTSTATUS status = accounts.byName(wideOrEmpty(name), &account);
  if (status != STATUS_SUCCESS) {
    return win32Of(status);
  }
  const SidValue value = *SidValue::ofText(account.sid);
  const std::basic_string<Char> domainText = inWidth<Char>(account.domain);
  const auto domainLength = static_cast<DWORD>(domainText.size());
  if (*sidSize < value.length() || *domainSize <= domainLength) {
    *sidSize = value.length();
    *domainSize = domainLength + 1;
    return ERROR_INSUFFICIENT_BUFFER;
  }
  if (sid == nullptr || domain == nullptr) {
    return ERROR_INVALID_PARAMETER;
  }
  value.write(sid);
  copyTerminated<Char>(domainText, domain);
  *sidSize = value.length();
  *domainSize = domainLength;
  *use = account.use;
  return ERROR_SUCCESS;
}

}  // namespace
}  // namespace vlplatform

BOOL LookupAccountNameW(LPCWSTR system, LPCWSTR account, PSID sid, LPDWORD sidSize, LPWSTR domain, LPDWORD domainSize,
                        PSID_NAME_USE use) {
  return !vlplatform::gateFails("LookupAccountNameW") &&
         vlplatform::succeed(vlplatform::lookUp(system, account, sid, sidSize, domain, domainSize, use));
}

BOOL LookupAccountNameA(LPCSTR system, LPCSTR account, PSID sid, LPDWORD sidSize, LPSTR domain, LPDWORD domainSize,
                        PSID_NAME_USE use) {
  return !vlplatform::gateFails("LookupAccountNameA") &&
         vlplatform::succeed(vlplatform::lookUp(system, account, sid, sidSize, domain, domainSize, use));
}
