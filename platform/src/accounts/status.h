/// NTSTATUS and Win32 numbers.
#ifndef VLPLATFORM_SRC_STATUS_H
#define VLPLATFORM_SRC_STATUS_H

#include <vlplatform/errors.h>
#include <vlplatform/lsa.h>

namespace vlplatform {

DWORD win32Of(NTSTATUS status);
/// Of a planned fault: a status stays as it is, a Win32 number becomes the status that stands for it.
NTSTATUS statusOfFault(DWORD code);

}  // namespace vlplatform

#endif
