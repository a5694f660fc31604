/// Platform calls that fail, on both targets alike.
#ifndef SUPPORT_FAILINGCALL_H
#define SUPPORT_FAILINGCALL_H

#include <vlhostkit/types.h>

#ifdef _WIN32
#include <support/importpatch.h>
#else
#include <vlplatform/machine.h>
#endif

namespace support {

/// While one lives, every call of `function` by vlhostkitu gives `code`; for functions that return their error number.
/// One at a time. Native: ends by watching the fault gate anew, without faults.
class FailingCall {
 public:
#ifdef _WIN32
  FailingCall(const char* function, DWORD code)
      : patch_(L"vlhostkitu.dll", function, reinterpret_cast<FARPROC>(&FailingCall::fail)) {
    code_ = code;
  }

 private:
  // Whatever the arguments are: the caller cleans them up.
  static INT_PTR fail() {
    return static_cast<INT_PTR>(code_);
  }
  static inline DWORD code_ = 0;
  ImportPatch patch_;
#else
  FailingCall(const char* function, DWORD code) {
    vlplatform::machine().faults().fail(function, 1, vlplatform::FaultSpan::forEver, code);
  }
  ~FailingCall() {
    vlplatform::machine().faults().watch();
  }
  FailingCall(const FailingCall&) = delete;
  FailingCall& operator=(const FailingCall&) = delete;
#endif
};

}  // namespace support

#endif
