/// Security identifiers (SIDs), account names and tokens.
#ifndef VLPLATFORM_SECURITY_H
#define VLPLATFORM_SECURITY_H

#include <vlplatform/basetypes.h>

#define SID_REVISION 1
#define SID_MAX_SUB_AUTHORITIES 15
#define SECURITY_MAX_SID_SIZE 68

using PSID = void*;

struct SID_IDENTIFIER_AUTHORITY {
  BYTE Value[6];  ///< most significant byte first
};
using PSID_IDENTIFIER_AUTHORITY = SID_IDENTIFIER_AUTHORITY*;

struct SID {
  BYTE Revision;
  BYTE SubAuthorityCount;
  SID_IDENTIFIER_AUTHORITY IdentifierAuthority;
  DWORD SubAuthority[1];
};

enum SID_NAME_USE {
  SidTypeUser = 1,
  SidTypeGroup,
  SidTypeDomain,
  SidTypeAlias,
  SidTypeWellKnownGroup,
  SidTypeDeletedAccount,
  SidTypeInvalid,
  SidTypeUnknown,
  SidTypeComputer,
  SidTypeLabel,
  SidTypeLogonSession
};
using PSID_NAME_USE = SID_NAME_USE*;

struct SID_AND_ATTRIBUTES {
  PSID Sid;
  DWORD Attributes;
};

struct TOKEN_USER {
  SID_AND_ATTRIBUTES User;
};

enum TOKEN_INFORMATION_CLASS { TokenUser = 1, TokenGroups, TokenPrivileges, TokenOwner, TokenPrimaryGroup };

#define TOKEN_QUERY 0x8u

extern "C" {
/// Revision 1 and at most 15 sub-authorities; null is none.
VLPLATFORM_API BOOL IsValidSid(PSID sid);
/// These four read a valid SID and can't fail. The pointers point into it.
VLPLATFORM_API DWORD GetLengthSid(PSID sid);
VLPLATFORM_API PSID_IDENTIFIER_AUTHORITY GetSidIdentifierAuthority(PSID sid);
VLPLATFORM_API PUCHAR GetSidSubAuthorityCount(PSID sid);
VLPLATFORM_API PDWORD GetSidSubAuthority(PSID sid, DWORD index);
/// Begins a SID whose sub-authorities the caller fills in. ERROR_INVALID_PARAMETER for more than 15 of them.
VLPLATFORM_API BOOL InitializeSid(PSID sid, PSID_IDENTIFIER_AUTHORITY authority, BYTE subAuthorities);
/// ERROR_INSUFFICIENT_BUFFER if `bytes` are too few, ERROR_INVALID_SID if there is no valid SID to copy.
VLPLATFORM_API BOOL CopySid(DWORD bytes, PSID target, PSID source);

/// The text is a block for LocalFree. The authority is decimal if it fits 32 bits, else "0x" and 12 digits.
/// ERROR_INVALID_PARAMETER for null pointers, ERROR_INVALID_SID.
VLPLATFORM_API BOOL ConvertSidToStringSidW(PSID sid, LPWSTR* text);
/// The SID is a block for LocalFree. Reads "S-1-" with an authority and 1 to 15 sub-authorities, decimal or
/// hexadecimal ("0x"). ERROR_INVALID_PARAMETER for null pointers, ERROR_INVALID_SID for all other texts, the platform's
/// two-letter names as well.
VLPLATFORM_API BOOL ConvertStringSidToSidW(LPCWSTR text, PSID* sid);

/// Finds an account by "DOMAIN\name", by a bare name or a user principal name, and a domain by its name. `system`: null
/// or this computer (RPC_S_SERVER_UNAVAILABLE for another). `sidSize` counts bytes, `domainSize` characters. If either
/// is too small, ERROR_INSUFFICIENT_BUFFER, both receive what is needed, with the domain's terminator, and no buffer
/// is touched. On success `sidSize` is the SID's length and `domainSize` the name's without terminator.
/// ERROR_NONE_MAPPED if there is no such account.
VLPLATFORM_API BOOL LookupAccountNameW(LPCWSTR system, LPCWSTR account, PSID sid, LPDWORD sidSize, LPWSTR domain,
                                       LPDWORD domainSize, PSID_NAME_USE use);
VLPLATFORM_API BOOL LookupAccountNameA(LPCSTR system, LPCSTR account, PSID sid, LPDWORD sidSize, LPSTR domain,
                                       LPDWORD domainSize, PSID_NAME_USE use);

/// A pseudo handle, which needs no CloseHandle.
VLPLATFORM_API HANDLE GetCurrentProcess();
/// Only the process's own token is there: ERROR_INVALID_HANDLE for other processes. CloseHandle releases it.
VLPLATFORM_API BOOL OpenProcessToken(HANDLE process, DWORD access, PHANDLE token);
/// TokenUser only. With too few `bytes`, none for instance: ERROR_INSUFFICIENT_BUFFER and what is needed in `needed`.
/// ERROR_ACCESS_DENIED if the token was opened without TOKEN_QUERY.
VLPLATFORM_API BOOL GetTokenInformation(HANDLE token, TOKEN_INFORMATION_CLASS informationClass, LPVOID information,
                                        DWORD bytes, PDWORD needed);
VLPLATFORM_API BOOL CloseHandle(HANDLE handle);
}

#endif
