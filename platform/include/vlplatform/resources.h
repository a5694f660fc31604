/// String resources, and the names of dialogs.
#ifndef VLPLATFORM_RESOURCES_H
#define VLPLATFORM_RESOURCES_H

#include <vlplatform/basetypes.h>

using HRSRC = struct HRSRC__*;

/// A resource's number in place of its name.
#define MAKEINTRESOURCEW(id) (reinterpret_cast<LPWSTR>(static_cast<UINT_PTR>(static_cast<WORD>(id))))
#define IS_INTRESOURCE(name) ((reinterpret_cast<UINT_PTR>(name) >> 16) == 0)
#define RT_DIALOG MAKEINTRESOURCEW(5)

extern "C" {
/// Finds dialogs only: ERROR_RESOURCE_TYPE_NOT_FOUND for other types and for a module without dialogs, else
/// ERROR_RESOURCE_NAME_NOT_FOUND. "#12" is the number 12. The handle holds until the dialog is replaced or reset.
VLPLATFORM_API HRSRC FindResourceW(HINSTANCE module, LPCWSTR name, LPCWSTR type);

/// Copies the string resource into `buffer` of `chars` characters, cut if need be, and returns its length. With
/// `chars` 0, `buffer` is taken for a pointer to a pointer, which receives the resource's own characters (without
/// terminator, read only). A null module is the program. 0 with the buffer untouched if the module has no such string
/// (ERROR_RESOURCE_NAME_NOT_FOUND) or the buffer is null.
VLPLATFORM_API int LoadStringW(HINSTANCE module, UINT id, LPWSTR buffer, int chars);
}

#endif
