#include <support/allocfault.h>

#include <algorithm>
#include <cstdlib>
#include <new>

#include <vlplatform/machine/allocations.h>

namespace support {
namespace {

constinit thread_local AllocFault* armed = nullptr;

bool mustFail() {
  return armed != nullptr && !vlplatform::OwnAllocations::active() && armed->pass();
}

void* allocate(std::size_t bytes) noexcept {
  return mustFail() ? nullptr : std::malloc(std::max<std::size_t>(bytes, 1));
}

void* allocate(std::size_t bytes, std::align_val_t alignment) noexcept {
  if (mustFail()) {
    return nullptr;
  }
  void* block = nullptr;
  return posix_memalign(&block, std::max(static_cast<std::size_t>(alignment), sizeof(void*)),
                        std::max<std::size_t>(bytes, 1)) == 0
             ? block
             : nullptr;
}

void* orThrow(void* block) {
  if (block == nullptr) {
    throw std::bad_alloc();
  }
  return block;
}

}  // namespace

AllocFault::AllocFault(std::uint64_t n, Span span) : n_(n), span_(span) {
  armed = this;
}

AllocFault::~AllocFault() {
  end();
}

bool AllocFault::end() {
  if (armed == this) {
    armed = nullptr;
  }
  return n_ != 0 && allocations_ >= n_;
}

bool AllocFault::pass() {
  ++allocations_;
  return n_ != 0 && (span_ == Span::once ? allocations_ == n_ : allocations_ >= n_);
}

}  // namespace support

// All forms, so that none allocates here and is released by the standard library's own, or the other way round.
using support::allocate;
using support::orThrow;

void* operator new(std::size_t bytes) {
  return orThrow(allocate(bytes));
}
void* operator new[](std::size_t bytes) {
  return orThrow(allocate(bytes));
}
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
  return allocate(bytes);
}
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
  return allocate(bytes);
}
void* operator new(std::size_t bytes, std::align_val_t alignment) {
  return orThrow(allocate(bytes, alignment));
}
void* operator new[](std::size_t bytes, std::align_val_t alignment) {
  return orThrow(allocate(bytes, alignment));
}
void* operator new(std::size_t bytes, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return allocate(bytes, alignment);
}
void* operator new[](std::size_t bytes, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return allocate(bytes, alignment);
}

void operator delete(void* block) noexcept {
  std::free(block);
}
void operator delete[](void* block) noexcept {
  std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  std::free(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
  std::free(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
  std::free(block);
}
void operator delete(void* block, std::align_val_t) noexcept {
  std::free(block);
}
void operator delete[](void* block, std::align_val_t) noexcept {
  std::free(block);
}
void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
  std::free(block);
}
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept {
  std::free(block);
}
void operator delete(void* block, std::align_val_t, const std::nothrow_t&) noexcept {
  std::free(block);
}
void operator delete[](void* block, std::align_val_t, const std::nothrow_t&) noexcept {
  std::free(block);
}
