#include "status.h"

#include "gate.h"

namespace vlplatform {
namespace {

// Statuses of this facility carry a Win32 number.
constexpr DWORD kWin32Facility = 0xC0070000;

constexpr struct {
  NTSTATUS status;
  DWORD code;
} kCodes[] = {
    {STATUS_SUCCESS, ERROR_SUCCESS},
    {STATUS_UNSUCCESSFUL, ERROR_GEN_FAILURE},
    {STATUS_INVALID_HANDLE, ERROR_INVALID_HANDLE},
    {STATUS_INVALID_PARAMETER, ERROR_INVALID_PARAMETER},
    {STATUS_NO_MEMORY, ERROR_NOT_ENOUGH_MEMORY},
    {STATUS_ACCESS_DENIED, ERROR_ACCESS_DENIED},
    {STATUS_NO_LOGON_SERVERS, ERROR_NO_LOGON_SERVERS},
    {STATUS_NO_SUCH_USER, ERROR_NO_SUCH_USER},
    {STATUS_NONE_MAPPED, ERROR_NONE_MAPPED},
    {STATUS_INVALID_SID, ERROR_INVALID_SID},
    {STATUS_INSUFFICIENT_RESOURCES, ERROR_NO_SYSTEM_RESOURCES},
    {STATUS_NO_SUCH_DOMAIN, ERROR_NO_SUCH_DOMAIN},
    {STATUS_TRUSTED_RELATIONSHIP_FAILURE, ERROR_TRUSTED_RELATIONSHIP_FAILURE},
    {RPC_NT_SERVER_UNAVAILABLE, RPC_S_SERVER_UNAVAILABLE},
};

}  // namespace

DWORD win32Of(NTSTATUS status) {
  for (const auto& row : kCodes) {
    if (row.status == status) {
      return row.code;
    }
  }
  const auto bits = static_cast<DWORD>(status);
  return (bits & 0xFFFF0000) == kWin32Facility ? bits & 0xFFFF : ERROR_MR_MID_NOT_FOUND;
}

NTSTATUS statusOfFault(DWORD code) {
  return static_cast<NTSTATUS>(code >= 0x80000000 ? code : kWin32Facility | (code & 0xFFFF));
}

}  // namespace vlplatform

ULONG LsaNtStatusToWinError(NTSTATUS status) {
  vlplatform::gate("LsaNtStatusToWinError");
  return vlplatform::win32Of(status);
}
