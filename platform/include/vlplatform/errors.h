/// The platform's error numbers and the last-error value of each thread.
#ifndef VLPLATFORM_ERRORS_H
#define VLPLATFORM_ERRORS_H

#include <vlplatform/basetypes.h>

#define ERROR_SUCCESS 0u
#define NO_ERROR 0u
#define ERROR_INVALID_FUNCTION 1u
#define ERROR_FILE_NOT_FOUND 2u
#define ERROR_ACCESS_DENIED 5u
#define ERROR_INVALID_HANDLE 6u
#define ERROR_NOT_ENOUGH_MEMORY 8u
#define ERROR_OUTOFMEMORY 14u
#define ERROR_INVALID_DRIVE 15u
#define ERROR_GEN_FAILURE 31u
#define ERROR_INVALID_PARAMETER 87u
#define ERROR_INSUFFICIENT_BUFFER 122u
#define ERROR_MOD_NOT_FOUND 126u
#define ERROR_PROC_NOT_FOUND 127u
#define ERROR_MORE_DATA 234u
#define ERROR_CANNOT_COPY 266u
#define ERROR_INVALID_FLAGS 1004u
#define ERROR_NO_UNICODE_TRANSLATION 1113u

extern "C" {
VLPLATFORM_API DWORD GetLastError();
VLPLATFORM_API void SetLastError(DWORD code);
}

#endif
