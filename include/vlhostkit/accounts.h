/// Accounts and domains: user ids of any shape, user principal names, the current user, SIDs by name, and the name that
/// an account had before it was renamed.
///
/// Common to all functions, unless told otherwise:
///   - A and W forms do the same in narrow text (the ANSI code page) and wide text; neither converts into the other.
///   - Functions with an `int` result give 0, a number named below, or the platform's number of the call that failed.
///     Functions with a `BOOL` result give nonzero, or 0 with the reason in the thread's last-error value; after a
///     success that value means nothing.
///   - A size (`DWORD*`) counts characters. A pointer that is called required and not tested must be valid.
///   - User names are never logged; domains, suffixes, SIDs and registry paths are. The one exception is noted at
///     vlNetGetInitialUserNameBeforeRenameW.
///   - The functions keep no state and may run on any number of threads at once. The registry is what they share:
///     of two threads that store an answer under one name the last one stands.
///   - Out of memory in a standard string, std::bad_alloc passes through; nothing is caught.
#ifndef VLHOSTKIT_ACCOUNTS_H
#define VLHOSTKIT_ACCOUNTS_H

#include <string>

#include <vlhostkit/types.h>

/// Turns a user id into a user name and a NETBIOS domain name. The shape of the text decides how:
///
///   with "@"    a user principal name: vlNetGetUserNameDomainFromUPNW or A translates it, which may reach the network;
///               the outcome is then looked at once more:
///   with "\"    a SAM-compatible name: what stands before the first "\" is the domain, all behind it the user name;
///               `domain` plays no part
///   otherwise   `userId` itself is the user name (a principal name too, if its translation had no "\"), and the domain
///               is `domain` up to its first blank, or up to its first tab if it has no blank
///
/// Returns 0, or 87 for an empty `userId`, or the last-error value of a translation that failed (2, for instance, if no
/// cache knows the suffix). 122 also stands for a translation to more than 254 characters, which are too many for any
/// caller. On failure both results stay as they were. The results may be the same objects as the arguments.
VLHOSTKIT_API int vlNetConvertUserIdToNETBIOS(const std::wstring& userId, const std::wstring& domain,
                                              std::wstring& userName, std::wstring& domainName);
VLHOSTKIT_API int vlNetConvertUserIdToNETBIOS(const std::string& userId, const std::string& domain,
                                              std::string& userName, std::string& domainName);

/// The user who is logged on to the session that the process runs in, and the domain; both empty if nobody is. Another
/// account than the process's own, perhaps: see vlNetGetCurrentProcessUserAndDomainW.
///
/// Returns 0 or the platform's number. Each result is set when its query succeeds: if only the second one fails,
/// `userName` has its new text and `domainName` its old one.
VLHOSTKIT_API int vlNetGetCurrentUserAndDomain(std::wstring& userName, std::wstring& domainName);
VLHOSTKIT_API int vlNetGetCurrentUserAndDomain(std::string& userName, std::string& domainName);

extern "C" {

/// vlNetConvertUserIdToNETBIOS with buffers.
///
/// `userId` and both sizes are required: 87 without them. A null `domain` is an empty text. A null `userName` or
/// `domainName` asks for that size only, the other one is delivered. The sizes are capacities with the terminator on
/// entry, and hold the length plus 1 afterwards.
///
/// Returns the numbers of the overloads, and 122 if a buffer is too small: both sizes then hold what is needed, and if
/// it was the domain's, the user name is delivered already. After any other failure buffers and sizes are untouched.
/// So a 122 with unchanged sizes is that of a translation too long.
///
///     DWORD userChars = 0, domainChars = 0;
///     if (vlNetConvertUserIdToNETBIOSW(id, L"", NULL, &userChars, NULL, &domainChars) == ERROR_SUCCESS) {
///       std::vector<wchar_t> user(userChars), domain(domainChars);
///       vlNetConvertUserIdToNETBIOSW(id, L"", user.data(), &userChars, domain.data(), &domainChars);
///     }
///
/// The question for the sizes costs a full translation of a principal name, as the call that follows does.
VLHOSTKIT_API int vlNetConvertUserIdToNETBIOSW(LPCWSTR userId, LPCWSTR domain, LPWSTR userName, DWORD* userNameSize,
                                               LPWSTR domainName, DWORD* domainNameSize);
VLHOSTKIT_API int vlNetConvertUserIdToNETBIOSA(LPCSTR userId, LPCSTR domain, LPSTR userName, DWORD* userNameSize,
                                               LPSTR domainName, DWORD* domainNameSize);

/// The SAM-compatible name, DOMAIN\user, of a user principal name, user@suffix. Three routes, in this order:
///
///   1. the platform's translation, if the network is alive. Its answer is stored in this library's own cache, under
///      "HKEY_LOCAL_MACHINE\SOFTWARE\Velorin\System\DomainCache" (value: the suffix, data: the domain) if that key is
///      there and writable; nothing here makes it. A text without "@" is not stored.
///   2. the operating system's cache, "...\Windows NT\CurrentVersion\Winlogon\DomainCache": the first value whose data
///      equals the suffix, case included, is named like the domain; an entry with more than 254 characters in its name
///      or 126 (A form: 254) in its data ends the search
///   3. the own cache
///
/// `upn` is required, not tested, and needs an "@". `samName` may be null to ask for the size. `size`: on entry the
/// capacity in characters with the terminator, and the buffer must have room for one character more; afterwards the
/// capacity needed, with the terminator.
///
/// Returns nonzero, or 0 with
///   87   `size` is null; or there is no "@" and the translation gave no answer (`*size` as it was)
///   2    there is no Secur32.dll or no translation in it, and no cache is asked then; or the own cache, which is asked
///        last, has no such key or value: `*size` is as it was, or the length of a name that the system's cache had
///        no room for
///   122  the composed name does not fit: `*size` holds what is needed, and `samName` may hold the domain alone. Also
///        for a name from a cache of more than 254 characters, whatever the capacity is: `*size` is above 255 then
///   otherwise the registry's number of the own cache, 234 for a domain that is too long for the buffer.
/// With a null `samName` the translation's size counts only where the platform calls the question a buffer too small.
/// Where that is a success, the caches are asked, and a suffix that the system's cache doesn't have gives 122 with
/// `*size` as it was: the own cache tells no sizes.
///
/// CAUTION: when the translation finds the buffer too small, the result is nonzero, the last-error value 0, `samName`
/// unfilled and `*size` the capacity needed. Compare the size with the capacity:
///
///     wchar_t name[256];
///     DWORD size = 255;                    // one less than there is
///     if (vlNetGetUserNameDomainFromUPNW(L"alice@corp.example", name, &size) && size <= 255) { ... }
VLHOSTKIT_API BOOL vlNetGetUserNameDomainFromUPNW(LPCWSTR upn, LPWSTR samName, DWORD* size);
VLHOSTKIT_API BOOL vlNetGetUserNameDomainFromUPNA(LPCSTR upn, LPSTR samName, DWORD* size);

/// The NETBIOS domain name that the operating system's cache has for a suffix, the text behind the "@" (route 2 above).
/// Nothing is logged.
///
/// `upnSuffix` and `size` are required and not tested. `domainName` may be null to ask for the size. `size` counts
/// characters WITHOUT the terminator, on entry and afterwards; the buffer has room for one more.
///
/// Returns nonzero, or 0 with
///   122  the name is longer than `*size`, which then holds its length
///   259  no value's data equals the suffix
///   234  an entry over the limits of route 2 was met first
///   otherwise the registry's number, 2 for a missing key.
/// `*size` changes only with 122.
///
///     DWORD length = 0;
///     if (vlNetGetNETBIOSDomainNameFromUPNW(L"corp.example", NULL, &length)) {
///       std::vector<wchar_t> name(length + 1);
///       vlNetGetNETBIOSDomainNameFromUPNW(L"corp.example", name.data(), &length);
///     }
VLHOSTKIT_API BOOL vlNetGetNETBIOSDomainNameFromUPNW(LPCWSTR upnSuffix, LPWSTR domainName, DWORD* size);
VLHOSTKIT_API BOOL vlNetGetNETBIOSDomainNameFromUPNA(LPCSTR upnSuffix, LPSTR domainName, DWORD* size);

/// vlNetGetCurrentUserAndDomain with buffers. The buffer protocol is that of vlNetConvertUserIdToNETBIOSW: both sizes
/// are required (87), null buffers ask for the sizes, 122 stores both.
///
///     DWORD userChars = 0, domainChars = 0;
///     if (vlNetGetCurrentUserAndDomainW(NULL, &userChars, NULL, &domainChars) == ERROR_SUCCESS) {
///       std::vector<wchar_t> user(userChars), domain(domainChars);
///       vlNetGetCurrentUserAndDomainW(user.data(), &userChars, domain.data(), &domainChars);
///     }
VLHOSTKIT_API int vlNetGetCurrentUserAndDomainW(LPWSTR userName, DWORD* userNameSize, LPWSTR domainName,
                                                DWORD* domainNameSize);
VLHOSTKIT_API int vlNetGetCurrentUserAndDomainA(LPSTR userName, DWORD* userNameSize, LPSTR domainName,
                                                DWORD* domainNameSize);

/// The account as which the process runs, from its token.
///
/// Both sizes are required: 87 without them. On entry they are capacities with the terminator, afterwards the lengths
/// plus 1. There is no question for the sizes as such: if a buffer is null or too small, the result is 122, both sizes
/// hold what is needed, and neither buffer is written. Other results are 8 (out of memory) and the platform's numbers,
/// with buffers and sizes untouched.
VLHOSTKIT_API int vlNetGetCurrentProcessUserAndDomainW(LPWSTR userName, DWORD* userNameSize, LPWSTR domainName,
                                                       DWORD* domainNameSize);

/// The SID of an account, from the local security authority. Each of its answers is stored under
/// "HKEY_LOCAL_MACHINE\SOFTWARE\Velorin\System\UserCache" (value: "user.domain", or the user name alone; data: the
/// SID's text), if that key is there and writable; nothing here makes it. Whenever the authority gives no answer, also
/// for an account that does not exist, the stored one counts; it has no age.
///
/// `userName` and `domainName` are required and not tested; `domainName` may be empty, and plays no part in the
/// question if `userName` holds a "\". `sid` is required; the block that it receives is the caller's, to be given back
/// with HeapFree(GetProcessHeap(), 0, sid). On failure it is not written.
///
/// Returns nonzero, or 0 with
///   (as it was)  `userName` is empty
///   8            out of memory
///   otherwise the number of the policy that could not be opened (the stored answer is not asked for then), or that of
///   the registry, 2 for an account that nobody knows, or that of a stored text that is no SID.
/// If the computer's own name can't be had, the authority is asked without it. Names of more than 32766 characters are
/// not asked of the authority.
VLHOSTKIT_API BOOL vlNetLookupUserNameW(LPCWSTR userName, LPCWSTR domainName, PSID* sid);

/// The user name from before a rename: the last part of the path of the account's profile folder, which keeps the name
/// that it was made under. The account is looked up as in vlNetLookupUserNameW.
///
/// `currentUserName`, `domainName` (may be empty) and `size` are required and not tested. `size`: on entry the capacity
/// with the terminator, afterwards the length plus 1, also if the buffer is too small or null.
///
/// Returns nonzero, or 0 with
///   87           `currentUserName` is empty
///   234          the buffer is null or too small (`*size` is what is needed); or the path has more than 126 characters
///                (`*size` as it was)
///   2            the account has no profile on this machine
///   (as it was)  the path has no "\". The record of this failure shows the path, which may hold a user name.
///   otherwise the numbers of the lookup and of the registry.
/// But for the buffer too small, failures leave `*size` as it was.
///
///     DWORD chars = 0;
///     vlNetGetInitialUserNameBeforeRenameW(L"alice", L"CORP", NULL, &chars);
///     if (GetLastError() == ERROR_MORE_DATA && chars > 0) {
///       std::vector<wchar_t> name(chars);
///       vlNetGetInitialUserNameBeforeRenameW(L"alice", L"CORP", name.data(), &chars);
///     }
VLHOSTKIT_API BOOL vlNetGetInitialUserNameBeforeRenameW(LPCWSTR currentUserName, LPCWSTR domainName,
                                                        LPWSTR initialUserName, DWORD* size);

}  // extern "C"

#endif
