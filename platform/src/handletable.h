/// Handles that are numbers, each with a record.
#ifndef VLPLATFORM_SRC_HANDLETABLE_H
#define VLPLATFORM_SRC_HANDLETABLE_H

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <vector>

#include <vlplatform/machine.h>

namespace vlplatform {

/// The open handles of one kind. A number is never given twice, so that a stale handle is refused. Thread-safe.
template <class Record>
class HandleTable {
 public:
  explicit HandleTable(Resource resource) : resource_(resource) {}

  HANDLE open(Record record) {
    const std::lock_guard lock(mutex_);
    last_ += 4;
    auto* const handle = reinterpret_cast<HANDLE>(last_);
    records_.emplace(handle, std::move(record));
    machine().counters().opened(resource_);
    return handle;
  }
  std::optional<Record> find(HANDLE handle) const {
    const std::lock_guard lock(mutex_);
    const auto found = records_.find(handle);
    return found != records_.end() ? std::optional(found->second) : std::nullopt;
  }
  /// Calls `use` with the record, which can't be closed meanwhile. False if it is not open.
  template <class Use>
  bool with(HANDLE handle, Use use) const {
    const std::lock_guard lock(mutex_);
    const auto found = records_.find(handle);
    if (found == records_.end()) {
      return false;
    }
    use(found->second);
    return true;
  }
  /// The handles, in the order of their opening, whose record `matches`.
  template <class Matches>
  std::vector<HANDLE> handles(Matches matches) const {
    const std::lock_guard lock(mutex_);
    std::vector<HANDLE> found;
    for (const auto& [handle, record] : records_) {
      if (matches(record)) {
        found.push_back(handle);
      }
    }
    return found;
  }
  /// False if it is not open.
  bool close(HANDLE handle) {
    const std::lock_guard lock(mutex_);
    if (records_.erase(handle) == 0) {
      return false;
    }
    machine().counters().closed(resource_);
    return true;
  }

 private:
  const Resource resource_;
  mutable std::mutex mutex_;
  std::map<HANDLE, Record> records_;
  std::uintptr_t last_ = 0x100;
};

}  // namespace vlplatform

#endif
