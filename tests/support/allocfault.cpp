#include <support/allocfault.h>

#include <dlfcn.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include <vlplatform/machine/allocations.h>

// The sanitizers have a malloc of their own, which cannot be replaced.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define VL_COUNTS_MALLOC 0
#else
#define VL_COUNTS_MALLOC 1
extern "C" void* __libc_malloc(std::size_t bytes);
extern "C" void* __libc_calloc(std::size_t count, std::size_t bytes);
#endif

namespace support {

const bool kCountsMalloc = VL_COUNTS_MALLOC != 0;

namespace {

constinit thread_local AllocFault* armed = nullptr;

bool mustFail() {
  return armed != nullptr && !vlplatform::OwnAllocations::active() && armed->pass();
}

// The C library's own malloc, where `malloc` is ours.
void* allocateUncounted(std::size_t bytes) noexcept {
#if VL_COUNTS_MALLOC
  return __libc_malloc(bytes);
#else
  return std::malloc(bytes);
#endif
}

#if VL_COUNTS_MALLOC
// The language's runtime takes the memory of exceptions by malloc, and has a reserve for when there is none.
bool byLanguageRuntime(const void* caller) {
  Dl_info info;
  return dladdr(caller, &info) != 0 && std::strstr(info.dli_fname, "libstdc++") != nullptr;
}
#endif

void* allocate(std::size_t bytes) noexcept {
  return mustFail() ? nullptr : allocateUncounted(std::max<std::size_t>(bytes, 1));
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

#if VL_COUNTS_MALLOC
extern "C" [[gnu::visibility("default")]] void* malloc(std::size_t size) {
  const bool counts = support::armed != nullptr && !support::byLanguageRuntime(__builtin_return_address(0));
  return counts && support::mustFail() ? nullptr : __libc_malloc(size);
}
extern "C" [[gnu::visibility("default")]] void* calloc(std::size_t nmemb, std::size_t size) {
  const bool counts = support::armed != nullptr && !support::byLanguageRuntime(__builtin_return_address(0));
  return counts && support::mustFail() ? nullptr : __libc_calloc(nmemb, size);
}
#endif

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
