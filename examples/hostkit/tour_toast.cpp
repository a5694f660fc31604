#include <vlhostkit/toast.h>

#include <string>

#include "modes.h"
#include "tour.h"

// Nothing is shown: the tour interrupts nobody.
void tourToast(TourPage& page) {
  using namespace VL::Framework;
  page.title("Toasts: what the machine offers");
  const HOSTKIT_UI_MODE mode = vlGetUIMode();
  page.fact("The user works in the mode", modeInWords(mode) + " (" + std::to_string(static_cast<int>(mode)) + ")");
  page.fact("A version with the Windows Runtime", vlIsWinRTSupported() ? "yes" : "no");

  page.title("Toasts: one that is made and never shown");
  ITXToastManager* const manager =
      vlCreateToastManager(L"Password", L"A text that nobody reads, and that is wiped", false);
  page.fact("The sibling", manager != nullptr ? "made a toast object" : "is missing");
  if (manager != nullptr) {
    page.fact("A hide request", manager->HideToast() ? "was posted" : "is refused: nothing is displayed");
    page.fact("A join", manager->JoinToastThread() ? "waited for the worker" : "is refused: there is no worker");
  }
  vlDeleteToastManager(manager);
}
