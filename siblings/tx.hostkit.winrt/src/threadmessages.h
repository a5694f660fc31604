/// The messages of the thread that displays a toast, read on its behalf.
#ifndef TOAST_THREADMESSAGES_H
#define TOAST_THREADMESSAGES_H

#include <chrono>
#include <optional>
#include <vector>

#include <vlhostkit/toast.h>

namespace toast {

class Surface;

/// While one lives, hide requests can reach its thread, and what else is posted to the thread is kept. At its end
/// everything that was kept is in the thread's queue again, in order, but for hide requests: none that came too late is
/// left to end a later toast.
class ThreadMessages {
 public:
  ThreadMessages();
  ~ThreadMessages();
  ThreadMessages(const ThreadMessages&) = delete;
  ThreadMessages& operator=(const ThreadMessages&) = delete;

  /// Reads all that is there. The reason why the toast ends now, if there is one.
  std::optional<VL::Framework::ToastExitReason> handle(Surface& surface);

  /// Waits for more, until `end` at the latest; without one for as long as it takes.
  static void wait(const std::optional<std::chrono::steady_clock::time_point>& end);

 private:
  void keepThreadMessages();

  std::vector<MSG> kept_;
};

}  // namespace toast

#endif
