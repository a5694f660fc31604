/// What all functions of the registry family have in common: their records under the function's own name, and the test
/// of the section.
#ifndef VL_REGISTRY_CALL_H
#define VL_REGISTRY_CALL_H

#include "frame/callframe.h"
#include "frame/registrycalls.h"

namespace vl::registry {

inline constexpr const wchar_t* kTag = L"VLHOSTKIT";

/// The platform's own number reaches the log only.
enum Result : int {
  kSuccess = 0,
  kCallFailed = -1,
  kBufferTooSmall = -2,
  kInvalidArgument = -3,
  kWrongType = -4,
};

template <Text Function>
inline constexpr const wchar_t* kExitText = kText<Function + Text(L" : ret=(%d)")>;

/// Entry and exit of a function of the family.
template <Text Function>
class Call : private CallFrame<ExitWith<int>> {
 public:
  explicit Call(const int& result) : CallFrame(kTag, kText<Function>, ExitWith(kExitText<Function>, result)) {}
};

/// Traces `Function` and what follows the name in the record.
template <Text Function, Text Rest, class... Arguments>
void trace(Arguments... arguments) {
  txlogLog(kTag, TXLOG_TRACE, kText<Function + Rest>, arguments...);
}

/// Whether `section` is one of the three; if not, that is logged.
template <Text Function>
bool sectionPasses(DWORD section) {
  if (section == 0 || section == KEY_WOW64_64KEY || section == KEY_WOW64_32KEY) {
    return true;
  }
  txlogLog(kTag, TXLOG_ERROR, kText<Function + Text(L" : Desired registry section incorrect (0x%x)")>, section);
  return false;
}

}  // namespace vl::registry

#endif
