/// The one way in which secret text is overwritten.
#ifndef VLHOSTKIT_WIPE_H
#define VLHOSTKIT_WIPE_H

#include <cstddef>
#include <cstring>

namespace VL::Framework {

/// Sets `bytes` bytes from `memory` to zero. The stores reach the memory also when it is released right afterwards and
/// never read again, whatever an optimiser makes of the rest. A null pointer goes with 0 bytes.
inline void wipe(void* memory, std::size_t bytes) noexcept {
  if (bytes == 0) {
    return;
  }
#if defined(__GNUC__)
  std::memset(memory, 0, bytes);
  // Whoever reads this memory next is unknown to the compiler, so the stores above count.
  __asm__ __volatile__("" : : "r"(memory) : "memory");
#else
  volatile unsigned char* byte = static_cast<volatile unsigned char*>(memory);
  while (bytes-- > 0) {
    *byte++ = 0;
  }
#endif
}

}  // namespace VL::Framework

#endif
