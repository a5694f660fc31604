#include "blocks.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include <vlplatform/machine.h>

namespace vlplatform {
namespace {

constexpr int kUnsetPattern = 0xCD;

// Never destroyed: callers release late, at exit.
template <Resource resource>
Blocks& blocksOf() {
  static Blocks& blocks = *[] {
    const OwnAllocations own;
    return new Blocks(resource);
  }();
  return blocks;
}

}  // namespace

void* Blocks::allocate(std::size_t bytes, bool zeroed) {
  if (bytes > PTRDIFF_MAX) {
    return nullptr;
  }
  const OwnAllocations own;
  // Exactly what was asked for, so that the sanitizer sees an overrun by one; a block of nothing has an address too.
  const std::size_t size = bytes != 0 ? bytes : 1;
  void* const block = zeroed ? std::calloc(1, size) : std::malloc(size);
  if (block == nullptr) {
    return nullptr;
  }
  if (!zeroed) {
    std::memset(block, kUnsetPattern, bytes);
  }
  {
    const std::lock_guard lock(mutex_);
    live_.insert(block);
  }
  machine().counters().opened(resource_);
  return block;
}

bool Blocks::release(void* block) {
  {
    const OwnAllocations own;
    const std::lock_guard lock(mutex_);
    if (live_.erase(block) == 0) {
      return false;
    }
  }
  machine().counters().closed(resource_);
  std::free(block);
  return true;
}

Blocks& heapBlocks() {
  return blocksOf<Resource::heapBlock>();
}
Blocks& localBlocks() {
  return blocksOf<Resource::localBlock>();
}
Blocks& lsaBlocks() {
  return blocksOf<Resource::lsaBlock>();
}
Blocks& sessionBlocks() {
  return blocksOf<Resource::sessionBlock>();
}

}  // namespace vlplatform
