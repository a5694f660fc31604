/// How the user works with the machine.
#ifndef TOAST_UIMODE_H
#define TOAST_UIMODE_H

#include <vlhostkit/toast.h>

namespace toast {

/// The tablet mode that the user has chosen; where the system has no such choice, what the machine is at the moment.
HOSTKIT_UI_MODE uiMode();

}  // namespace toast

#endif
