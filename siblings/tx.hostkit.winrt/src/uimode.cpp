#include "uimode.h"

#include "surface.h"

namespace toast {
namespace {

// Whether the user has chosen the tablet mode; false in `known` if there is no such choice.
bool chosenTabletMode(bool& known) {
  known = false;
  HKEY key = nullptr;
  DWORD chosen = 0;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\ImmersiveShell", 0,
                    KEY_QUERY_VALUE, &key) == static_cast<LSTATUS>(ERROR_SUCCESS)) {
    DWORD type = 0;
    DWORD size = sizeof chosen;
    known = RegQueryValueExW(key, L"TabletMode", nullptr, &type, reinterpret_cast<LPBYTE>(&chosen), &size) ==
                static_cast<LSTATUS>(ERROR_SUCCESS) &&
            type == REG_DWORD && size == sizeof chosen;
    RegCloseKey(key);
  }
  return known && chosen != 0;
}

}  // namespace

HOSTKIT_UI_MODE uiMode() {
  bool known = false;
  const bool chosen = chosenTabletMode(known);
  return (known ? chosen : isSlate()) ? HOSTKIT_UI_MODE_TABLET : HOSTKIT_UI_MODE_DESKTOP;
}

}  // namespace toast
