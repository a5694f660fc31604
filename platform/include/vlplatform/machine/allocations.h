/// Tells the stand-in's own allocations from those of the library under test.
#ifndef VLPLATFORM_MACHINE_ALLOCATIONS_H
#define VLPLATFORM_MACHINE_ALLOCATIONS_H

#include <vlhostkit/export.h>

namespace vlplatform {

/// While one lives on a thread, allocations of that thread are the stand-in's (or a test's bookkeeping), and a test
/// that makes allocations fail lets them pass: what the platform's own memory does is told by the fault gate.
class VLPLATFORM_API OwnAllocations {
 public:
  OwnAllocations();
  ~OwnAllocations();
  OwnAllocations(const OwnAllocations&) = delete;
  OwnAllocations& operator=(const OwnAllocations&) = delete;

  /// Whether one lives on this thread.
  static bool active();
};

}  // namespace vlplatform

#endif
