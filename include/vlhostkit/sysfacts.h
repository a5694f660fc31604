/// System facts: SIDs of accounts and tokens, and the machine's drives.
///
/// A and W forms do the same in narrow text (the ANSI code page) and wide text; neither converts into the other. All
/// state is local to the call: any thread may call at any time. Out of memory in a standard string, std::bad_alloc
/// passes through.
#ifndef VLHOSTKIT_SYSFACTS_H
#define VLHOSTKIT_SYSFACTS_H

#include <string>

#include <vlhostkit/types.h>

/// The SID of the account DOMAIN\user. The name is always put together with the backslash, also with an empty `domain`.
///
/// `sid` is set to null first. From its allocation on it holds a block that is the caller's, to be given back with
/// `free` of the same runtime, ALSO AFTER A FAILURE that came later:
///
///     void* sid = NULL;
///     const unsigned long result = vlSysGetUserSID(L"alice", L"CORP", sid);
///     if (result == ERROR_SUCCESS && sid != NULL) { ... }
///     free(sid);
///
/// Returns 0, or 8 (out of memory), or the platform's number, 1332 for an unknown account. Should the platform have
/// nothing to tell about a name and call that a success, the result is 0 and `sid` null.
VLHOSTKIT_API unsigned long vlSysGetUserSID(const std::wstring& user, const std::wstring& domain, void*& sid);
VLHOSTKIT_API unsigned long vlSysGetUserSID(const std::string& user, const std::string& domain, void*& sid);

/// The next fixed drive, as two characters ("C:"), in the order of the platform's list. `drive` is cursor and result:
/// the drive that was given last ("C:" and "C:\" are the same; it need not be a fixed one), or an empty text for the
/// first. A text that is not in the list, also for its case, begins anew.
///
///     std::wstring drive;
///     while (vlSysGetFixedDrive(drive) == ERROR_SUCCESS) { ... }
///
/// Returns 0, or with `drive` as it was
///   15  there is no further fixed drive, or none at all
///   8   out of memory
///   otherwise the platform's number, passed on as it is. A number 0 can't be told from success, except by `drive`.
VLHOSTKIT_API int vlSysGetFixedDrive(std::wstring& drive);
VLHOSTKIT_API int vlSysGetFixedDrive(std::string& drive);

/// The drive that holds the system: the value of the environment variable SystemDrive, unchanged.
///
/// Returns 0, or with `drive` as it was 8 (out of memory) or the platform's number, 203 for an unset variable; for an
/// empty one that is the last-error value as it happens to be.
VLHOSTKIT_API int vlSysGetSystemDrive(std::wstring& drive);
VLHOSTKIT_API int vlSysGetSystemDrive(std::string& drive);

extern "C" {

/// vlSysGetUserSID for callers without standard strings. The pointers are required and not tested; `*sid` need not be
/// set.
VLHOSTKIT_API DWORD vlSysGetUserSIDW(LPCWSTR user, LPCWSTR domain, void** sid);
VLHOSTKIT_API DWORD vlSysGetUserSIDA(LPCSTR user, LPCSTR domain, void** sid);

/// Writes a SID as text: "S-1-", the authority in decimal ("0x" and 12 lower-case digits if it takes more than 32
/// bits), and "-" and a decimal number for each sub-authority. Nothing is logged.
///
/// `size` counts BYTES, in both forms, and must be at least what n sub-authorities can take: (28 + 12 n) *
/// sizeof(character). It is required and not tested.
///
/// Returns nonzero, with `*size` as it was (the length is not told); or 0
///   for an invalid SID, with everything as it was; the last-error value is not set;
///   with 122 for too few bytes: `*size` holds those demanded, and `text`, which may be null then, is not touched.
///
///     DWORD bytes = 0;
///     vlSysConvertSIDW(sid, NULL, &bytes);
///     if (bytes > 0) {
///       std::vector<wchar_t> text(bytes / sizeof(wchar_t));
///       vlSysConvertSIDW(sid, text.data(), &bytes);
///     }
VLHOSTKIT_API BOOL vlSysConvertSIDW(PSID sid, LPWSTR text, DWORD* size);
VLHOSTKIT_API BOOL vlSysConvertSIDA(PSID sid, LPSTR text, DWORD* size);

/// The text of the SID of a token's user. `token` must be open for query. `text` and `size` as in vlSysConvertSIDW,
/// with its failures; 0 also if the token can't be read or there is no memory, with the platform's last-error value
/// and both as they were. Nothing is logged.
VLHOSTKIT_API BOOL vlSysObtainSIDW(HANDLE token, LPWSTR text, DWORD* size);
VLHOSTKIT_API BOOL vlSysObtainSIDA(HANDLE token, LPSTR text, DWORD* size);

/// vlSysGetFixedDrive with a buffer, which holds the cursor on entry and the result afterwards. `chars`: its capacity
/// in characters with the terminator, at least 3; a text without terminator within it ends there. A null `buffer` is a
/// question for the size.
///
/// Returns the numbers of the overload, 87 for a null `chars`, and 122 for a capacity below 3. Except with 87, 3 is
/// stored in `*chars`. On failure `buffer` keeps its text.
///
///     wchar_t drive[3] = L"";
///     DWORD chars = 3;
///     while (vlSysGetFixedDriveW(drive, &chars) == ERROR_SUCCESS) { ... }
VLHOSTKIT_API int vlSysGetFixedDriveW(LPWSTR buffer, DWORD* chars);
VLHOSTKIT_API int vlSysGetFixedDriveA(LPSTR buffer, DWORD* chars);

/// vlSysGetSystemDrive with a buffer, whose text on entry has no effect. Capacity and results as in
/// vlSysGetFixedDriveW; a value that does not fit the capacity gives 122 as well, with `buffer` as it was, though the
/// size that is stored is always 3: a caller who meets that asks vlSysGetSystemDrive.
VLHOSTKIT_API int vlSysGetSystemDriveW(LPWSTR buffer, DWORD* chars);
VLHOSTKIT_API int vlSysGetSystemDriveA(LPSTR buffer, DWORD* chars);

}  // extern "C"

#endif
