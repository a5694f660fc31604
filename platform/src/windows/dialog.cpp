// Dialogs: made from templates, and run.
#include "../gate.h"
#include "window.h"

namespace vlplatform::windows {
namespace {

using DialogPointer = std::shared_ptr<Dialog>;

HWND firstControl(HWND dialog) {
  const std::vector<HWND> children = childrenOf(dialog);
  for (const HWND child : children) {
    if ((lookUp(child)->style & WS_TABSTOP) != 0) {
      return child;
    }
  }
  return children.empty() ? nullptr : children.front();
}

bool addControls(Dialog& dialog, const DialogTemplate& model) {
  // NOLINTNEXTLINE(readability-use-anyofallof): it opens windows
  for (const ControlTemplate& control : model.controls) {
    const WindowPointer window = makeControl(control.windowClass, dialog.handle, control.id, control.style);
    if (window == nullptr) {
      return false;
    }
    window->text.assign(control.text.c_str());
    open(window);
  }
  return true;
}

void initialise(Dialog& dialog, LPARAM parameter) {
  const auto first = reinterpret_cast<WPARAM>(firstControl(dialog.handle));
  if (dialog.receive(WM_INITDIALOG, first, parameter) == FALSE || !dialog.open) {
    return;
  }
  if (const HWND control = firstControl(dialog.handle)) {
    send(control, EM_SETSEL, 0, -1);
    moveFocus(control);
  }
}

// Null with the last-error value set if it can't be made; it may be destroyed already.
DialogPointer create(HINSTANCE module, LPCWSTR name, HWND owner, DLGPROC procedure, LPARAM parameter) {
  DWORD code = ERROR_SUCCESS;
  const auto model = machine().windows().find(module, name, RT_DIALOG, code);
  if (model == nullptr) {
    SetLastError(code);
    return nullptr;
  }
  if (owner != nullptr) {
    const WindowPointer given = find(owner);
    if (given == nullptr) {
      return nullptr;
    }
    owner = given->isChild() ? given->parent : owner;
  }
  DialogPointer dialog = [&] {
    const OwnAllocations own;
    return std::make_shared<Dialog>(owner, procedure);
  }();
  dialog->text.assign(model->title.c_str());
  open(dialog);
  if (!addControls(*dialog, *model)) {
    destroy(dialog);
    SetLastError(ERROR_CANNOT_FIND_WND_CLASS);
    return nullptr;
  }
  initialise(*dialog, parameter);
  if (!dialog->open) {
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return nullptr;
  }
  return dialog;
}

// False for WM_QUIT.
bool dispatchNext(MessageQueue& queue, HWND dialog) {
  const MessageFilter any;
  MSG message;
  if (!queue.look(message, any, true)) {
    if (const Windows::User user = machine().windows().user()) {
      user(dialog);
      return true;
    }
    queue.waitFor(message, any);
  }
  if (message.message == WM_QUIT) {
    queue.quit(static_cast<int>(message.wParam));
    return false;
  }
  if (message.hwnd != nullptr) {
    send(message.hwnd, message.message, message.wParam, message.lParam);
  }
  VL::Framework::wipe(&message, sizeof(message));
  return true;
}

INT_PTR run(const DialogPointer& dialog) {
  MessageQueue& queue = machine().messages().own();
  try {
    while (dialog->open && !dialog->ended && dispatchNext(queue, dialog->handle)) {
    }
  } catch (...) {  // of the user
    destroy(dialog);
    throw;
  }
  if (!dialog->open) {
    return 0;
  }
  const INT_PTR result = dialog->result;
  destroy(dialog);
  return result;
}

}  // namespace

LONG_PTR* Dialog::value(int index) {
  switch (index) {
    case DWLP_MSGRESULT:
    case DWLP_DLGPROC:
    case DWLP_USER:
      return &values_[index / static_cast<int>(sizeof(LONG_PTR))];
    default:
      return nullptr;
  }
}

LRESULT Dialog::receive(UINT message, WPARAM wParam, LPARAM lParam) {
  LONG_PTR& answer = *value(DWLP_MSGRESULT);
  answer = 0;
  const auto procedure = reinterpret_cast<DLGPROC>(*value(DWLP_DLGPROC));
  const INT_PTR handled = procedure != nullptr ? procedure(handle, message, wParam, lParam) : FALSE;
  if (message == WM_INITDIALOG) {
    return handled;
  }
  if (!open) {
    return 0;
  }
  if (handled != FALSE) {
    return answer;
  }
  if (message != WM_CLOSE) {
    return Window::receive(message, wParam, lParam);
  }
  post(handle, WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED), reinterpret_cast<LPARAM>(childWithId(handle, IDCANCEL)));
  return 0;
}

}  // namespace vlplatform::windows

using namespace vlplatform;

HWND CreateDialogParamW(HINSTANCE module, LPCWSTR name, HWND owner, DLGPROC procedure, LPARAM parameter) {
  if (gateFails("CreateDialogParamW")) {
    return nullptr;
  }
  const auto dialog = windows::create(module, name, owner, procedure, parameter);
  return dialog != nullptr ? dialog->handle : nullptr;
}

INT_PTR DialogBoxParamW(HINSTANCE module, LPCWSTR name, HWND owner, DLGPROC procedure, LPARAM parameter) {
  if (gateFails("DialogBoxParamW")) {
    return -1;
  }
  if (owner != nullptr && windows::find(owner) == nullptr) {
    return 0;
  }
  const auto dialog = windows::create(module, name, owner, procedure, parameter);
  return dialog != nullptr ? windows::run(dialog) : -1;
}

BOOL EndDialog(HWND window, INT_PTR result) {
  if (gateFails("EndDialog")) {
    return FALSE;
  }
  const windows::WindowPointer found = windows::findOwn(window);
  if (found == nullptr) {
    return FALSE;
  }
  const auto dialog = std::dynamic_pointer_cast<windows::Dialog>(found);
  if (dialog == nullptr) {
    return succeed(ERROR_WINDOW_NOT_DIALOG);
  }
  dialog->ended = true;
  dialog->result = result;
  return TRUE;
}
