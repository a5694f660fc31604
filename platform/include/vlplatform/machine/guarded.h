/// Facts of the machine that any thread reads and sets.
#ifndef VLPLATFORM_MACHINE_GUARDED_H
#define VLPLATFORM_MACHINE_GUARDED_H

#include <mutex>
#include <utility>

#include <vlplatform/machine/allocations.h>

namespace vlplatform {

/// A structure behind a lock. What its members are at start stands with them.
template <class Facts>
class Guarded {
 public:
  /// Calls `use` with the facts under the lock, and gives what it gives.
  template <class Use>
  auto with(Use use) {
    const OwnAllocations own;
    const std::lock_guard lock(mutex_);
    return use(facts_);
  }
  template <class Use>
  auto with(Use use) const {
    const OwnAllocations own;
    const std::lock_guard lock(mutex_);
    return use(facts_);
  }

  template <class Fact>
  Fact get(Fact Facts::*fact) const {
    return with([&](const Facts& facts) { return facts.*fact; });
  }
  template <class Fact, class Value>
  void set(Fact Facts::*fact, Value&& value) {
    with([&](Facts& facts) { facts.*fact = std::forward<Value>(value); });
  }
  void reset() {
    with([](Facts& facts) { facts = {}; });
  }

 private:
  mutable std::mutex mutex_;
  Facts facts_;
};

}  // namespace vlplatform

#endif
