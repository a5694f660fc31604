/// What callers hold of the stand-in at this moment, so that a test can assert that nothing leaked.
#ifndef VLPLATFORM_MACHINE_COUNTERS_H
#define VLPLATFORM_MACHINE_COUNTERS_H

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <iterator>

#include <vlplatform/basetypes.h>

namespace vlplatform {

enum class Resource : std::uint8_t {
  moduleReference,
  safeArray,
  automationString,
  token,
  policy,
  heapBlock,
  localBlock,
  lsaBlock,
  sessionBlock,
  registryKey,
  findHandle,
  window,
  count_
};

class Counters {
 public:
  void opened(Resource resource) { slot(resource).fetch_add(1, std::memory_order_relaxed); }
  void closed(Resource resource) { slot(resource).fetch_sub(1, std::memory_order_relaxed); }
  /// How many of `resource` are open; negative if more were closed than opened.
  std::int64_t open(Resource resource) const {
    return slots_[static_cast<std::size_t>(resource)].load(std::memory_order_relaxed);
  }
  static constexpr const char* name(Resource resource) {
    constexpr const char* kNames[] = {
        "module reference", "SAFEARRAY", "BSTR",          "token",        "LSA policy",  "heap block",
        "local block",      "LSA block", "session block", "registry key", "find handle", "window",
    };
    static_assert(std::size(kNames) == static_cast<std::size_t>(Resource::count_));
    return kNames[static_cast<std::size_t>(resource)];
  }

 private:
  std::atomic<std::int64_t>& slot(Resource resource) { return slots_[static_cast<std::size_t>(resource)]; }

  std::array<std::atomic<std::int64_t>, static_cast<std::size_t>(Resource::count_)> slots_{};
};

}  // namespace vlplatform

#endif
