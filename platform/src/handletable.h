/// Handles that are numbers, each with a record.
#ifndef VLPLATFORM_SRC_HANDLETABLE_H
#define VLPLATFORM_SRC_HANDLETABLE_H

#include <cstdint>
#include <mutex>
#include <optional>
#include <unordered_map>

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
    const auto handle = reinterpret_cast<HANDLE>(last_);
    records_.emplace(handle, std::move(record));
    machine().counters().opened(resource_);
    return handle;
  }
  std::optional<Record> find(HANDLE handle) const {
    const std::lock_guard lock(mutex_);
    const auto found = records_.find(handle);
    return found != records_.end() ? std::optional(found->second) : std::nullopt;
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
  std::unordered_map<HANDLE, Record> records_;
  std::uintptr_t last_ = 0x100;
};

}  // namespace vlplatform

#endif
