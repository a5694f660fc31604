/// How a function of the stand-in passes the fault gate.
#ifndef VLPLATFORM_SRC_GATE_H
#define VLPLATFORM_SRC_GATE_H

#include <atomic>

#include <vlplatform/machine.h>

namespace vlplatform {

/// Set while Faults watches, so that a call in the field costs no more than this.
extern constinit std::atomic<bool> faultsWatched;

/// For functions that return their error number: the number to return at once, 0 to go on.
inline DWORD gate(const char* function) {
  if (!faultsWatched.load(std::memory_order_relaxed)) [[likely]] {
    return ERROR_SUCCESS;
  }
  return machine().faults().pass(function);
}

/// For functions that report by the last-error value, which is set if the call must fail.
inline bool gateFails(const char* function) {
  const DWORD code = gate(function);
  if (code == ERROR_SUCCESS) [[likely]] {
    return false;
  }
  SetLastError(code);
  return true;
}

/// The end of a BOOL function.
inline BOOL succeed(DWORD code) {
  if (code == ERROR_SUCCESS) [[likely]] {
    return TRUE;
  }
  SetLastError(code);
  return FALSE;
}

}  // namespace vlplatform

#endif
