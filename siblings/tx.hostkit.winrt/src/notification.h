/// The toast object.
#ifndef TOAST_NOTIFICATION_H
#define TOAST_NOTIFICATION_H

#include <atomic>

#include <vlhostkit/toast.h>

namespace toast {

class Notification final : public VL::Framework::ITXToastNotification {
 public:
  Notification(secstring title, secstring body, bool stays);

  HRESULT Display(int* pnExitReason) override;
  int GetExitReason() override;
  bool IsDisplaying() override;

 private:
  HRESULT run();

  const secstring title_;
  const secstring body_;
  const bool stays_;
  std::atomic<bool> displaying_{false};
  std::atomic<int> exitReason_{VL::Framework::kToastNotShown};
};

}  // namespace toast

#endif
