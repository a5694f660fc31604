/// The registry: keys, values, and the two views of HKEY_LOCAL_MACHINE\SOFTWARE. All in memory; what tests do with it
/// and how it is kept in a file stands in vlplatform/machine/registry.h.
///
/// The rules are the platform's:
/// - Names keep their case and are found in any. A key's name has up to 255 characters, a value's up to 16383, a path
///   up to 512 keys. Keys are enumerated by name, values in the order in which they came.
/// - A path that begins with a backslash is ERROR_BAD_PATHNAME; backslashes at its end or twice in a row are tolerated.
///   An empty path is the key itself.
/// - Rights go with the handle that was opened, but what creates or deletes a key is tested against the key. A handle
///   that is not open is ERROR_INVALID_HANDLE, one whose key was deleted ERROR_KEY_DELETED. The roots have all rights,
///   and closing them does nothing.
/// - With KEY_WOW64_32KEY, what lies below HKEY_LOCAL_MACHINE\SOFTWARE is looked up in its key Wow6432Node, unless the
///   path names that key itself. KEY_WOW64_64KEY or no flag is the 64-bit view. The flag stays with the handle, for
///   calls that name none. Both flags at once are ERROR_INVALID_PARAMETER.
/// - Data is stored as given: no terminator is added to text, in neither direction. Text is wide, in this target's
///   characters of 4 bytes; the narrow functions convert it (UTF-8), and their sizes count narrow bytes.
///
/// Not modelled: HKEY_CLASSES_ROOT as a mixture of two keys, and HKEY_CURRENT_USER as a part of HKEY_USERS (each root
/// has keys of its own); the views of Software\Classes; classes of keys, security descriptors (but see
/// Registry::deny), symbolic links, notifications, transactions, remote registries. A name has no character that is
/// no Unicode scalar value, and a key's no line end: ERROR_INVALID_PARAMETER. Keys may be made directly below
/// HKEY_LOCAL_MACHINE and HKEY_USERS.
#ifndef VLPLATFORM_REGISTRY_H
#define VLPLATFORM_REGISTRY_H

#include <vlplatform/basetypes.h>
#include <vlplatform/time.h>

using HKEY = struct HKEY__*;
using PHKEY = HKEY*;
using REGSAM = DWORD;
using LSTATUS = LONG;
struct SECURITY_ATTRIBUTES;

#define VLPLATFORM_ROOT_KEY(number) (reinterpret_cast<HKEY>(static_cast<INT_PTR>(static_cast<LONG>(number))))
#define HKEY_CLASSES_ROOT VLPLATFORM_ROOT_KEY(0x80000000)
#define HKEY_CURRENT_USER VLPLATFORM_ROOT_KEY(0x80000001)
#define HKEY_LOCAL_MACHINE VLPLATFORM_ROOT_KEY(0x80000002)
#define HKEY_USERS VLPLATFORM_ROOT_KEY(0x80000003)
#define HKEY_CURRENT_CONFIG VLPLATFORM_ROOT_KEY(0x80000005)

#define DELETE 0x00010000u
#define MAXIMUM_ALLOWED 0x02000000u
#define GENERIC_READ 0x80000000u
#define GENERIC_WRITE 0x40000000u
#define GENERIC_EXECUTE 0x20000000u
#define GENERIC_ALL 0x10000000u

#define KEY_QUERY_VALUE 0x0001u
#define KEY_SET_VALUE 0x0002u
#define KEY_CREATE_SUB_KEY 0x0004u
#define KEY_ENUMERATE_SUB_KEYS 0x0008u
#define KEY_WOW64_64KEY 0x0100u
#define KEY_WOW64_32KEY 0x0200u
#define KEY_READ 0x20019u
#define KEY_WRITE 0x20006u
#define KEY_EXECUTE 0x20019u
#define KEY_ALL_ACCESS 0xF003Fu

#define REG_NONE 0u
#define REG_SZ 1u
#define REG_EXPAND_SZ 2u
#define REG_BINARY 3u
#define REG_DWORD 4u
#define REG_MULTI_SZ 7u
#define REG_QWORD 11u

#define REG_OPTION_NON_VOLATILE 0u
#define REG_OPTION_VOLATILE 1u
#define REG_CREATED_NEW_KEY 1u
#define REG_OPENED_EXISTING_KEY 2u

extern "C" {
/// On failure `*result` is null. A null path is the key itself. Each handle wants a RegCloseKey.
VLPLATFORM_API LSTATUS RegOpenKeyExW(HKEY key, LPCWSTR path, DWORD options, REGSAM access, PHKEY result);
VLPLATFORM_API LSTATUS RegOpenKeyExA(HKEY key, LPCSTR path, DWORD options, REGSAM access, PHKEY result);
/// RegOpenKeyExW with all rights that are not denied. A null path is the key itself.
VLPLATFORM_API LSTATUS RegOpenKeyW(HKEY key, LPCWSTR path, PHKEY result);
/// Makes the missing keys of the path, all of them volatile with REG_OPTION_VOLATILE.
/// `className` and `security` are not looked at.
VLPLATFORM_API LSTATUS RegCreateKeyExW(HKEY key, LPCWSTR path, DWORD reserved, LPWSTR className, DWORD options,
                                       REGSAM access, const SECURITY_ATTRIBUTES* security, PHKEY result,
                                       LPDWORD disposition);
VLPLATFORM_API LSTATUS RegCloseKey(HKEY key);

/// A null or empty name is the key's unnamed value. With a null buffer the size is told; a buffer that is too small
/// stays as it is, and `*size` becomes what is needed (ERROR_MORE_DATA). A missing value is ERROR_FILE_NOT_FOUND and
/// leaves the type alone, and the size unless the buffer is null, which makes it 0.
VLPLATFORM_API LSTATUS RegQueryValueExW(HKEY key, LPCWSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data,
                                        LPDWORD size);
VLPLATFORM_API LSTATUS RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data,
                                        LPDWORD size);
VLPLATFORM_API LSTATUS RegSetValueExW(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size);
VLPLATFORM_API LSTATUS RegSetValueExA(HKEY key, LPCSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size);
VLPLATFORM_API LSTATUS RegDeleteValueW(HKEY key, LPCWSTR name);

/// ERROR_ACCESS_DENIED for a key that has subkeys.
VLPLATFORM_API LSTATUS RegDeleteKeyW(HKEY key, LPCWSTR path);
/// Of `access` only the view counts.
VLPLATFORM_API LSTATUS RegDeleteKeyExW(HKEY key, LPCWSTR path, REGSAM access, DWORD reserved);
/// Deletes the key with all that lies below it; with a null or empty path the subkeys and values of `key`. What was
/// deleted before a failure stays deleted.
VLPLATFORM_API LSTATUS RegDeleteTreeW(HKEY key, LPCWSTR path);

/// `*nameChars` is the capacity with terminator, and becomes the length without. A name that does not fit gives
/// ERROR_MORE_DATA and leaves name and `*nameChars` alone. Behind the last one: ERROR_NO_MORE_ITEMS.
VLPLATFORM_API LSTATUS RegEnumValueW(HKEY key, DWORD index, LPWSTR name, LPDWORD nameChars, LPDWORD reserved,
                                     LPDWORD type, LPBYTE data, LPDWORD size);
VLPLATFORM_API LSTATUS RegEnumValueA(HKEY key, DWORD index, LPSTR name, LPDWORD nameChars, LPDWORD reserved,
                                     LPDWORD type, LPBYTE data, LPDWORD size);
VLPLATFORM_API LSTATUS RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, LPDWORD nameChars, LPDWORD reserved,
                                     LPWSTR className, LPDWORD classChars, FILETIME* lastWrite);
}

#endif
