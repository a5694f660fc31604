/// String resources.
#ifndef VLPLATFORM_RESOURCES_H
#define VLPLATFORM_RESOURCES_H

#include <vlplatform/basetypes.h>

extern "C" {
/// Copies the string resource into `buffer` of `chars` characters, cut if need be, and returns its length. With
/// `chars` 0, `buffer` is taken for a pointer to a pointer, which receives the resource's own characters (without
/// terminator, read only). A null module is the program. 0 with the buffer untouched if the module has no such string
/// (ERROR_RESOURCE_NAME_NOT_FOUND) or the buffer is null.
VLPLATFORM_API int LoadStringW(HINSTANCE module, UINT id, LPWSTR buffer, int chars);
/// Null stands for the program. The modules of the machine's table count as loaded, siblings if they are; else null
/// with ERROR_MOD_NOT_FOUND. No reference is taken: the handle names a module's resources, GetProcAddress
/// wants one of LoadLibraryW but for kernel32.dll and ntdll.dll, which every process has, and FreeLibrary wants one.
VLPLATFORM_API HMODULE GetModuleHandleW(LPCWSTR name);
}

#endif
