/// Modules and their entry points, found at run time.
#ifndef VLPLATFORM_MODULES_H
#define VLPLATFORM_MODULES_H

#include <vlplatform/basetypes.h>

extern "C" {
/// Finds `name` among the modules of the machine (see vlplatform/machine/modules.h), then a sibling library: for
/// "some.name.dll" the file "libsome.name.so" beside the program, then on the loader's path. Case-insensitive for the
/// machine's modules. Each success is balanced by FreeLibrary.
VLPLATFORM_API HMODULE LoadLibraryW(LPCWSTR name);
VLPLATFORM_API FARPROC GetProcAddress(HMODULE module, LPCSTR name);
VLPLATFORM_API BOOL FreeLibrary(HMODULE module);
/// Null stands for the program. The modules of the machine's table count as loaded, siblings if they are; else null
/// with ERROR_MOD_NOT_FOUND. No reference is taken: the handle names a module's resources, GetProcAddress
/// wants one of LoadLibraryW but for kernel32.dll and ntdll.dll, which every process has, and FreeLibrary wants one.
VLPLATFORM_API HMODULE GetModuleHandleW(LPCWSTR name);
}

#endif
