/// The library that draws toasts and knows the user-interface mode.
#ifndef VL_TOAST_SIBLING_H
#define VL_TOAST_SIBLING_H

#include <vlhostkit/toast.h>

namespace vl {

inline constexpr const wchar_t* kToastSibling = L"tx.hostkit.winrt.dll";

/// Its entry point "CreateToastNotification". The texts are the callee's own; null means no toast.
using CreateToastNotificationFunction = VL::Framework::ITXToastNotification* (*)(VL::Framework::secstring,
                                                                                 VL::Framework::secstring, bool);

}  // namespace vl

#endif
