/// How the runtime's functions end when they refuse what they were given.
#ifndef VLPLATFORM_SRC_INVALIDPARAMETER_H
#define VLPLATFORM_SRC_INVALIDPARAMETER_H

#include <vlplatform/crt.h>

namespace vlplatform {

/// Sets errno to `code`, reports to the invalid parameter handler, and returns `code`. The handler may throw: whatever
/// must not be left behind is cleared before.
errno_t refuse(errno_t code);

}  // namespace vlplatform

#endif
