#include "invalidparameter.h"

#include <atomic>
#include <cerrno>

#include "gate.h"

namespace {

constinit std::atomic<_invalid_parameter_handler> current{nullptr};

void report(const wchar_t* expression, const wchar_t* function, const wchar_t* file, unsigned line,
            std::uintptr_t reserved) {
  if (const _invalid_parameter_handler handler = current) {
    handler(expression, function, file, line, reserved);
  }
}

}  // namespace

// The runtime's release form tells its handler that something is invalid, and not what.
errno_t vlplatform::refuse(errno_t code) {
  errno = code;
  report(nullptr, nullptr, nullptr, 0, 0);
  return code;
}

void _invalid_parameter(const wchar_t* expression, const wchar_t* function, const wchar_t* file, unsigned line,
                        std::uintptr_t reserved) {
  vlplatform::gate("_invalid_parameter");
  report(expression, function, file, line, reserved);
}

_invalid_parameter_handler _set_invalid_parameter_handler(_invalid_parameter_handler handler) {
  vlplatform::gate("_set_invalid_parameter_handler");
  return current.exchange(handler);
}
