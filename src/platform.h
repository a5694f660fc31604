/// The platform calls of the library: the real ones on Windows, the stand-in's elsewhere. The only place where the
/// library's own code tells the targets apart.
#ifndef VL_PLATFORM_H
#define VL_PLATFORM_H

#include <vlhostkit/types.h>

#ifdef _WIN32
#define SECURITY_WIN32  // which <secext.h> asks for
#include <ntsecapi.h>
#include <secext.h>
#include <sensapi.h>
#include <wtsapi32.h>

#include <io.h>
#include <stdlib.h>
#include <string.h>
#include <wchar.h>

/// The runtime that mingw links against does not export its report of an invalid argument, only the handler that it
/// calls. Without a handler the report returns.
inline void _invalid_parameter(const wchar_t* expression, const wchar_t* function, const wchar_t* file, unsigned line,
                               uintptr_t reserved) {
  if (const auto handler = _get_invalid_parameter_handler()) {
    handler(expression, function, file, line, reserved);
  }
}
#endif

#endif
