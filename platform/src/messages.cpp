#include <vlplatform/messages.h>

#include <unistd.h>

#include "gate.h"
#include "messagequeue.h"
#include "windows/window.h"

namespace vlplatform {
namespace {

// False with the last-error value set if the window is none of this thread's.
bool makeFilter(HWND window, UINT first, UINT last, MessageFilter& filter) {
  filter.first = first;
  filter.last = last;
  if (reinterpret_cast<INT_PTR>(window) == -1) {
    filter.windows = {nullptr};
  } else if (window != nullptr) {
    if (windows::findOwn(window) == nullptr) {
      return false;
    }
    filter.windows = windows::childrenOf(window);
    filter.windows->push_back(window);
  }
  return true;
}

}  // namespace

DWORD threadId() {
  thread_local const auto id = static_cast<DWORD>(::gettid());
  return id;
}

// A thread's hold on its queue. Others may post to the queue until it is out of the table, and a moment longer.
class OwnedQueue {
 public:
  explicit OwnedQueue(Messages& messages) : messages_(messages), queue_(std::make_shared<MessageQueue>()) {
    const std::lock_guard lock(messages_.mutex_);
    messages_.queues_[threadId()] = queue_;
  }
  ~OwnedQueue() {
    const OwnAllocations own;
    const std::lock_guard lock(messages_.mutex_);
    messages_.queues_.erase(threadId());
  }
  OwnedQueue(const OwnedQueue&) = delete;
  OwnedQueue& operator=(const OwnedQueue&) = delete;
  MessageQueue& get() { return *queue_; }

 private:
  Messages& messages_;
  std::shared_ptr<MessageQueue> queue_;
};

void Messages::reset() {
  const std::lock_guard lock(mutex_);
  for (const auto& [id, queue] : queues_) {
    queue->clear();
  }
}

std::size_t Messages::queues() const {
  const std::lock_guard lock(mutex_);
  return queues_.size();
}

MessageQueue& Messages::own() {
  thread_local OwnedQueue queue(*this);
  return queue.get();
}

std::shared_ptr<MessageQueue> Messages::find(DWORD id) const {
  const std::lock_guard lock(mutex_);
  const auto found = queues_.find(id);
  return found != queues_.end() ? found->second : nullptr;
}

}  // namespace vlplatform

using namespace vlplatform;

DWORD GetCurrentThreadId() {
  gate("GetCurrentThreadId");
  return threadId();
}

BOOL PostThreadMessageW(DWORD target, UINT message, WPARAM wParam, LPARAM lParam) {
  if (gateFails("PostThreadMessageW")) {
    return FALSE;
  }
  const OwnAllocations own;
  const auto queue = machine().messages().find(target);
  if (queue == nullptr) {
    return succeed(ERROR_INVALID_THREAD_ID);
  }
  return succeed(queue->post(nullptr, message, wParam, lParam) ? ERROR_SUCCESS : ERROR_NOT_ENOUGH_QUOTA);
}

void PostQuitMessage(int exitCode) {
  gate("PostQuitMessage");
  const OwnAllocations own;
  machine().messages().own().quit(exitCode);
}

BOOL GetMessageW(MSG* message, HWND window, UINT first, UINT last) {
  if (gateFails("GetMessageW")) {
    return -1;
  }
  const OwnAllocations own;
  MessageFilter filter;
  if (!makeFilter(window, first, last, filter)) {
    return -1;
  }
  machine().messages().own().waitFor(*message, filter);
  return message->message != WM_QUIT;
}

BOOL PeekMessageW(MSG* message, HWND window, UINT first, UINT last, UINT remove) {
  if (gateFails("PeekMessageW")) {
    return FALSE;
  }
  const OwnAllocations own;
  MessageFilter filter;
  return makeFilter(window, first, last, filter) &&
         machine().messages().own().look(*message, filter, (remove & PM_REMOVE) != 0);
}

DWORD MsgWaitForMultipleObjects(DWORD count, const HANDLE*, BOOL, DWORD milliseconds, DWORD) {
  if (gateFails("MsgWaitForMultipleObjects")) {
    return WAIT_FAILED;
  }
  if (count != 0) {
    SetLastError(ERROR_NOT_SUPPORTED);
    return WAIT_FAILED;
  }
  const OwnAllocations own;
  const auto time = milliseconds != INFINITE ? std::optional(std::chrono::milliseconds(milliseconds)) : std::nullopt;
  return machine().messages().own().waitForFresh(time) ? WAIT_OBJECT_0 : WAIT_TIMEOUT;
}
