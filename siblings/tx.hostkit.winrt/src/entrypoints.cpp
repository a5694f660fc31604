// What vlhostkit looks for by name.
#include <new>
#include <utility>

#include "notification.h"
#include "uimode.h"

using VL::Framework::ITXToastNotification;

extern "C" {

/// Title, body, and whether the toast stays until it is clicked or hidden. Null out of memory.
VLHOSTKIT_SYMBOL_EXPORT ITXToastNotification* CreateToastNotification(secstring title, secstring body, bool stays) {
  return new (std::nothrow) toast::Notification(std::move(title), std::move(body), stays);
}

VLHOSTKIT_SYMBOL_EXPORT HOSTKIT_UI_MODE GetUIMode() {
  return toast::uiMode();
}

}  // extern "C"
