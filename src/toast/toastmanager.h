/// The manager behind vlCreateToastManager.
#ifndef VL_TOAST_TOASTMANAGER_H
#define VL_TOAST_TOASTMANAGER_H

#include <vlhostkit/toast.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <thread>

namespace VL::Framework {

class TXToastManager final : public ITXToastManager {
 public:
  /// `pNotification` is not null.
  explicit TXToastManager(std::unique_ptr<ITXToastNotification> pNotification);
  TXToastManager(const TXToastManager&) = delete;
  TXToastManager& operator=(const TXToastManager&) = delete;
  ~TXToastManager() override;

  int ShowToast() override;
  bool HideToast() override;
  bool CreateToastThread() override;
  bool JoinToastThread() override;

 private:
  /// The worker. It knows no more of the manager than these two, which the join in the destructor keeps alive.
  static void ShowToastThread(ITXToastNotification* pNotification, std::mutex* pMutex);

  std::unique_ptr<ITXToastNotification> m_pNotification;
  DWORD m_dwCreatorThreadId;
  std::unique_ptr<std::thread> m_pThread;
  std::mutex m_mutex;  // held as long as a Display runs
  // The id of the last worker, for hide requests beside a join, which changes the thread object.
  std::atomic<std::thread::id> m_workerId{};
};

}  // namespace VL::Framework

#endif
