/// The version of the machine's operating system.
#ifndef VLPLATFORM_MACHINE_VERSION_H
#define VLPLATFORM_MACHINE_VERSION_H

#include <vlplatform/machine/guarded.h>
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
  void reset() { facts_.reset(); }
  void set(const VersionFacts& facts) {
    facts_.with([&](VersionFacts& known) { known = facts; });
  }
  /// Only the numbers; the rest stays.
  void setNumbers(DWORD major, DWORD minor) {
    facts_.with([=](VersionFacts& known) {
      known.major = major;
      known.minor = minor;
    });
  }
  VersionFacts facts() const {
    return facts_.with([](const VersionFacts& facts) { return facts; });
  }

 private:
  Guarded<VersionFacts> facts_;
};

}  // namespace vlplatform

#endif
