/// Stands ahead of the library's header of this name in the control program: a wipe that wipes nothing.
#ifndef VLHOSTKIT_WIPE_H
#define VLHOSTKIT_WIPE_H

#include <cstddef>

namespace VL::Framework {

inline void wipe(void*, std::size_t) noexcept {}

}  // namespace VL::Framework

#endif
