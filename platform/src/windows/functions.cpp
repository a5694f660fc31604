// The functions on windows of any kind.
#include <utility>

#include "../gate.h"
#include "window.h"

using namespace vlplatform;
using windows::WindowPointer;

namespace {

// What is copied out of the sender's memory, or into it, can't wait in a queue.
bool hasPointers(UINT message) {
  return message == WM_SETTEXT || message == WM_GETTEXT || message == EM_GETSEL;
}

// Null with the last-error value set.
LONG_PTR* dialogValue(HWND window, int index) {
  const WindowPointer found = windows::findOwn(window);
  LONG_PTR* const value = found != nullptr ? found->value(index) : nullptr;
  if (found != nullptr && value == nullptr) {
    SetLastError(ERROR_INVALID_INDEX);
  }
  return value;
}

}  // namespace

BOOL DestroyWindow(HWND window) {
  if (gateFails("DestroyWindow")) {
    return FALSE;
  }
  const WindowPointer found = windows::findOwn(window);
  if (found != nullptr) {
    windows::destroy(found);
  }
  return found != nullptr;
}

BOOL IsWindow(HWND window) {
  return !gateFails("IsWindow") && windows::lookUp(window) != nullptr;
}

HWND GetDlgItem(HWND dialog, int id) {
  if (gateFails("GetDlgItem") || windows::find(dialog) == nullptr) {
    return nullptr;
  }
  const HWND found = windows::childWithId(dialog, id);
  if (found == nullptr) {
    SetLastError(ERROR_CONTROL_ID_NOT_FOUND);
  }
  return found;
}

int GetWindowTextLengthW(HWND window) {
  return gateFails("GetWindowTextLengthW") ? 0 : static_cast<int>(windows::send(window, WM_GETTEXTLENGTH, 0, 0));
}

int GetWindowTextW(HWND window, LPWSTR buffer, int chars) {
  if (gateFails("GetWindowTextW") || buffer == nullptr || chars <= 0) {
    return 0;
  }
  *buffer = L'\0';
  return static_cast<int>(
      windows::send(window, WM_GETTEXT, static_cast<WPARAM>(chars), reinterpret_cast<LPARAM>(buffer)));
}

BOOL SetWindowTextW(HWND window, LPCWSTR text) {
  return !gateFails("SetWindowTextW") && windows::send(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text)) != 0;
}

LRESULT SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  return gateFails("SendMessageW") ? 0 : windows::send(window, message, wParam, lParam);
}

BOOL PostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (gateFails("PostMessageW")) {
    return FALSE;
  }
  if (hasPointers(message)) {
    return succeed(ERROR_MESSAGE_SYNC_ONLY);
  }
  if (window != nullptr) {
    return succeed(windows::post(window, message, wParam, lParam));
  }
  const OwnAllocations own;
  return succeed(machine().messages().own().post(nullptr, message, wParam, lParam) ? ERROR_SUCCESS
                                                                                   : ERROR_NOT_ENOUGH_QUOTA);
}

LRESULT DispatchMessageW(const MSG* message) {
  if (gateFails("DispatchMessageW") || message->hwnd == nullptr) {
    return 0;
  }
  return windows::send(message->hwnd, message->message, message->wParam, message->lParam);
}

LONG_PTR GetWindowLongPtrW(HWND window, int index) {
  const LONG_PTR* const value = gateFails("GetWindowLongPtrW") ? nullptr : dialogValue(window, index);
  return value != nullptr ? *value : 0;
}

LONG_PTR SetWindowLongPtrW(HWND window, int index, LONG_PTR value) {
  LONG_PTR* const target = gateFails("SetWindowLongPtrW") ? nullptr : dialogValue(window, index);
  return target != nullptr ? std::exchange(*target, value) : 0;
}

HWND GetFocus() {
  return gateFails("GetFocus") ? nullptr : windows::focus();
}

HWND SetFocus(HWND window) {
  if (gateFails("SetFocus") || (window != nullptr && windows::findOwn(window) == nullptr)) {
    return nullptr;
  }
  return windows::moveFocus(window);
}
