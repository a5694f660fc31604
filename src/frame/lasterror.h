/// Keeps and sets the thread's last-error value.
#ifndef VL_FRAME_LASTERROR_H
#define VL_FRAME_LASTERROR_H

#include "platform.h"

namespace vl {

/// Puts the value back that the thread had when the guard was made.
class LastErrorGuard {
 public:
  LastErrorGuard() : code_(GetLastError()) {}
  ~LastErrorGuard() { SetLastError(code_); }
  LastErrorGuard(const LastErrorGuard&) = delete;
  LastErrorGuard& operator=(const LastErrorGuard&) = delete;

 private:
  DWORD code_;
};

/// The failure of a boolean function: `code` becomes the thread's last-error value.
inline BOOL fail(DWORD code) {
  SetLastError(code);
  return FALSE;
}

}  // namespace vl

#endif
