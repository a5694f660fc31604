/// One thread's message queue.
#ifndef VLPLATFORM_SRC_MESSAGEQUEUE_H
#define VLPLATFORM_SRC_MESSAGEQUEUE_H

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>

#include <vlplatform/messages.h>

namespace vlplatform {

/// Posted to by any thread, read by its own. Thread-safe.
class MessageQueue {
 public:
  static constexpr std::size_t kMostMessages = 10000;

  void clear() {
    const std::lock_guard lock(mutex_);
    messages_.clear();
    quit_.reset();
    fresh_ = false;
  }
  /// False if it is full.
  bool post(const MSG& message) {
    {
      const std::lock_guard lock(mutex_);
      if (messages_.size() >= kMostMessages) {
        return false;
      }
      messages_.push_back(message);
      fresh_ = true;
    }
    arrived_.notify_one();
    return true;
  }
  void quit(int exitCode) {
    const std::lock_guard lock(mutex_);
    quit_ = exitCode;
    fresh_ = true;
  }
  /// The first message of the range, and takes it out if it is to be removed.
  std::optional<MSG> look(UINT first, UINT last, bool remove) {
    const std::lock_guard lock(mutex_);
    return lookLocked(first, last, remove);
  }
  MSG waitFor(UINT first, UINT last) {
    std::unique_lock lock(mutex_);
    for (;;) {
      if (const auto message = lookLocked(first, last, true)) {
        return *message;
      }
      arrived_.wait(lock, [this] { return fresh_; });
    }
  }
  /// Whether something came since the last look, within that time; none waits for ever.
  bool waitForFresh(std::optional<std::chrono::milliseconds> time) {
    std::unique_lock lock(mutex_);
    const auto fresh = [this] { return fresh_; };
    if (time) {
      return arrived_.wait_for(lock, *time, fresh);
    }
    arrived_.wait(lock, fresh);
    return true;
  }

 private:
  std::optional<MSG> lookLocked(UINT first, UINT last, bool remove) {
    fresh_ = false;
    for (auto next = messages_.begin(); next != messages_.end(); ++next) {
      if ((first == 0 && last == 0) || (next->message >= first && next->message <= last)) {
        const MSG found = *next;
        if (remove) {
          messages_.erase(next);
        }
        return found;
      }
    }
    if (!quit_) {
      return std::nullopt;
    }
    MSG found{};
    found.message = WM_QUIT;
    found.wParam = static_cast<WPARAM>(*quit_);
    if (remove) {
      quit_.reset();
    }
    return found;
  }

  std::mutex mutex_;
  std::condition_variable arrived_;
  std::deque<MSG> messages_;
  std::optional<int> quit_;
  bool fresh_ = false;
};

}  // namespace vlplatform

#endif
