/// The read that callers reach only through vlRegReadValue and vlRegReadValueEx.
#ifndef VL_REGISTRY_READ_H
#define VL_REGISTRY_READ_H

#include "platform.h"

/// Reads a REG_QWORD, with the results of vlRegReadDWORDValueExW; a value longer than 8 bytes gives -1.
int vlRegReadQWORDValueExW(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, ULONGLONG* pullValue, DWORD dwSection);

#endif
