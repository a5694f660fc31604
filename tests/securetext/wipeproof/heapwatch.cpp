#include "heapwatch.h"

#include <algorithm>
#include <cstdlib>
#include <new>

#ifndef _WIN32
#include <vlplatform/machine/allocations.h>
#endif

namespace wipeproof {
namespace {

// The one that lives.
constinit HeapWatch* current = nullptr;

bool isZero(const void* memory, std::size_t bytes) {
  const auto* const begin = static_cast<const unsigned char*>(memory);
  return std::all_of(begin, begin + bytes, [](unsigned char byte) { return byte == 0; });
}

// The bytes from the first character to the one at the allocated length, which only ever is a terminator.
std::size_t charactersBytes(const CStringData& header, std::size_t blockBytes) {
  const auto capacity = static_cast<std::size_t>(header.nAllocLength);
  return (blockBytes - sizeof header) / (capacity + 1) * capacity;
}

bool isOwnAllocation() {
#ifdef _WIN32
  return false;
#else
  return vlplatform::OwnAllocations::active();
#endif
}

}  // namespace

HeapWatch::HeapWatch(const memoryscan::Secret& secret, std::uint64_t failAt)
    : secret_(secret), failAt_(failAt), former_(AfxSetStringManager(this)) {
  current = this;
}

HeapWatch::~HeapWatch() {
  current = nullptr;
  AfxSetStringManager(former_);
  std::for_each(kept_, kept_ + keptCount_, [](void* block) { std::free(block); });
}

void HeapWatch::giveBack(void* block) {
  if (keeps_ && keptCount_ < kMostKept) {
    kept_[keptCount_++] = block;
  } else {
    std::free(block);
  }
}

bool HeapWatch::mustFail() {
  return ++allocations_ == failAt_;
}

void* HeapWatch::Allocate(std::size_t bytes) {
  return mustFail() ? nullptr : std::malloc(bytes);
}

void HeapWatch::Free(void* block, std::size_t bytes) {
  const CStringData& header = *static_cast<const CStringData*>(block);
  buffersNotZero_ += isZero(&header + 1, charactersBytes(header, bytes)) ? 0 : 1;
  blocksWithSecret_ += secret_.isIn(block, bytes) ? 1 : 0;
  giveBack(block);
}

void* HeapWatch::allocateBlock(std::size_t bytes) {
  if (!isOwnAllocation() && mustFail()) {
    return nullptr;
  }
  void* const block = std::malloc(bytes);
  Block* const unused = std::find_if(blocks_, blocks_ + kMostBlocks, [](const Block& b) { return !b.address; });
  if (unused != blocks_ + kMostBlocks) {
    *unused = {block, bytes};
  }
  return block;
}

void HeapWatch::freeBlock(void* block) {
  Block* const known = std::find_if(blocks_, blocks_ + kMostBlocks, [=](const Block& b) { return b.address == block; });
  if (known != blocks_ + kMostBlocks) {
    blocksWithSecret_ += secret_.isIn(block, known->bytes) ? 1 : 0;
    blocksNotZero_ += isZero(block, known->bytes) ? 0 : 1;
    known->address = nullptr;
  }
  giveBack(block);
}

namespace {

void* allocate(std::size_t bytes) {
  bytes = std::max<std::size_t>(bytes, 1);
  void* const block = current != nullptr ? current->allocateBlock(bytes) : std::malloc(bytes);
  if (block == nullptr) {
    throw std::bad_alloc();
  }
  return block;
}

void release(void* block) noexcept {
  if (current != nullptr && block != nullptr) {
    current->freeBlock(block);
  } else {
    std::free(block);
  }
}

}  // namespace
}  // namespace wipeproof

// The forms without exceptions come here too, and the aligned ones stay the standard library's: nothing that is proved
// here uses them.
void* operator new(std::size_t bytes) {
  return wipeproof::allocate(bytes);
}
void* operator new[](std::size_t bytes) {
  return wipeproof::allocate(bytes);
}
void operator delete(void* block) noexcept {
  wipeproof::release(block);
}
void operator delete[](void* block) noexcept {
  wipeproof::release(block);
}
void operator delete(void* block, std::size_t) noexcept {
  wipeproof::release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  wipeproof::release(block);
}
