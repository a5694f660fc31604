/// The manager behind vlCreateToastManager.
#ifndef VL_TOAST_TOASTMANAGER_H
#define VL_TOAST_TOASTMANAGER_H

#include <vlhostkit/toast.h>

#include <cstdint>
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
  /// The worker. It knows no more of the manager than the first two, which the join in the destructor keeps alive.
  static void ShowToastThread(ITXToastNotification* pNotification, std::mutex* pMutex, std::uint64_t registration);

  /// Where a hide request goes. Throws std::out_of_range if the last worker was joined.
  DWORD target() const;

  std::unique_ptr<ITXToastNotification> m_pNotification;
  DWORD m_dwCreatorThreadId;
  std::unique_ptr<std::thread> m_pThread;
  std::mutex m_mutex;  // held as long as a Display runs
  // The last worker, for hide requests beside a join, which changes the thread object; no number before the first.
  // Guarded by the mutex of the workers' ids.
  std::thread::id m_workerId;
  std::uint64_t m_registration = 0;
};

}  // namespace VL::Framework

#endif
