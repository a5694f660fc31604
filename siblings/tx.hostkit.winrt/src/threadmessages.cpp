#include "threadmessages.h"

#include <algorithm>

#include "surface.h"

namespace toast {
namespace {

using VL::Framework::ToastExitReason;
using VL::Framework::WM_HIDE_TOAST;

// Names the messages that belong to the thread and not to a window.
HWND ownMessages() {
  return reinterpret_cast<HWND>(static_cast<INT_PTR>(-1));
}

bool isHideRequest(const MSG& message) {
  // With parameters it is a message of the host's own that happens to have this number.
  return message.hwnd == nullptr && message.message == WM_HIDE_TOAST && message.wParam == 0 && message.lParam == 0;
}

bool isQuit(const MSG& message) {
  return message.message == WM_QUIT;
}

}  // namespace

// The first look makes the queue. Hide requests from before were for another toast.
ThreadMessages::ThreadMessages() {
  keepThreadMessages();
}

ThreadMessages::~ThreadMessages() {
  keepThreadMessages();
  for (const MSG& message : kept_) {
    if (isQuit(message)) {
      PostQuitMessage(static_cast<int>(message.wParam));
    } else {
      PostThreadMessageW(GetCurrentThreadId(), message.message, message.wParam, message.lParam);
    }
  }
}

void ThreadMessages::keepThreadMessages() {
  MSG message;
  while (PeekMessageW(&message, ownMessages(), 0, 0, PM_REMOVE)) {
    if (!isHideRequest(message)) {
      kept_.push_back(message);
    }
  }
}

std::optional<ToastExitReason> ThreadMessages::handle(Surface& surface) {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (isHideRequest(message)) {
      return VL::Framework::kToastHidden;
    }
    if (isQuit(message) || !surface.dispatch(message)) {
      kept_.push_back(message);
    }
    if (surface.activated()) {
      return VL::Framework::kToastActivated;
    }
  }
  if (std::any_of(kept_.begin(), kept_.end(), isQuit)) {
    return VL::Framework::kToastQuit;
  }
  // Once more: a message that was sent and not posted is handled within the look for posted ones.
  return surface.activated() ? std::optional(VL::Framework::kToastActivated) : std::nullopt;
}

void ThreadMessages::wait(const std::optional<std::chrono::steady_clock::time_point>& end) {
  DWORD time = INFINITE;
  if (end) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*end - std::chrono::steady_clock::now());
    time = static_cast<DWORD>(std::max<std::chrono::milliseconds::rep>(left.count(), 0));
  }
  MsgWaitForMultipleObjects(0, nullptr, FALSE, time, QS_ALLINPUT);
}

}  // namespace toast
