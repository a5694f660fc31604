/// The platform calls of the library: the real ones on Windows, the stand-in's elsewhere. The only place where the
/// library's own code tells the targets apart.
#ifndef VL_PLATFORM_H
#define VL_PLATFORM_H

#include <vlhostkit/types.h>

#ifdef _WIN32
#include <wchar.h>
#endif

#endif
