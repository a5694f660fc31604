/// Looks at every block that is given back to the heap, and makes allocations fail.
#ifndef WIPEPROOF_HEAPWATCH_H
#define WIPEPROOF_HEAPWATCH_H

#include <cstddef>
#include <cstdint>

#include <memoryscan/memoryscan.h>
#include <vlafx/stringmgr.h>

namespace wipeproof {

/// While one lives, the buffers of string cores come from it, and it sees all uses of `operator new` and
/// `operator delete` (on Windows those of the program itself only: a DLL calls the ones of the C++ runtime's DLL). One
/// at a time, for one thread.
class HeapWatch final : public IStringManager {
 public:
  /// With `failAt` above 0, that allocation, counted from 1, finds no memory. Allocations under a
  /// vlplatform::OwnAllocations are not counted.
  explicit HeapWatch(const memoryscan::Secret& secret, std::uint64_t failAt = 0);
  ~HeapWatch();
  HeapWatch(const HeapWatch&) = delete;
  HeapWatch& operator=(const HeapWatch&) = delete;

  /// Blocks that were allocated since it began and given back with a copy of the secret in them.
  std::size_t blocksWithSecret() const { return blocksWithSecret_; }
  /// Buffers of string cores that were given back not all zero over their allocated length.
  std::size_t buffersNotZero() const { return buffersNotZero_; }
  /// Other blocks that were given back not all zero.
  std::size_t blocksNotZero() const { return blocksNotZero_; }
  /// Whether an allocation was made to fail.
  bool failed() const { return failAt_ != 0 && allocations_ >= failAt_; }

  /// Keeps what is given back until the watch ends, as it is: the heap overwrites the beginning of a free block, and
  /// hands it out again.
  void keepFreed() { keeps_ = true; }

  void* Allocate(std::size_t bytes) override;
  void Free(void* block, std::size_t bytes) override;

  /// For `operator new` and `operator delete`.
  void* allocateBlock(std::size_t bytes);
  void freeBlock(void* block);

 private:
  struct Block {
    void* address;
    std::size_t bytes;
  };
  static constexpr std::size_t kMostBlocks = 256;
  static constexpr std::size_t kMostKept = 8192;

  bool mustFail();
  void giveBack(void* block);

  const memoryscan::Secret& secret_;
  std::uint64_t failAt_;
  std::uint64_t allocations_ = 0;
  std::size_t blocksWithSecret_ = 0;
  std::size_t buffersNotZero_ = 0;
  std::size_t blocksNotZero_ = 0;
  Block blocks_[kMostBlocks] = {};
  bool keeps_ = false;
  std::size_t keptCount_ = 0;
  void* kept_[kMostKept];
  IStringManager* former_;
};

}  // namespace wipeproof

#endif
