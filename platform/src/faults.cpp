#include <vlplatform/machine/allocations.h>
#include <vlplatform/machine/faults.h>

#include <algorithm>
#include <mutex>
#include <vector>

#include "gate.h"

namespace vlplatform {

constinit std::atomic<bool> faultsWatched{false};

struct Faults::State {
  struct Plan {
    std::string function;  // empty: any
    std::uint64_t remaining;
    FaultSpan span;
    DWORD code;
    std::function<void()> action{};  // instead of a failure
  };

  mutable std::mutex mutex;
  std::vector<const char*> log;
  std::vector<Plan> plans;

  void plan(Plan plan) {
    const std::lock_guard lock(mutex);
    plans.push_back(std::move(plan));
  }
};

Faults::Faults() : state_(std::make_unique<State>()) {}
Faults::~Faults() = default;

void Faults::watch() {
  reset();
  faultsWatched = true;
}

void Faults::reset() {
  faultsWatched = false;
  const std::lock_guard lock(state_->mutex);
  state_->log.clear();
  state_->plans.clear();
}

std::uint64_t Faults::calls(std::string_view function) const {
  const std::lock_guard lock(state_->mutex);
  return static_cast<std::uint64_t>(std::count(state_->log.begin(), state_->log.end(), function));
}

std::uint64_t Faults::calls() const {
  const std::lock_guard lock(state_->mutex);
  return state_->log.size();
}

std::string Faults::callName(std::uint64_t n) const {
  const std::lock_guard lock(state_->mutex);
  return n == 0 || n > state_->log.size() ? std::string() : std::string(state_->log[n - 1]);
}

void Faults::fail(std::string_view function, std::uint64_t n, FaultSpan span, DWORD code) {
  state_->plan({std::string(function), n, span, code});
}

void Faults::failAny(std::uint64_t n, FaultSpan span, DWORD code) {
  state_->plan({{}, n, span, code});
}

void Faults::before(std::string_view function, std::uint64_t n, std::function<void()> action) {
  state_->plan({std::string(function), n, FaultSpan::once, ERROR_SUCCESS, std::move(action)});
}

void Faults::forgetPlans() {
  const std::lock_guard lock(state_->mutex);
  state_->plans.clear();
}

DWORD Faults::pass(const char* function) {
  const OwnAllocations own;
  std::function<void()> action;
  DWORD result = ERROR_SUCCESS;
  {
    const std::lock_guard lock(state_->mutex);
    state_->log.push_back(function);
    for (State::Plan& plan : state_->plans) {
      if (!plan.function.empty() && plan.function != function) {
        continue;
      }
      if (plan.remaining > 1) {
        --plan.remaining;
      } else if (plan.remaining == 1) {
        plan.remaining = plan.span == FaultSpan::once ? 0 : 1;
        if (plan.action) {
          action = std::move(plan.action);
        } else {
          result = plan.code;
        }
      }
    }
  }
  if (action) {
    action();
  }
  return result;
}

}  // namespace vlplatform
