/// Message queues: what was posted to a thread, or to a window of it (see vlplatform/dialogs.h).
///
/// A thread gets its queue with its first GetMessageW, PeekMessageW or MsgWaitForMultipleObjects, and loses it, with
/// what is in it, when it ends. Messages keep their order. PostQuitMessage leaves a mark that is told as WM_QUIT, once,
/// when nothing else is left, whatever range was asked for.
#ifndef VLPLATFORM_MESSAGES_H
#define VLPLATFORM_MESSAGES_H

#include <vlplatform/basetypes.h>

using HWND = struct HWND__*;
using WPARAM = UINT_PTR;
using LPARAM = LONG_PTR;

struct POINT {
  LONG x;
  LONG y;
};

/// `hwnd` is null in messages of the thread itself, and `pt` zero in every one.
struct MSG {
  HWND hwnd;
  UINT message;
  WPARAM wParam;
  LPARAM lParam;
  DWORD time;
  POINT pt;
};

#define WM_QUIT 0x0012u
#define WM_APP 0x8000u
#define PM_NOREMOVE 0x0u
#define PM_REMOVE 0x1u
#define QS_ALLINPUT 0x04FFu
#define INFINITE 0xFFFFFFFFu
#define WAIT_OBJECT_0 0x0u
#define WAIT_TIMEOUT 258u
#define WAIT_FAILED 0xFFFFFFFFu

extern "C" {
/// Never 0, and no two threads that live have the same.
VLPLATFORM_API DWORD GetCurrentThreadId();

/// ERROR_INVALID_THREAD_ID for a thread without a queue, ERROR_NOT_ENOUGH_QUOTA for a queue that holds 10000 messages.
VLPLATFORM_API BOOL PostThreadMessageW(DWORD threadId, UINT message, WPARAM wParam, LPARAM lParam);
VLPLATFORM_API void PostQuitMessage(int exitCode);

/// The oldest message between `first` and `last`, any message if both are 0. `window` is null for all messages of the
/// thread, -1 for those that belong to no window, or a window of this thread, for its own and those of its controls.
/// ERROR_INVALID_WINDOW_HANDLE for a stale window, ERROR_ACCESS_DENIED for another thread's. GetMessageW waits, and
/// gives 0 for WM_QUIT and -1 on failure.
VLPLATFORM_API BOOL GetMessageW(MSG* message, HWND window, UINT first, UINT last);
VLPLATFORM_API BOOL PeekMessageW(MSG* message, HWND window, UINT first, UINT last, UINT remove);

/// Waits until the queue holds a message that came after the last look into it: WAIT_OBJECT_0, or WAIT_TIMEOUT after so
/// many milliseconds. `count` must be 0: ERROR_NOT_SUPPORTED, with WAIT_FAILED.
VLPLATFORM_API DWORD MsgWaitForMultipleObjects(DWORD count, const HANDLE* handles, BOOL all, DWORD milliseconds,
                                               DWORD mask);
}

#endif
