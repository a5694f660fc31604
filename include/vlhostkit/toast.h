/// Toasts: one notification that is shown and taken down again, on the caller's thread or on a worker of the manager's
/// own; and two probes.
///
/// The toast itself is drawn by the sibling library tx.hostkit.winrt, which is looked for when it is needed. Without it
/// there is no toast and the mode is unknown; nothing else of vlhostkit needs it.
///
///     auto* const toast = VL::Framework::vlCreateToastManager(L"Password", L"Your password expires today.", false);
///     if (toast != nullptr && toast->CreateToastThread()) {
///       ...                       // goes on while the toast shows
///       toast->HideToast();       // if it is no longer needed
///       toast->JoinToastThread();
///     }
///     VL::Framework::vlDeleteToastManager(toast);  // also for a null pointer
#ifndef VLHOSTKIT_TOAST_H
#define VLHOSTKIT_TOAST_H

#include <cstdint>

#include <vlhostkit/secstring.h>
#include <vlhostkit/types.h>

/// How the user works with the machine. The sibling decides, and its value is passed on as it is.
enum HOSTKIT_UI_MODE : std::int32_t {
  HOSTKIT_UI_MODE_UNKNOWN = 0,  ///< also: the sibling or its entry point is missing
  HOSTKIT_UI_MODE_DESKTOP = 1,
  HOSTKIT_UI_MODE_TABLET = 2
};

namespace VL::Framework {

/// Why a toast ended, in the sibling that comes with vlhostkit. A sibling of the caller's own may have others.
enum ToastExitReason : int {
  kToastNotShown = 0,   ///< it was not shown, or has not ended
  kToastActivated = 1,  ///< the user clicked it
  kToastTimedOut = 2,   ///< its time was over
  kToastHidden = 3,     ///< a hide request took it down
  kToastQuit = 4        ///< its thread was told to quit (WM_QUIT, which stays in the thread's queue)
};

/// The thread message that takes a toast down, with both parameters 0: posted by HideToast to the displaying thread.
inline constexpr UINT WM_HIDE_TOAST = 0x623;

/// A toast object, made by the sibling. For siblings to implement; other callers use ITXToastManager.
class ITXToastNotification {
 public:
  /// Runs in the sibling's code, so before the sibling is released.
  virtual ~ITXToastNotification() = default;

  /// Shows the toast on the calling thread and returns when it has ended, with the reason in `*pnExitReason`; or a
  /// negative result if it can't be shown. Ends when the thread receives WM_HIDE_TOAST. One call at a time; once it has
  /// returned it may be called again.
  virtual HRESULT Display(int* pnExitReason) = 0;

  /// The reason of the last Display that ended, kToastNotShown if none has. Any thread. vlhostkit does not call it.
  virtual int GetExitReason() = 0;

  /// True while a hide request has something to act on: from when the displaying thread can receive it until the toast
  /// has ended. Any thread.
  virtual bool IsDisplaying() = 0;
};

/// One toast. Made by vlCreateToastManager, ended by vlDeleteToastManager.
///
/// CreateToastThread, JoinToastThread and the end of the manager belong to one thread at a time, and no other thread
/// may be inside an operation when the manager is deleted. HideToast may be called on any thread, also while another
/// waits in ShowToast or JoinToastThread. Deleting a manager with a worker asks the toast to hide and then waits for
/// the worker; a request that comes before the toast displays is lost, so the wait may last as long as the toast.
class VLHOSTKIT_API ITXToastManager {
 public:
  /// Nothing is held here: the managers that vlCreateToastManager makes are not copied.
  ITXToastManager();
  ITXToastManager(const ITXToastManager& other);
  ITXToastManager& operator=(const ITXToastManager& other);
  virtual ~ITXToastManager();

  /// Shows the toast on the calling thread and returns when it has ended. While another display of this manager runs,
  /// waits for that first. Returns the reason as the toast object stored it, 0 if it stored none, also when the
  /// display failed, which shows in the log only.
  virtual int ShowToast() = 0;

  /// Asks the displaying thread to take the toast down and does not wait for it. The thread is the worker if there was
  /// ever one, otherwise the thread that made the manager; a ShowToast on another thread is not reached. Returns
  /// true if a request was sent, taken or not; false if the toast is not displaying, or the worker was joined.
  virtual bool HideToast() = 0;

  /// Starts the worker, which shows the toast, and returns at once. Returns false if there is a worker already that
  /// was not joined, or the thread can't start; the manager is then as it was. A worker that was joined is replaced.
  /// Out of memory, std::bad_alloc passes through.
  virtual bool CreateToastThread() = 0;

  /// Waits for the worker to end. Returns false if there is none, or it was joined already.
  virtual bool JoinToastThread() = 0;
};

/// Loads the sibling and makes a toast of the two texts and the flag, which are its own to interpret: the one that
/// comes with vlhostkit takes title, body, and whether the toast stays until the user clicks it. The texts are wiped
/// with the sibling's copies too.
///
/// Returns null if the sibling or its entry point is missing, or makes no toast. EACH call is balanced by one
/// vlDeleteToastManager, ALSO one that returned null, since the sibling may have been loaded. Out of memory,
/// std::bad_alloc passes through; a call that threw needs its vlDeleteToastManager (of a null pointer) as well,
/// unless it was the making of its arguments that threw: make the texts before the call to tell the two apart.
VLHOSTKIT_API ITXToastManager* vlCreateToastManager(secstring strFirst, secstring strSecond, bool bFlag);

/// Ends the manager, if there is one, and releases the sibling as the last vlCreateToastManager of the process loaded
/// it. Without a vlCreateToastManager before, does nothing but log.
VLHOSTKIT_API void vlDeleteToastManager(ITXToastManager* pManager);

/// How the user works with the machine, HOSTKIT_UI_MODE_UNKNOWN if the sibling can't be asked. Any thread.
VLHOSTKIT_API HOSTKIT_UI_MODE vlGetUIMode();

/// Whether the operating system's version is one that has the Windows Runtime: 6.2 or later. Looks at nothing else.
VLHOSTKIT_API bool vlIsWinRTSupported();

}  // namespace VL::Framework

#endif
