// The functions that read, copy and convert SIDs.
#include <cstring>
#include <string>

#include "accounts/sidvalue.h"
#include "blocks.h"
#include "gate.h"
#include "unicode.h"

using namespace vlplatform;

namespace {

BYTE* bytesOf(PSID sid) {
  return static_cast<BYTE*>(sid);
}

DWORD lengthOf(PSID sid) {
  return static_cast<DWORD>(offsetof(SID, SubAuthority) + bytesOf(sid)[1] * sizeof(DWORD));
}

}  // namespace

BOOL IsValidSid(PSID sid) {
  return !gateFails("IsValidSid") && isValidSid(sid);
}

DWORD GetLengthSid(PSID sid) {
  gate("GetLengthSid");
  return lengthOf(sid);
}

PSID_IDENTIFIER_AUTHORITY GetSidIdentifierAuthority(PSID sid) {
  gate("GetSidIdentifierAuthority");
  return reinterpret_cast<PSID_IDENTIFIER_AUTHORITY>(bytesOf(sid) + offsetof(SID, IdentifierAuthority));
}

PUCHAR GetSidSubAuthorityCount(PSID sid) {
  gate("GetSidSubAuthorityCount");
  return bytesOf(sid) + offsetof(SID, SubAuthorityCount);
}

PDWORD GetSidSubAuthority(PSID sid, DWORD index) {
  gate("GetSidSubAuthority");
  return reinterpret_cast<PDWORD>(bytesOf(sid) + offsetof(SID, SubAuthority)) + index;
}

BOOL InitializeSid(PSID sid, PSID_IDENTIFIER_AUTHORITY authority, BYTE subAuthorities) {
  if (gateFails("InitializeSid")) {
    return FALSE;
  }
  if (sid == nullptr || authority == nullptr || subAuthorities > SID_MAX_SUB_AUTHORITIES) {
    return succeed(ERROR_INVALID_PARAMETER);
  }
  BYTE* const bytes = bytesOf(sid);
  bytes[0] = SID_REVISION;
  bytes[1] = subAuthorities;
  std::memcpy(bytes + offsetof(SID, IdentifierAuthority), authority, sizeof *authority);
  return TRUE;
}

BOOL CopySid(DWORD bytes, PSID target, PSID source) {
  if (gateFails("CopySid")) {
    return FALSE;
  }
  if (target == nullptr || !isValidSid(source)) {
    return succeed(ERROR_INVALID_SID);
  }
  if (bytes < lengthOf(source)) {
    return succeed(ERROR_INSUFFICIENT_BUFFER);
  }
  std::memmove(target, source, lengthOf(source));
  return TRUE;
}

BOOL ConvertSidToStringSidW(PSID sid, LPWSTR* text) {
  if (gateFails("ConvertSidToStringSidW")) {
    return FALSE;
  }
  if (sid == nullptr || text == nullptr) {
    return succeed(ERROR_INVALID_PARAMETER);
  }
  const OwnAllocations own;
  const std::optional<SidValue> value = SidValue::ofBlock(sid);
  if (!value) {
    return succeed(ERROR_INVALID_SID);
  }
  const std::wstring rendered = value->text();
  auto* const block = static_cast<wchar_t*>(localBlocks().allocate((rendered.size() + 1) * sizeof(wchar_t), false));
  if (block == nullptr) {
    return succeed(ERROR_NOT_ENOUGH_MEMORY);
  }
  copyTerminated<wchar_t>(rendered, block);
  *text = block;
  return TRUE;
}

BOOL ConvertStringSidToSidW(LPCWSTR text, PSID* sid) {
  if (gateFails("ConvertStringSidToSidW")) {
    return FALSE;
  }
  if (text == nullptr || sid == nullptr) {
    return succeed(ERROR_INVALID_PARAMETER);
  }
  const OwnAllocations own;
  const std::optional<SidValue> value = SidValue::ofText(text);
  if (!value) {
    return succeed(ERROR_INVALID_SID);
  }
  void* const block = localBlocks().allocate(value->length(), false);
  if (block == nullptr) {
    return succeed(ERROR_NOT_ENOUGH_MEMORY);
  }
  value->write(block);
  *sid = block;
  return TRUE;
}
