/// Dialogs and their controls.
///
/// Handles are never given twice: a stale one is refused with ERROR_INVALID_WINDOW_HANDLE. A window belongs to the
/// thread that made it, and ends with it, without messages. Unless a function says otherwise, other threads are refused
/// with ERROR_ACCESS_DENIED: the platform would carry what they send over to the owner and wait.
///
/// Controls are "Edit" (one line), "Button" and "Static", of any case; only they are children, all others are popups.
/// Nothing is drawn, and there are no keys and no mouse: who plays the user sends or posts WM_CHAR and BM_CLICK. Of the
/// platform's messages a dialog procedure gets WM_INITDIALOG, WM_COMMAND, WM_SETFOCUS, WM_KILLFOCUS, WM_CLOSE,
/// WM_DESTROY, WM_NCDESTROY, those of its title, and what is sent or posted to it.
///
/// The text of a window is overwritten wherever its memory is let go.
#ifndef VLPLATFORM_DIALOGS_H
#define VLPLATFORM_DIALOGS_H

#include <vlplatform/messages.h>

using LRESULT = LONG_PTR;
using DLGPROC = INT_PTR(CALLBACK*)(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

#define WM_DESTROY 0x0002u
#define WM_SETFOCUS 0x0007u
#define WM_KILLFOCUS 0x0008u
#define WM_SETTEXT 0x000Cu
#define WM_GETTEXT 0x000Du
#define WM_GETTEXTLENGTH 0x000Eu
#define WM_CLOSE 0x0010u
#define WM_VKEYTOITEM 0x002Eu
#define WM_CHARTOITEM 0x002Fu
#define WM_QUERYDRAGICON 0x0037u
#define WM_COMPAREITEM 0x0039u
#define WM_NCDESTROY 0x0082u
#define WM_CHAR 0x0102u
#define WM_INITDIALOG 0x0110u
#define WM_COMMAND 0x0111u
#define WM_CTLCOLORMSGBOX 0x0132u
#define WM_CTLCOLORSTATIC 0x0138u
#define EM_GETSEL 0x00B0u
#define EM_SETSEL 0x00B1u
#define EM_LIMITTEXT 0x00C5u
#define BM_CLICK 0x00F5u
#define BN_CLICKED 0
#define EN_SETFOCUS 0x0100
#define EN_KILLFOCUS 0x0200
#define EN_CHANGE 0x0300
#define EN_UPDATE 0x0400
#define EN_MAXTEXT 0x0501
#define IDOK 1
#define IDCANCEL 2
#define ES_PASSWORD 0x0020u
#define ES_READONLY 0x0800u
#define WS_TABSTOP 0x00010000u
#define WS_CHILD 0x40000000u
#define WS_POPUP 0x80000000u
#define DWLP_MSGRESULT 0
#define DWLP_DLGPROC 8
#define DWLP_USER 16

constexpr WORD LOWORD(DWORD_PTR value) {
  return static_cast<WORD>(value);
}
constexpr WORD HIWORD(DWORD_PTR value) {
  return static_cast<WORD>(value >> 16);
}
constexpr WPARAM MAKEWPARAM(DWORD_PTR low, DWORD_PTR high) {
  return static_cast<WPARAM>(LOWORD(low) | static_cast<DWORD>(LOWORD(high)) << 16);
}

extern "C" {
/// Makes the dialog that `name` stands for in the module (null: the program) with its controls in the template's order,
/// sends WM_INITDIALOG with the first control that has WS_TABSTOP, or else the first one, and with `parameter`, and
/// gives that control the focus, all its text selected, if the procedure gives TRUE. `owner` may be null; a control
/// stands for its dialog. An owner takes its thread's dialogs with it when it is destroyed.
///
/// Null on failure: no template (see FindResourceW), ERROR_INVALID_WINDOW_HANDLE for a stale owner or if the procedure
/// destroyed the dialog meanwhile, ERROR_CANNOT_FIND_WND_CLASS for an unknown kind of control.
VLPLATFORM_API HWND CreateDialogParamW(HINSTANCE module, LPCWSTR name, HWND owner, DLGPROC procedure, LPARAM parameter);

/// The same, then dispatches the messages of the thread until EndDialog was called for this dialog, and destroys it.
/// Returns what EndDialog was told; 0 if the dialog was destroyed by others, or the owner is stale; IDOK if WM_QUIT
/// came, which is posted again; -1 if the dialog can't be made or is destroyed by its WM_INITDIALOG. Messages of the
/// thread itself are lost meanwhile. The owner is not disabled.
VLPLATFORM_API INT_PTR DialogBoxParamW(HINSTANCE module, LPCWSTR name, HWND owner, DLGPROC procedure, LPARAM parameter);

/// Ends the loop of DialogBoxParamW. A dialog of CreateDialogParamW stays. ERROR_WINDOW_NOT_DIALOG for controls.
VLPLATFORM_API BOOL EndDialog(HWND dialog, INT_PTR result);

/// Dialogs that it owns go first. Then WM_DESTROY is sent, while the controls are still there, the controls end,
/// WM_NCDESTROY is sent, and the handle ends; no message for any of them stays in the queue. Nothing, with TRUE, if the
/// window is being destroyed already.
VLPLATFORM_API BOOL DestroyWindow(HWND window);

/// Any thread. No last-error value for FALSE.
VLPLATFORM_API BOOL IsWindow(HWND window);
/// Any thread. ERROR_CONTROL_ID_NOT_FOUND if there is none; the first one of several.
VLPLATFORM_API HWND GetDlgItem(HWND dialog, int id);

/// Send WM_GETTEXTLENGTH, WM_GETTEXT and WM_SETTEXT. GetWindowTextW always terminates, cuts what is longer, and gives
/// the length without terminator. A text that is null is empty.
VLPLATFORM_API int GetWindowTextLengthW(HWND window);
VLPLATFORM_API int GetWindowTextW(HWND window, LPWSTR buffer, int chars);
VLPLATFORM_API BOOL SetWindowTextW(HWND window, LPCWSTR text);

/// What the window answers; 0 on failure. A dialog answers with DWLP_MSGRESULT where its procedure gives TRUE, which
/// was set to 0 before, and to WM_INITDIALOG with what the procedure gives. Where it gives FALSE, WM_CLOSE posts
/// WM_COMMAND with IDCANCEL.
///
/// An edit control sends its dialog WM_COMMAND with EN_UPDATE and EN_CHANGE after each change by WM_CHAR or WM_SETTEXT,
/// and EN_MAXTEXT for a character beyond EM_LIMITTEXT (32767 at first; 0 is the highest), which bounds typing only.
VLPLATFORM_API LRESULT SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
/// Any thread. A null window is the calling thread itself. ERROR_MESSAGE_SYNC_ONLY for messages with pointers.
VLPLATFORM_API BOOL PostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
/// Hands a message to its window; one of the thread itself is ignored.
VLPLATFORM_API LRESULT DispatchMessageW(const MSG* message);

/// DWLP_MSGRESULT, DWLP_DLGPROC and DWLP_USER of a dialog. 0 with ERROR_INVALID_INDEX for others.
VLPLATFORM_API LONG_PTR GetWindowLongPtrW(HWND window, int index);
/// Returns the value before. The same ones only; the platform knows identifiers and styles, too.
VLPLATFORM_API LONG_PTR SetWindowLongPtrW(HWND window, int index, LONG_PTR value);

/// The window of the calling thread that has the focus, or null: also once that window is destroyed.
VLPLATFORM_API HWND GetFocus();
/// Null takes the focus away. Returns the window that had it; null on failure, too.
VLPLATFORM_API HWND SetFocus(HWND window);
}

#endif
