/// The registry: one call for one value, list or deletion. Each call opens the key by its path below a handle that the
/// caller holds, does its work and closes the key: nothing is cached, and no handle outlives a call.
///
/// Arguments that mean the same everywhere:
///
///   hKey          a predefined root or an open key of the caller's, with the rights that the call needs. Not tested.
///   pszKey        the key's path below hKey. NULL gives -3, but for vlRegDeleteSubKey.
///   pszValueName  the value's name. NULL is the key's unnamed value, but for vlRegDeleteValue.
///   dwSection     the view of the registry: 0 (the process's own), 0x100 (KEY_WOW64_64KEY) or 0x200
///                 (KEY_WOW64_32KEY). Anything else, both flags together included, gives -3 before any other argument
///                 is looked at. Functions without it take the process's own view.
///
/// Results, of all functions:
///
///    0  done
///   -1  a call of the platform failed. Which one, and mostly its error number too, only the log tells: the thread's
///       last-error value means nothing here.
///   -2  the buffer is too small
///   -3  invalid argument: the section, or a null pointer where one is required. The registry was not touched.
///   -4  the value has another type than the one to read
///
/// All functions are free of state and may run on any number of threads at once; nothing is locked between two calls.
/// None throws, none allocates memory, all buffers are the caller's.
///
/// Forms that end in A take narrow text in the process's ANSI code page, and count narrow bytes.
///
/// Every call leaves its way in the log under the tag VLHOSTKIT: entry (but for vlRegDeleteSubKey), exit, mostly
/// the failure that ended it, and EVERY VALUE THAT IS READ, IN CLEAR, whatever it is. Keep secrets out of values that
/// are read by these functions, or the log's level below trace. Data that is written is not logged.
#ifndef VLHOSTKIT_REGISTRY_H
#define VLHOSTKIT_REGISTRY_H

#include <vlhostkit/types.h>

extern "C" {

/// Reads a REG_DWORD into `*pdwValue`. Ex and ExW are one function, the plain form is that with section 0, and ExA
/// takes narrow names.
///
/// Returns 0, or
///   -1  the key or the value can't be opened or read, or the value is longer than 4 bytes, whatever its type: take
///       `*pdwValue` as unknown;
///   -3  bad section, `pszKey` or `pdwValue` NULL: `*pdwValue` stays as it was;
///   -4  the value is no REG_DWORD: if it has at most 4 bytes they have been stored in `*pdwValue`.
/// A REG_DWORD that was stored with less than 4 bytes sets only so many of `*pdwValue`: initialise it.
VLHOSTKIT_API int vlRegReadDWORDValue(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, DWORD* pdwValue);
VLHOSTKIT_API int vlRegReadDWORDValueEx(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, DWORD* pdwValue,
                                        DWORD dwSection);
VLHOSTKIT_API int vlRegReadDWORDValueExW(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, DWORD* pdwValue,
                                         DWORD dwSection);
VLHOSTKIT_API int vlRegReadDWORDValueExA(HKEY hKey, LPCSTR pszKey, LPCSTR pszValueName, DWORD* pdwValue,
                                         DWORD dwSection);

/// Reads a REG_SZ as it is stored. REG_EXPAND_SZ is another type here, and nothing is ever expanded.
///
/// `*pcbData` counts BYTES, also of wide text and with the terminator if one is stored: on input the capacity of
/// `pData`, on output the size of the value. With `pData` NULL the size alone is learned, and the type is checked.
///
/// Returns 0, or
///   -1  the key or the value can't be opened or read;
///   -2  `pData` is too small: `*pcbData` stays as it was, so ask for the size with `pData` NULL;
///   -3  bad section, `pszKey` or `pcbData` NULL: nothing is touched;
///   -4  another type: `*pcbData` is set, and `pData` filled.
/// On -1 and -2 `*pcbData` stays as it was, and what `pData` holds is of no use.
///
/// TEXT COMES BACK AS IT IS STORED, and anybody may have stored it: it need not have a terminator, and its size need
/// not be a whole number of characters. The value may also have changed between the two calls. Bound what you read by
/// the size that the call with the buffer has told, and provide for the terminator:
///
///     DWORD bytes = 0;
///     if (vlRegReadStringValue(HKEY_LOCAL_MACHINE, path, name, nullptr, &bytes) == 0) {
///       std::wstring text(bytes / sizeof(wchar_t) + 1, L'\0');
///       bytes = static_cast<DWORD>(text.size() * sizeof(wchar_t));
///       if (vlRegReadStringValue(HKEY_LOCAL_MACHINE, path, name, reinterpret_cast<BYTE*>(text.data()), &bytes) == 0) {
///         text.resize(bytes / sizeof(wchar_t));   // without half a character at the end
///         text.resize(std::wcslen(text.c_str()));  // up to the first terminator, stored or not
///       }
///     }
VLHOSTKIT_API int vlRegReadStringValue(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, BYTE* pData, DWORD* pcbData);
VLHOSTKIT_API int vlRegReadStringValueEx(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, BYTE* pData, DWORD* pcbData,
                                         DWORD dwSection);
VLHOSTKIT_API int vlRegReadStringValueExW(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, BYTE* pData, DWORD* pcbData,
                                          DWORD dwSection);
VLHOSTKIT_API int vlRegReadStringValueExA(HKEY hKey, LPCSTR pszKey, LPCSTR pszValueName, BYTE* pData, DWORD* pcbData,
                                          DWORD dwSection);

/// Reads a REG_MULTI_SZ as it is stored: strings one behind the other, each with its terminator, and one more NUL
/// behind the last. Sizes and results as in vlRegReadStringValue, and the same warning: the closing NUL may be missing,
/// or the last string's terminator too, and an empty list may be no bytes at all. The log shows the first string.
VLHOSTKIT_API int vlRegReadMultiStringValue(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, BYTE* pData,
                                            DWORD* pcbData);
VLHOSTKIT_API int vlRegReadMultiStringValueEx(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, BYTE* pData,
                                              DWORD* pcbData, DWORD dwSection);
VLHOSTKIT_API int vlRegReadMultiStringValueExW(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, BYTE* pData,
                                               DWORD* pcbData, DWORD dwSection);
VLHOSTKIT_API int vlRegReadMultiStringValueExA(HKEY hKey, LPCSTR pszKey, LPCSTR pszValueName, BYTE* pData,
                                               DWORD* pcbData, DWORD dwSection);

/// Reads a REG_BINARY. Sizes and results as in vlRegReadStringValue.
VLHOSTKIT_API int vlRegReadBinaryValue(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, BYTE* pData, DWORD* pcbData);
VLHOSTKIT_API int vlRegReadBinaryValueEx(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, BYTE* pData, DWORD* pcbData,
                                         DWORD dwSection);

/// Reads a value of a type that the caller learns first.
///
/// With `pData` NULL it is a probe, of any type: `*pdwType` receives the type and `*pcbData` the size in bytes.
/// With `pData` given, `*pdwType` says how to read, as the functions above do, with their results:
///
///   REG_SZ 1, REG_BINARY 3, REG_MULTI_SZ 7   sizes in `*pcbData`
///   REG_DWORD 4, REG_QWORD 11                `pData` must hold 4 or 8 bytes; `*pcbData` is neither read nor set
///   any other, REG_EXPAND_SZ 2 included      -4, and the registry is not touched
///
/// Returns 0, or as above; -3 also for `pdwType` or `pcbData` NULL, in both cases, with nothing touched. A probe that
/// fails leaves `*pcbData` as it was; `*pdwType` is of no use.
///
///     DWORD type = 0;
///     DWORD bytes = 0;
///     if (vlRegReadValue(HKEY_LOCAL_MACHINE, path, name, &type, nullptr, &bytes) == 0) {
///       std::vector<BYTE> data(std::max<DWORD>(bytes, 8));  // room for the types of fixed size, whatever was stored
///       bytes = static_cast<DWORD>(data.size());
///       int result = vlRegReadValue(HKEY_LOCAL_MACHINE, path, name, &type, data.data(), &bytes);
///     }
VLHOSTKIT_API int vlRegReadValue(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, DWORD* pdwType, BYTE* pData,
                                 DWORD* pcbData);
VLHOSTKIT_API int vlRegReadValueEx(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, DWORD* pdwType, BYTE* pData,
                                   DWORD* pcbData, DWORD dwSection);

/// Store a value of the type in the name, whatever type it had, and make the key with all missing keys on its path.
///
/// `cbData` counts BYTES and is the caller's word: nothing is computed, added or looked at. Text wants its terminator
/// counted, (characters + 1) * sizeof(wchar_t), and a multi-string its closing NUL too; what is left out is not stored.
///
/// `pData` is not tested: NULL goes to the platform, with whatever `cbData` says.
///
/// Return 0, or -1 if the key can't be made or opened, or the value not be stored (a key that was made stays), or -3.
VLHOSTKIT_API int vlRegWriteDWORDValue(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, DWORD dwValue);
VLHOSTKIT_API int vlRegWriteDWORDValueEx(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, DWORD dwValue,
                                         DWORD dwSection);
VLHOSTKIT_API int vlRegWriteStringValue(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, const void* pData,
                                        DWORD cbData);
VLHOSTKIT_API int vlRegWriteStringValueEx(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, const void* pData,
                                          DWORD cbData, DWORD dwSection);
VLHOSTKIT_API int vlRegWriteMultiStringValue(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, const void* pData,
                                             DWORD cbData);
VLHOSTKIT_API int vlRegWriteMultiStringValueEx(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, const void* pData,
                                               DWORD cbData, DWORD dwSection);
VLHOSTKIT_API int vlRegWriteBinaryValue(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, const void* pData,
                                        DWORD cbData);
VLHOSTKIT_API int vlRegWriteBinaryValueEx(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, const void* pData,
                                          DWORD cbData, DWORD dwSection);

/// An element of the list of values.
struct RegValueEntry {
  WCHAR szName[260];  ///< NUL-terminated; empty for the unnamed value
  DWORD dwType;       ///< REG_SZ, REG_DWORD, ...
};

/// Lists the values of a key with their types, in the platform's order: element i of `pEntries` is the value at index
/// i. `dwTypeFilter` is the type to list, or 0xFFFFFFFF for all.
///
/// `*pnValueCount` is on input the number of elements of `pEntries` (0 and less: none), and on success the number of
/// values walked, whatever the filter. A value of another type takes up its element, which stays as the caller left
/// it: who filters clears the array first and skips empty names. With `pEntries` NULL the input is not read, nothing
/// is filtered, and the count is that of all values.
///
/// Returns 0, or
///   -1  the key can't be opened, has no value at all, or its first value can't be read;
///   -3  bad section, `pszKey` or `pnValueCount` NULL.
/// Then `*pnValueCount` and `pEntries` stay as they were. That there are more values than elements is a success like
/// any other: to be sure, offer an element more than were counted, and begin anew if all of them are filled.
///
/// A later value that can't be read, because its name has more than 259 characters or for any other reason, is one more
/// value, with an empty name and the type REG_NONE (0); the filter holds for it too. Where no array bounds the walk,
/// 65536 of them in a row are taken for the end of the key, and not counted.
///
///     int count = 0;
///     if (vlRegListValueNames(HKEY_LOCAL_MACHINE, path, nullptr, &count, 0xFFFFFFFF) == 0) {
///       std::vector<RegValueEntry> entries(count);
///       if (vlRegListValueNames(HKEY_LOCAL_MACHINE, path, entries.data(), &count, REG_SZ) == 0) {
///         entries.resize(count);  // a value may have gone meanwhile
///       }
///     }
VLHOSTKIT_API int vlRegListValueNames(HKEY hKey, LPCWSTR pszKey, RegValueEntry* pEntries, int* pnValueCount,
                                      DWORD dwTypeFilter);
VLHOSTKIT_API int vlRegListValueNamesEx(HKEY hKey, LPCWSTR pszKey, RegValueEntry* pEntries, int* pnValueCount,
                                        DWORD dwTypeFilter, DWORD dwSection);

/// Lists the names of the subkeys of a key. `pNames` is one block of `*pnSubKeyCount` slots of 255 characters each, no
/// array of pointers: the name at index i begins at `pNames + 255 * i` and is NUL-terminated. All else as in
/// vlRegListValueNames; a later subkey that can't be read, because its name has more than 254 characters or for any
/// other reason, has an empty name.
VLHOSTKIT_API int vlRegListKeys(HKEY hKey, LPCWSTR pszKey, WCHAR* pNames, int* pnSubKeyCount);
VLHOSTKIT_API int vlRegListKeysEx(HKEY hKey, LPCWSTR pszKey, WCHAR* pNames, int* pnSubKeyCount, DWORD dwSection);

/// Deletes a value. Returns 0, or -1 if the key can't be opened or the value not be deleted, or is missing, or -3, also
/// for a null `pszValueName`: the unnamed value is named by "".
VLHOSTKIT_API int vlRegDeleteValue(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, DWORD dwSection);

/// Deletes a key, with all that lies below it if `bDeleteSubKeys` is set. A flag counts as set only when it is 1.
///
/// Here a `dwSection` of 0 means the 32-BIT VIEW for the calls that take a view, unlike in all other functions. Only
/// the platform's RegDeleteKeyEx takes one, if it is found under that name; where the deletion runs on the fall-backs,
/// RegDeleteKey and vlRegDeleteSubKey, the view is that of the process, whatever `dwSection` says. So is that of the
/// platform's RegDeleteTree, where that is found too: it runs first, its failure doesn't count, and the two may reach
/// different keys if the views differ.
///
/// Returns 0, or -1 if the key can't be deleted or is missing or the platform's library not be loaded, or -3. A key
/// with subkeys is not deleted without the flag. What was deleted before a failure stays deleted.
VLHOSTKIT_API int vlRegDeleteKey(HKEY hKey, LPCWSTR pszKey, bool bDeleteSubKeys, DWORD dwSection);

/// Deletes what lies below a key, depth first, and the key itself if `bDeleteKey` is set. Mind the order of the last
/// two arguments. `dwSection` is tested and has no effect: the view is that of the process. `pszKey` must not be NULL;
/// an empty one names `hKey` itself, below which this walk reaches nothing.
///
/// Returns 0, or -1 if the key can't be opened or, with `bDeleteKey`, not be deleted, or -3 for a bad section. The walk
/// ends at the first subkey that can't be deleted, also one whose path from `hKey` exceeds 779 characters; without
/// `bDeleteKey` that is NOT reported, and what was deleted before stays deleted. A level takes 2.5 KB of the stack.
VLHOSTKIT_API int vlRegDeleteSubKey(HKEY hKey, LPCWSTR pszKey, DWORD dwSection, bool bDeleteKey);

}  // extern "C"

#endif
