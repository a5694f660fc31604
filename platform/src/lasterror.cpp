#include <vlplatform/errors.h>

namespace {
// In the static block of each thread: read and written around many a call.
[[gnu::tls_model("initial-exec")]] thread_local constinit DWORD lastError = ERROR_SUCCESS;
}  // namespace

DWORD GetLastError() {
  return lastError;
}

void SetLastError(DWORD code) {
  lastError = code;
}
