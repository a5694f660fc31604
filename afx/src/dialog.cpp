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
  run_ = Run::modal;
  const INT_PTR result = DialogBoxParamW(AfxFindDialogResourceHandle(template_), template_,
                                         parent_ != nullptr ? parent_->GetSafeHwnd() : nullptr, &CDialog::procedure,
                                         reinterpret_cast<LPARAM>(this));
  m_hWnd = nullptr;
  passFailureOn();
  return result;
}

BOOL CDialog::Create(const wchar_t* templateName, CWnd* parent) {
  if (m_hWnd != nullptr) {
    return FALSE;
  }
  run_ = Run::creation;
  const HWND window = CreateDialogParamW(AfxFindDialogResourceHandle(templateName), templateName,
                                         parent != nullptr ? parent->GetSafeHwnd() : nullptr, &CDialog::procedure,
                                         reinterpret_cast<LPARAM>(this));
  if (window == nullptr && failure_ == nullptr) {
    return FALSE;
  }
  if (failure_ != nullptr) {
    DestroyWindow();
    passFailureOn();
  }
  run_ = Run::modeless;
  return TRUE;
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
  const bool modeless = dialog->run_ == Run::modeless;  // then a handler may delete the object
  try {
    return dialog->handle(window, message, first, second);
  } catch (...) {
    if (modeless) {
      endException();
    } else {
      dialog->cancel();
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
    PostNcDestroy();
    return FALSE;
  }
  LRESULT result = 0;
  if (!OnWndMsg(message, first, second, &result)) {
    return FALSE;
  }
  SetWindowLongPtrW(window, DWLP_MSGRESULT, result);
  return TRUE;
}

void CDialog::cancel() {
  if (failure_ != nullptr) {
    endException();
    return;
  }
  failure_ = std::current_exception();
  try {
    OnCancel();
  } catch (...) {
    endException();
  }
  EndDialog(-1);
}

void CDialog::passFailureOn() {
  if (failure_ != nullptr) {
    std::rethrow_exception(std::exchange(failure_, nullptr));
  }
}
