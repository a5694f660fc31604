/// The local security authority: names to SIDs and back. Results are NTSTATUS numbers, the last-error value stays.
#ifndef VLPLATFORM_LSA_H
#define VLPLATFORM_LSA_H

#include <vlplatform/security.h>

/// Lengths count bytes, without and with terminator.
struct LSA_UNICODE_STRING {
  USHORT Length;
  USHORT MaximumLength;
  LPWSTR Buffer;
};
using PLSA_UNICODE_STRING = LSA_UNICODE_STRING*;

struct LSA_OBJECT_ATTRIBUTES {
  ULONG Length;
  HANDLE RootDirectory;
  PLSA_UNICODE_STRING ObjectName;
  ULONG Attributes;
  PVOID SecurityDescriptor;
  PVOID SecurityQualityOfService;
};
using PLSA_OBJECT_ATTRIBUTES = LSA_OBJECT_ATTRIBUTES*;

struct LSA_TRUST_INFORMATION {
  LSA_UNICODE_STRING Name;
  PSID Sid;
};

struct LSA_REFERENCED_DOMAIN_LIST {
  ULONG Entries;
  LSA_TRUST_INFORMATION* Domains;
};
using PLSA_REFERENCED_DOMAIN_LIST = LSA_REFERENCED_DOMAIN_LIST*;

/// DomainIndex is -1 where no domain is known.
struct LSA_TRANSLATED_SID2 {
  SID_NAME_USE Use;
  PSID Sid;
  LONG DomainIndex;
  ULONG Flags;
};
using PLSA_TRANSLATED_SID2 = LSA_TRANSLATED_SID2*;

struct LSA_TRANSLATED_NAME {
  SID_NAME_USE Use;
  LSA_UNICODE_STRING Name;
  LONG DomainIndex;
};
using PLSA_TRANSLATED_NAME = LSA_TRANSLATED_NAME*;

using LSA_HANDLE = PVOID;
using PLSA_HANDLE = LSA_HANDLE*;

#define POLICY_LOOKUP_NAMES 0x800u

#define STATUS_SUCCESS (static_cast<NTSTATUS>(0))
#define STATUS_UNSUCCESSFUL (static_cast<NTSTATUS>(0xC0000001))
#define STATUS_INVALID_HANDLE (static_cast<NTSTATUS>(0xC0000008))
#define STATUS_INVALID_PARAMETER (static_cast<NTSTATUS>(0xC000000D))
#define STATUS_NO_MEMORY (static_cast<NTSTATUS>(0xC0000017))
#define STATUS_ACCESS_DENIED (static_cast<NTSTATUS>(0xC0000022))
#define STATUS_NO_LOGON_SERVERS (static_cast<NTSTATUS>(0xC000005E))
#define STATUS_NO_SUCH_USER (static_cast<NTSTATUS>(0xC0000064))
#define STATUS_NONE_MAPPED (static_cast<NTSTATUS>(0xC0000073))
#define STATUS_INVALID_SID (static_cast<NTSTATUS>(0xC0000078))
#define STATUS_INSUFFICIENT_RESOURCES (static_cast<NTSTATUS>(0xC000009A))
#define STATUS_NO_SUCH_DOMAIN (static_cast<NTSTATUS>(0xC00000DF))
#define STATUS_TRUSTED_RELATIONSHIP_FAILURE (static_cast<NTSTATUS>(0xC000018D))
#define RPC_NT_SERVER_UNAVAILABLE (static_cast<NTSTATUS>(0xC0020017))

/// A planned fault's code becomes the status as it stands if it is a failure's (from 0x80000000 on); a smaller number
/// counts as a Win32 error, which LsaNtStatusToWinError gives back.
extern "C" {
/// `system`: null or this computer, "\\name" or "name"; RPC_NT_SERVER_UNAVAILABLE for another. LsaClose releases it.
VLPLATFORM_API NTSTATUS LsaOpenPolicy(PLSA_UNICODE_STRING system, PLSA_OBJECT_ATTRIBUTES attributes, ACCESS_MASK access,
                                      PLSA_HANDLE policy);
/// Looks up one SID: STATUS_INVALID_PARAMETER for another `count`. STATUS_SUCCESS if it was found, or
/// STATUS_NONE_MAPPED: in these two cases both lists are there, and LsaFreeMemory releases each. An unknown SID has its
/// text for a name. After any other status both pointers are null. All names have a terminator. Wants a policy opened
/// with POLICY_LOOKUP_NAMES.
VLPLATFORM_API NTSTATUS LsaLookupSids(LSA_HANDLE policy, ULONG count, PSID* sids, PLSA_REFERENCED_DOMAIN_LIST* domains,
                                      PLSA_TRANSLATED_NAME* names);
/// In advapi32.dll's table only (LoadLibraryW, GetProcAddress): declared for its type. One name, as LookupAccountNameW
/// takes it, the statuses and lists as LsaLookupSids has them; the SID lies in the second list.
NTSTATUS LsaLookupNames2(LSA_HANDLE policy, ULONG flags, ULONG count, PLSA_UNICODE_STRING names,
                         PLSA_REFERENCED_DOMAIN_LIST* domains, PLSA_TRANSLATED_SID2* sids);
/// The Win32 number of a status, ERROR_MR_MID_NOT_FOUND if it has none. Can't fail.
VLPLATFORM_API ULONG LsaNtStatusToWinError(NTSTATUS status);
VLPLATFORM_API NTSTATUS LsaFreeMemory(PVOID block);
VLPLATFORM_API NTSTATUS LsaClose(LSA_HANDLE policy);
}

#endif
