/// The message queues of the process's threads.
#ifndef VLPLATFORM_MACHINE_MESSAGES_H
#define VLPLATFORM_MACHINE_MESSAGES_H

#include <memory>
#include <mutex>
#include <unordered_map>

#include <vlplatform/messages.h>

namespace vlplatform {

class MessageQueue;

/// Which threads have a queue. Thread-safe.
class VLPLATFORM_API Messages {
 public:
  /// Empties all queues; which threads have one stays.
  void reset();
  /// How many threads have a queue at this moment.
  std::size_t queues() const;

  /// For the stand-in's functions. The calling thread's queue, made if need be; another thread's, or null.
  MessageQueue& own();
  std::shared_ptr<MessageQueue> find(DWORD threadId) const;

 private:
  friend class OwnedQueue;

  mutable std::mutex mutex_;
  std::unordered_map<DWORD, std::shared_ptr<MessageQueue>> queues_;
};

}  // namespace vlplatform

#endif
