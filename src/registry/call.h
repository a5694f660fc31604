/// What all functions of the registry family have in common: their records under the function's own name, the test of
/// the section, and the opening of a key.
#ifndef VL_REGISTRY_CALL_H
#define VL_REGISTRY_CALL_H

#include "frame/callframe.h"
#include "frame/handle.h"

namespace vl::registry {

template <Text Function>
inline constexpr const wchar_t* kExitText = kText<Function + Text(L" : ret=(%d)")>;

/// Entry and exit of a function of the family.
template <Text Function>
class Call : private CallFrame<ExitWith<int>> {
 public:
  explicit Call(const int& result) : CallFrame(kRegistryTag, kText<Function>, ExitWith(kExitText<Function>, result)) {}
};

/// Traces `Function` and what follows the name in the record.
template <Text Function, Text Rest, class... Arguments>
void trace(Arguments... arguments) {
  txlogLog(kRegistryTag, TXLOG_TRACE, kText<Function + Rest>, arguments...);
}

/// Whether `section` is one of the three; if not, that is logged.
template <Text Function>
bool sectionPasses(DWORD section) {
  if (section == 0 || section == KEY_WOW64_64KEY || section == KEY_WOW64_32KEY) {
    return true;
  }
  txlogLog(kRegistryTag, TXLOG_ERROR, kText<Function + Text(L" : Desired registry section incorrect (0x%x)")>, section);
  return false;
}

/// Opens with `open`, a function of the platform; `key` owns what was opened and nothing after a failure.
template <class Open, class Char>
DWORD openKey(Open open, HKEY root, const Char* path, REGSAM access, RegistryKey& key) {
  HKEY opened = nullptr;
  const auto code = static_cast<DWORD>(open(root, path, 0, access, &opened));
  if (code == ERROR_SUCCESS) {
    key.reset(opened);
  }
  return code;
}
inline DWORD openKey(HKEY root, LPCWSTR path, REGSAM access, RegistryKey& key) {
  return openKey(RegOpenKeyExW, root, path, access, key);
}

}  // namespace vl::registry

#endif
