/// The installer's library, "msi.dll": what a custom action finds there at run time. The sessions are those of
/// vlplatform/machine/installer.h.
#ifndef VLPLATFORM_MSI_H
#define VLPLATFORM_MSI_H

#include <vlplatform/basetypes.h>

using MSIHANDLE = DWORD;

extern "C" {
/// `*chars` is the capacity with terminator, and becomes the length without, also where the text does not fit: then
/// the buffer holds as much as it can, terminated, and the result is ERROR_MORE_DATA. A null buffer asks for the
/// length. A property that is not set is an empty text. ERROR_INVALID_HANDLE for what is no session.
VLPLATFORM_API UINT MsiGetPropertyW(MSIHANDLE install, LPCWSTR name, LPWSTR buffer, LPDWORD chars);
/// A null or empty value takes the property away.
VLPLATFORM_API UINT MsiSetPropertyW(MSIHANDLE install, LPCWSTR name, LPCWSTR value);
}

#endif
