#include <vlafx/dialog.h>

#include <utility>

#include <vlafx/exceptions.h>
#include <vlafx/resources.h>

namespace {

// The end of the exception that is being handled.
void endException() {
  try {
    throw;
  } catch (CException* exception) {
    exception->Delete();
  } catch (...) {
  }
}

// Messages whose answer the platform takes from the dialog procedure itself.
bool isAnsweredDirectly(UINT message) {
  return (message >= WM_CTLCOLORMSGBOX && message <= WM_CTLCOLORSTATIC) || message == WM_COMPAREITEM ||
         message == WM_VKEYTOITEM || message == WM_CHARTOITEM || message == WM_QUERYDRAGICON;
}

}  // namespace

IMPLEMENT_DYNAMIC(CDialog, CWnd)

BEGIN_MESSAGE_MAP(CDialog, CWnd)
ON_COMMAND(IDOK, OnOK)
ON_COMMAND(IDCANCEL, OnCancel)
END_MESSAGE_MAP()

CDialog::CDialog(const wchar_t* templateName, CWnd* parent) : parent_(parent) {
  if (!IS_INTRESOURCE(templateName)) {
    name_ = templateName;
    templateName = name_.c_str();
  }
  template_ = templateName;
}

CDialog::CDialog(UINT templateId, CWnd* parent) : CDialog(MAKEINTRESOURCEW(templateId), parent) {}

CDialog::~CDialog() {
  if (m_hWnd != nullptr) {
    ::DestroyWindow(m_hWnd);
  }
}

INT_PTR CDialog::DoModal() {
  if (m_hWnd != nullptr) {
    return -1;
  }
  Run run{.modal = true};
  run_ = &run;
  INT_PTR result = DialogBoxParamW(AfxFindDialogResourceHandle(template_), template_,
                                   parent_ != nullptr ? parent_->GetSafeHwnd() : nullptr, &CDialog::procedure,
                                   reinterpret_cast<LPARAM>(this));
  run_ = nullptr;
  m_hWnd = nullptr;
  if (run.failure != nullptr) {
    std::rethrow_exception(run.failure);
  }
  if (result == IDOK && !run.ended) {
    result = IDCANCEL;  // what the platform gives when the thread is asked to quit
  }
  return result;
}

BOOL CDialog::Create(const wchar_t* templateName, CWnd* parent) {
  if (m_hWnd != nullptr) {
    return FALSE;
  }
  Run run;
  run_ = &run;
  const HWND window = CreateDialogParamW(AfxFindDialogResourceHandle(templateName), templateName,
                                         parent != nullptr ? parent->GetSafeHwnd() : nullptr, &CDialog::procedure,
                                         reinterpret_cast<LPARAM>(this));
  if ((run.failure != nullptr || run.ended) && !run.gone && window != nullptr) {
    ::DestroyWindow(window);
  }
  if (!run.gone) {  // an object may delete itself with its window
    run_ = nullptr;
  }
  if (run.failure != nullptr) {
    std::rethrow_exception(run.failure);
  }
  return window != nullptr && !run.gone;
}

BOOL CDialog::Create(UINT templateId, CWnd* parent) {
  return Create(MAKEINTRESOURCEW(templateId), parent);
}

BOOL CDialog::OnInitDialog() {
  if (!UpdateData(FALSE)) {
    EndDialog(-1);
    return FALSE;
  }
  return TRUE;
}

void CDialog::EndDialog(int result) {
  if (m_hWnd != nullptr) {
    if (run_ != nullptr) {
      run_->ended = true;
    }
    ::EndDialog(m_hWnd, result);
  }
}

void CDialog::OnOK() {
  if (UpdateData(TRUE)) {
    EndDialog(IDOK);
  }
}

void CDialog::OnCancel() {
  EndDialog(IDCANCEL);
}

INT_PTR CALLBACK CDialog::procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(window, DWLP_USER, second);
  }
  auto* const dialog = reinterpret_cast<CDialog*>(GetWindowLongPtrW(window, DWLP_USER));
  if (dialog == nullptr) {
    return FALSE;  // ahead of WM_INITDIALOG, or behind WM_NCDESTROY
  }
  if (message == WM_INITDIALOG) {
    dialog->m_hWnd = window;
  }
  Run* const run = dialog->run_;  // a handler may delete the object of a modeless dialog
  try {
    return dialog->handle(window, message, first, second);
  } catch (...) {
    if (run == nullptr || run->failure != nullptr) {
      endException();
    } else {
      run->failure = std::current_exception();
      cancel(window, *run);
    }
    return FALSE;
  }
}

INT_PTR CDialog::handle(HWND window, UINT message, WPARAM first, LPARAM second) {
  if (message == WM_INITDIALOG) {
    return OnInitDialog();
  }
  if (message == WM_NCDESTROY) {
    SetWindowLongPtrW(window, DWLP_USER, 0);
    m_hWnd = nullptr;
    if (Run* const run = std::exchange(run_, nullptr)) {
      run->gone = true;
    }
    PostNcDestroy();
    return FALSE;
  }
  LRESULT result = 0;
  if (!OnWndMsg(message, first, second, &result)) {
    return FALSE;
  }
  if (isAnsweredDirectly(message)) {
    return static_cast<INT_PTR>(result);
  }
  SetWindowLongPtrW(window, DWLP_MSGRESULT, result);
  return TRUE;
}

void CDialog::cancel(HWND window, const Run& run) {
  try {
    if (auto* const dialog = reinterpret_cast<CDialog*>(GetWindowLongPtrW(window, DWLP_USER))) {
      dialog->OnCancel();
    }
  } catch (...) {
    endException();
  }
  if (run.modal && !run.gone) {
    ::EndDialog(window, -1);
  }
}
