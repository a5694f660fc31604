#include <vlhostkit/toast.h>

#include "frame/callframe.h"
#include "frame/handle.h"
#include "toast/sibling.h"

namespace VL::Framework {

HOSTKIT_UI_MODE vlGetUIMode() {
  HOSTKIT_UI_MODE result = HOSTKIT_UI_MODE_UNKNOWN;
  const vl::CallFrame frame(vl::kTag, L"vlGetUIMode", vl::ExitPlain(L"vlGetUIMode"));
  const vl::Module sibling(LoadLibraryW(vl::kToastSibling));
  if (!sibling) {
    txlogLog(vl::kTag, TXLOG_ERROR, L"vlGetUIMode: LoadLibrary(tx.hostkit.winrt.dll) failed with error code 0x%x",
             GetLastError());
    return result;
  }
  txlogLog(vl::kTag, TXLOG_NOTE, L"vlGetUIMode: LoadLibrary(tx.hostkit.winrt.dll) succeeded");
  const auto getUIMode = vl::entryPoint<HOSTKIT_UI_MODE (*)()>(sibling, "GetUIMode");
  if (getUIMode == nullptr) {
    txlogLog(vl::kTag, TXLOG_ERROR, L"vlGetUIMode: GetProcAddress(GetUIMode) failed with error code 0x%x",
             GetLastError());
    return result;
  }
  result = getUIMode();
  return result;
}

bool vlIsWinRTSupported() {
  const wchar_t* shown = L"false";
  const vl::CallFrame frame(vl::kTag, L"vlIsWinRTSupported", vl::ExitWith(L"vlIsWinRTSupported: returns %s.", shown));
  OSVERSIONINFOEXW version{};
  version.dwOSVersionInfoSize = sizeof version;
  // Of a failure the zeros remain, and they are no version that has it.
  GetVersionExW(reinterpret_cast<OSVERSIONINFOW*>(&version));
  const bool supported = version.dwMajorVersion >= 7 || (version.dwMajorVersion == 6 && version.dwMinorVersion >= 2);
  if (supported) {
    shown = L"true";  // NOLINT(clang-analyzer-deadcode.DeadStores): the frame shows it
  }
  return supported;
}

}  // namespace VL::Framework
