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
}

#endif
