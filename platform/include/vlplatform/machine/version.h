/// The version of the machine's operating system.
#ifndef VLPLATFORM_MACHINE_VERSION_H
#define VLPLATFORM_MACHINE_VERSION_H

#include <mutex>

#include <vlplatform/version.h>

namespace vlplatform {

struct VersionFacts {
  DWORD major = 10;
  DWORD minor = 0;
  DWORD build = 19045;
  WORD suiteMask = VER_SUITE_SINGLEUSERTS;
  DWORD platform = VER_PLATFORM_WIN32_NT;

  bool operator==(const VersionFacts&) const = default;
};

/// A workstation with version 10.0 until a test sets another. Thread-safe.
class VLPLATFORM_API Version {
 public:
  void reset();
  void set(const VersionFacts& facts);
  /// Only the numbers; the rest stays.
  void setNumbers(DWORD major, DWORD minor);
  VersionFacts facts() const;

 private:
  mutable std::mutex mutex_;
  VersionFacts facts_;
};

}  // namespace vlplatform

#endif
