// The process's token. Tokens are the only objects that CloseHandle knows.
#include <string>

#include "accounts/sidvalue.h"
#include "gate.h"
#include "handletable.h"

namespace vlplatform {
namespace {

struct Token {
  DWORD access;
  std::wstring user;  // SID text
};

HandleTable<Token>& tokens() {
  static auto& table = *new HandleTable<Token>(Resource::token);
  return table;
}

HANDLE thisProcess() {
  return reinterpret_cast<HANDLE>(static_cast<INT_PTR>(-1));
}

DWORD readUser(const Token& token, void* information, DWORD bytes, DWORD* needed) {
  const SidValue sid = *SidValue::ofText(token.user);
  *needed = static_cast<DWORD>(sizeof(TOKEN_USER)) + sid.length();
  if (bytes < *needed) {
    return ERROR_INSUFFICIENT_BUFFER;
  }
  if (information == nullptr) {
    return ERROR_NOACCESS;
  }
  auto* const user = static_cast<TOKEN_USER*>(information);
  user->User.Sid = user + 1;
  user->User.Attributes = 0;
  sid.write(user + 1);
  return ERROR_SUCCESS;
}

DWORD readToken(HANDLE handle, TOKEN_INFORMATION_CLASS informationClass, void* information, DWORD bytes,
                DWORD* needed) {
  const OwnAllocations own;
  const std::optional<Token> token = tokens().find(handle);
  if (!token) {
    return ERROR_INVALID_HANDLE;
  }
  if ((token->access & TOKEN_QUERY) == 0) {
    return ERROR_ACCESS_DENIED;
  }
  if (informationClass != TokenUser) {
    return ERROR_INVALID_PARAMETER;
  }
  return needed != nullptr ? readUser(*token, information, bytes, needed) : ERROR_NOACCESS;
}

}  // namespace
}  // namespace vlplatform

using namespace vlplatform;

HANDLE GetCurrentProcess() {
  gate("GetCurrentProcess");
  return thisProcess();
}

BOOL OpenProcessToken(HANDLE process, DWORD access, PHANDLE token) {
  if (gateFails("OpenProcessToken")) {
    return FALSE;
  }
  if (process != thisProcess()) {
    return succeed(ERROR_INVALID_HANDLE);
  }
  if (token == nullptr) {
    return succeed(ERROR_NOACCESS);
  }
  const OwnAllocations own;
  *token = tokens().open({access, machine().accounts().processUser()});
  return TRUE;
}

BOOL GetTokenInformation(HANDLE token, TOKEN_INFORMATION_CLASS informationClass, LPVOID information, DWORD bytes,
                         PDWORD needed) {
  return !gateFails("GetTokenInformation") && succeed(readToken(token, informationClass, information, bytes, needed));
}

// Released although a fault is planned, as FreeLibrary does it.
BOOL CloseHandle(HANDLE handle) {
  const DWORD planned = gate("CloseHandle");
  const bool closed = handle == thisProcess() || tokens().close(handle);
  return succeed(planned != ERROR_SUCCESS ? planned : closed ? ERROR_SUCCESS : ERROR_INVALID_HANDLE);
}
