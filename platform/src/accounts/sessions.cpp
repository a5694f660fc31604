#include <vlplatform/machine/sessions.h>

#include <unistd.h>

#include "accounts/thiscomputer.h"
#include "blocks.h"
#include "gate.h"
#include "unicode.h"

namespace vlplatform {

Sessions::User Sessions::user() const {
  if (const auto user = facts_.get(&Facts::user)) {
    return *user;
  }
  const uid_t user = getuid();
  return {nameOfUser(user).value_or(std::to_wstring(user)), machine().accounts().computerName()};
}

namespace {

template <class Char>
DWORD query(HANDLE server, DWORD session, WTS_INFO_CLASS infoClass, Char** buffer, DWORD* bytes) {
  if (buffer == nullptr || bytes == nullptr) {
    return ERROR_INVALID_PARAMETER;
  }
  if (server != WTS_CURRENT_SERVER_HANDLE) {
    return ERROR_INVALID_HANDLE;
  }
  if (session != WTS_CURRENT_SESSION) {
    return ERROR_FILE_NOT_FOUND;
  }
  if (infoClass != WTSUserName && infoClass != WTSDomainName) {
    return ERROR_NOT_SUPPORTED;
  }
  const OwnAllocations own;
  const Sessions::User user = machine().sessions().user();
  const std::basic_string<Char> text = inWidth<Char>(infoClass == WTSUserName ? user.name : user.domain);
  const std::size_t size = (text.size() + 1) * sizeof(Char);
  auto* const block = static_cast<Char*>(sessionBlocks().allocate(size, false));
  if (block == nullptr) {
    return ERROR_NOT_ENOUGH_MEMORY;
  }
  copyTerminated<Char>(text, block);
  *buffer = block;
  *bytes = static_cast<DWORD>(size);
  return ERROR_SUCCESS;
}

}  // namespace
}  // namespace vlplatform

BOOL WTSQuerySessionInformationW(HANDLE server, DWORD session, WTS_INFO_CLASS infoClass, LPWSTR* buffer, DWORD* bytes) {
  return !vlplatform::gateFails("WTSQuerySessionInformationW") &&
         vlplatform::succeed(vlplatform::query(server, session, infoClass, buffer, bytes));
}

BOOL WTSQuerySessionInformationA(HANDLE server, DWORD session, WTS_INFO_CLASS infoClass, LPSTR* buffer, DWORD* bytes) {
  return !vlplatform::gateFails("WTSQuerySessionInformationA") &&
         vlplatform::succeed(vlplatform::query(server, session, infoClass, buffer, bytes));
}

void WTSFreeMemory(PVOID block) {
  vlplatform::gate("WTSFreeMemory");
  vlplatform::sessionBlocks().release(block);
}
