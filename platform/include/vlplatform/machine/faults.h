/// The fault gate: every function of the stand-in passes it first, so that a test can count calls and make them fail.
#ifndef VLPLATFORM_MACHINE_FAULTS_H
#define VLPLATFORM_MACHINE_FAULTS_H

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include <vlplatform/errors.h>

namespace vlplatform {

/// How long a fault stays once its call was reached.
enum class FaultSpan { once, forEver };

/// Counts calls and holds the planned faults. Nothing is counted and nothing fails until watch() is called: a program
/// in the field pays one load a call. All members may be called from any thread.
class VLPLATFORM_API Faults {
 public:
  /// What a fault gives where the plan names no code.
  static constexpr DWORD kDefaultCode = ERROR_GEN_FAILURE;

  Faults();
  ~Faults();
  Faults(const Faults&) = delete;
  Faults& operator=(const Faults&) = delete;

  /// Begins to count from zero, with no fault planned.
  void watch();
  /// Ends counting and forgets all plans.
  void reset();

  /// Calls of one function, or of all functions, since watch().
  std::uint64_t calls(std::string_view function) const;
  std::uint64_t calls() const;
  /// The name of the n-th call since watch(), from 1; empty if there was none. For the message of a failed sweep.
  std::string callName(std::uint64_t n) const;

  /// Makes the n-th call of `function` from now, counted from 1, fail with `code`.
  void fail(std::string_view function, std::uint64_t n = 1, FaultSpan span = FaultSpan::once,
            DWORD code = kDefaultCode);
  /// The same for the n-th call of any function.
  void failAny(std::uint64_t n, FaultSpan span = FaultSpan::once, DWORD code = kDefaultCode);

  /// Runs `action` ahead of the n-th call of `function` from now: what others do between two calls.
  void before(std::string_view function, std::uint64_t n, std::function<void()> action);

  /// Nothing fails from now on; calls are counted as before.
  void forgetPlans();

  /// For the stand-in's functions: counts a call of `function`; the code that it must fail with, 0 to go on.
  /// Only asked while watching.
  DWORD pass(const char* function);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace vlplatform

#endif
