/// Narrow and wide text, and case. The stand-in has one code page: CP_ACP and CP_UTF8 both are UTF-8.
#ifndef VLPLATFORM_TEXT_H
#define VLPLATFORM_TEXT_H

#include <vlplatform/basetypes.h>

#define CP_ACP 0u
#define CP_UTF8 65001u
#define MB_ERR_INVALID_CHARS 0x8u
#define WC_ERR_INVALID_CHARS 0x80u

extern "C" {
/// CP_UTF8.
VLPLATFORM_API UINT GetACP();

/// As the platform's functions: a length of -1 includes the terminator, a capacity of 0 asks for the size. Bytes and
/// characters that are no text become U+FFFD, or fail with ERROR_NO_UNICODE_TRANSLATION if the flag asks for it.
VLPLATFORM_API int MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR text, int bytes, LPWSTR buffer, int chars);
VLPLATFORM_API int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR text, int chars, LPSTR buffer, int bytes,
                                       LPCSTR defaultChar, BOOL* usedDefaultChar);

/// The other case of one character, which stands in the pointer's place; what points to a text comes back as it is.
/// One character for one, by Unicode; beyond ASCII nothing becomes ASCII. Can't fail.
VLPLATFORM_API LPWSTR CharUpperW(LPWSTR character);
VLPLATFORM_API LPWSTR CharLowerW(LPWSTR character);
}

#endif
