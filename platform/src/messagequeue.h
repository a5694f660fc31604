/// One thread's message queue. What leaves it is overwritten: typed characters pass through it.
#ifndef VLPLATFORM_SRC_MESSAGEQUEUE_H
#define VLPLATFORM_SRC_MESSAGEQUEUE_H

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <list>
#include <mutex>
#include <optional>
#include <vector>

#include <vlhostkit/wipe.h>
#include <vlplatform/messages.h>

namespace vlplatform {

/// The calling thread's number, past the fault gate.
DWORD threadId();

/// Which messages are asked for.
struct MessageFilter {
  UINT first = 0;
  UINT last = 0;
  /// None: any. A null handle stands for the messages of the thread itself.
  std::optional<std::vector<HWND>> windows;

  bool accepts(const MSG& message) const {
    return ((first == 0 && last == 0) || (message.message >= first && message.message <= last)) &&
           (!windows || std::ranges::find(*windows, message.hwnd) != windows->end());
  }
};

/// Posted to by any thread, read by its own. Thread-safe.
class MessageQueue {
 public:
  static constexpr std::size_t kMostMessages = 10000;

  ~MessageQueue() { clear(); }

  void clear() {
    const std::lock_guard lock(mutex_);
    eraseIf([](const MSG&) { return true; });
    quit_.reset();
    fresh_ = false;
  }
  /// False if it is full.
  bool post(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    using Milliseconds = std::chrono::milliseconds;
    const auto time = std::chrono::duration_cast<Milliseconds>(std::chrono::steady_clock::now().time_since_epoch());
    {
      const std::lock_guard lock(mutex_);
      if (messages_.size() >= kMostMessages) {
        return false;
      }
      messages_.push_back({window, message, wParam, lParam, static_cast<DWORD>(time.count()), {}});
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
  /// Forgets the messages of a window.
  void drop(HWND window) {
    const std::lock_guard lock(mutex_);
    eraseIf([window](const MSG& message) { return message.hwnd == window; });
  }
  /// Copies the first message that is asked for to `found`, and takes it out if it is to be removed.
  bool look(MSG& found, const MessageFilter& filter, bool remove) {
    const std::lock_guard lock(mutex_);
    return lookLocked(found, filter, remove);
  }
  /// Takes it out.
  void waitFor(MSG& found, const MessageFilter& filter) {
    std::unique_lock lock(mutex_);
    while (!lookLocked(found, filter, true)) {
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
  template <class Matches>
  void eraseIf(Matches matches) {
    for (auto next = messages_.begin(); next != messages_.end();) {
      next = matches(*next) ? erase(next) : std::next(next);
    }
  }
  std::list<MSG>::iterator erase(std::list<MSG>::iterator message) {
    VL::Framework::wipe(&*message, sizeof(MSG));
    return messages_.erase(message);
  }
  bool lookLocked(MSG& found, const MessageFilter& filter, bool remove) {
    fresh_ = false;
    const auto next = std::ranges::find_if(messages_, [&](const MSG& message) { return filter.accepts(message); });
    if (next != messages_.end()) {
      found = *next;
      if (remove) {
        erase(next);
      }
      return true;
    }
    if (!quit_) {
      return false;
    }
    found = {};
    found.message = WM_QUIT;
    found.wParam = static_cast<WPARAM>(*quit_);
    if (remove) {
      quit_.reset();
    }
    return true;
  }

  std::mutex mutex_;
  std::condition_variable arrived_;
  std::list<MSG> messages_;
  std::optional<int> quit_;
  bool fresh_ = false;
};

}  // namespace vlplatform

#endif
