/// Memory that is handed to callers, who release it by the function that belongs to its kind.
#ifndef VLPLATFORM_SRC_BLOCKS_H
#define VLPLATFORM_SRC_BLOCKS_H

#include <cstddef>
#include <mutex>
#include <unordered_set>

#include <vlplatform/machine/counters.h>

namespace vlplatform {

/// The blocks of one kind that callers hold. Other pointers are refused without being looked at. Thread-safe.
class Blocks {
 public:
  explicit Blocks(Resource resource) : resource_(resource) {}

  /// Null if there is no memory. Memory that is not zeroed is filled with a pattern.
  void* allocate(std::size_t bytes, bool zeroed);
  /// False if it is no block of this kind.
  bool release(void* block);

 private:
  const Resource resource_;
  std::mutex mutex_;
  std::unordered_set<void*> live_;
};

Blocks& heapBlocks();
Blocks& localBlocks();
Blocks& lsaBlocks();
Blocks& sessionBlocks();

}  // namespace vlplatform

#endif
