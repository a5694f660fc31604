/// The platform's types and result numbers as callers know them: <windows.h> on Windows, our stand-in elsewhere.
#ifndef VLHOSTKIT_TYPES_H
#define VLHOSTKIT_TYPES_H

#ifdef _WIN32
#include <windows.h>

#include <oleauto.h>
#include <sddl.h>
#else
#include <vlplatform/windows.h>
#endif

#include <vlhostkit/export.h>

#endif
