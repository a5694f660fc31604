#include "logon.h"

#include "resources.h"

LogOnDialog::LogOnDialog(CWnd* parent) : CSecureDialog(IDD_LOG_ON, parent) {}

BOOL LogOnDialog::OnInitDialog() {
  OnInitDialogSecure();
  return TRUE;
}

void LogOnDialog::DoDataExchange(CDataExchange* exchange) {
  ::DDX_Text(exchange, IDC_USER, m_user);
  DDX_Text(exchange, IDC_PASSWORD, m_password);
  DDX_Text(exchange, IDC_REPEAT, m_repeat);
  if (!exchange->m_bSaveAndValidate) {
    return;
  }
  if (m_user.GetLength() == 0) {
    refuse(exchange, IDC_USER, L"Who are you? The user name is empty.");
  }
  if (m_password.Compare(m_repeat) != 0) {
    refuse(exchange, IDC_REPEAT, L"The two passwords differ.");
  }
}

void LogOnDialog::OnOK() {
  CSecureDialog::OnOK();
  m_repeat.Empty();  // it has served
}

void LogOnDialog::refuse(CDataExchange* exchange, int control, const wchar_t* why) {
  HWND hint = nullptr;
  GetDlgItem(IDC_HINT, &hint);
  SetWindowTextW(hint, why);
  exchange->PrepareEditCtrl(control);
  exchange->Fail();
}
