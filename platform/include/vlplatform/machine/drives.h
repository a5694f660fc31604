/// The machine's drives.
#ifndef VLPLATFORM_MACHINE_DRIVES_H
#define VLPLATFORM_MACHINE_DRIVES_H

#include <map>
#include <mutex>
#include <optional>

#include <vlplatform/system.h>

namespace vlplatform {

/// At start C: for the root of the file tree, and further letters for the other disks that are mounted. Letters are
/// upper-case; calls with anything but a letter do nothing. Thread-safe.
class VLPLATFORM_API Drives {
 public:
  using List = std::map<wchar_t, UINT>;  ///< a DRIVE_ number by letter

  void reset();
  void clear();
  void set(wchar_t letter, UINT type);
  void remove(wchar_t letter);

  List list() const;

 private:
  List& known() const;

  mutable std::mutex mutex_;
  mutable std::optional<List> list_;  // empty until asked for
};

}  // namespace vlplatform

#endif
