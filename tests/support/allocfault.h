/// Makes allocations fail. Native only.
#ifndef SUPPORT_ALLOCFAULT_H
#define SUPPORT_ALLOCFAULT_H

#include <cstdint>

namespace support {

/// Whether malloc and calloc count too: not in sanitizer builds.
extern const bool kCountsMalloc;

/// While one lives, allocations with any form of `operator new`, malloc and calloc on the thread that made it are
/// counted, in our shared libraries also, and the n-th fails: by std::bad_alloc, or by a null pointer where
/// std::nothrow asked for that. The memory of exceptions does not count, nor do allocations under a
/// vlplatform::OwnAllocations. One at a time on a thread.
///
/// Only the call under test belongs into its scope: an assertion allocates too.
///
///     for (std::uint64_t n = 1;; ++n) {
///       AllocFault fault(n);
///       const DWORD result = vlFoo();
///       const bool failed = fault.end();
///       ...
///       if (!failed) break;
///     }
class AllocFault {
 public:
  enum class Span { once, forEver };

  /// `n` counts from 1; with 0 none fails. `forEver`: all after it fail too.
  explicit AllocFault(std::uint64_t n, Span span = Span::once);
  ~AllocFault();
  AllocFault(const AllocFault&) = delete;
  AllocFault& operator=(const AllocFault&) = delete;

  /// Ends it before its scope does. Returns whether an allocation was made to fail.
  bool end();

  /// Allocations asked for, failed ones included.
  std::uint64_t allocations() const { return allocations_; }

  /// For `operator new`: counts an allocation; whether it must fail.
  bool pass();

 private:
  std::uint64_t n_;
  Span span_;
  std::uint64_t allocations_ = 0;
};

}  // namespace support

#endif
