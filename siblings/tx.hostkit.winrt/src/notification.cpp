#include "notification.h"

#include <new>
#include <optional>
#include <utility>

#include "surface.h"
#include "threadmessages.h"

namespace toast {
namespace {

class Raised {
 public:
  explicit Raised(std::atomic<bool>& flag) : flag_(flag) { flag_ = true; }
  ~Raised() { flag_ = false; }
  Raised(const Raised&) = delete;
  Raised& operator=(const Raised&) = delete;

 private:
  std::atomic<bool>& flag_;
};

}  // namespace

Notification::Notification(secstring title, secstring body, bool stays)
    : title_(std::move(title)), body_(std::move(body)), stays_(stays) {}

HRESULT Notification::Display(int* pnExitReason) {
  if (pnExitReason == nullptr) {
    return E_INVALIDARG;
  }
  exitReason_ = VL::Framework::kToastNotShown;
  HRESULT result = E_OUTOFMEMORY;
  try {
    result = run();
  } catch (const std::bad_alloc&) {
    // No exception leaves the library.
  }
  *pnExitReason = exitReason_;
  return result;
}

HRESULT Notification::run() {
  // In this order: what says that a request would be heard ends before the last look for requests.
  ThreadMessages messages;
  const Raised displaying(displaying_);
  HRESULT result = S_OK;
  const auto surface = show(title_, body_, result);
  if (surface == nullptr) {
    return result;
  }
  using Clock = std::chrono::steady_clock;
  const auto end = stays_ ? std::nullopt : std::optional(Clock::now() + displayTime());
  for (;;) {
    if (const auto reason = messages.handle(*surface)) {
      exitReason_ = *reason;
      return S_OK;
    }
    if (end && Clock::now() >= *end) {
      exitReason_ = VL::Framework::kToastTimedOut;
      return S_OK;
    }
    ThreadMessages::wait(end);
  }
}

int Notification::GetExitReason() {
  return exitReason_;
}

bool Notification::IsDisplaying() {
  return displaying_;
}

}  // namespace toast
