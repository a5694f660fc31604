/// Fault sweeps: every platform call of an operation fails, one after the other. Native only.
#ifndef SUPPORT_FAULTSWEEP_H
#define SUPPORT_FAULTSWEEP_H

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include <vlplatform/machine.h>

namespace support {

using vlplatform::FaultSpan;

/// What the calls of a sweep fail with.
inline constexpr DWORD kSweepCode = 4321;

/// Whether all points run, so that their totals can be looked at, and not a single one (see below).
inline bool isWholeSweep() {
  return std::getenv("VL_FAULT_POINT") == nullptr;
}

/// Makes the n-th platform call of `operation` fail, for n = 1, 2, ... until a run has no n-th call: once, and for ever
/// after. `run` gets the point's span and makes the call, with all that it must find prepared before `arm`, which plans
/// the fault; `check` gets what `run` returned, the name of the call that failed, empty in the last run, and the span.
/// Returns the number of faults reached.
///
/// A point is named in the messages of its failures, and runs alone if the environment's VL_FAULT_POINT is that name:
/// "operation n" or "operation n for ever". Operations that share a name, as twins do, run together.
template <class Run, class Check>
int sweepFaults(const std::string& operation, Run run, Check check) {
  constexpr std::uint64_t kMostCalls = 1000;
  const char* const only = std::getenv("VL_FAULT_POINT");
  vlplatform::Faults& faults = vlplatform::machine().faults();
  int reached = 0;
  for (const FaultSpan span : {FaultSpan::once, FaultSpan::forEver}) {
    std::string failed = "none";
    for (std::uint64_t n = 1; n < kMostCalls && !failed.empty(); ++n) {
      const std::string point = operation + " " + std::to_string(n) + (span == FaultSpan::once ? "" : " for ever");
      if (only != nullptr && point != only) {
        continue;
      }
      const auto outcome = run([&] {
        faults.watch();
        faults.failAny(n, span, kSweepCode);
      });
      failed = faults.callName(n);
      faults.reset();
      SCOPED_TRACE("fault point \"" + point + "\" " + failed);
      check(outcome, failed, span);
      reached += !failed.empty();
    }
    EXPECT_TRUE(failed.empty() || only != nullptr) << operation << " does not end";
  }
  return reached;
}

}  // namespace support

#endif
