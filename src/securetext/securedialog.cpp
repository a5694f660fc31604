#include <vlhostkit/securedialog.h>

#include <algorithm>

#include "frame/log.h"
#include "platform.h"

namespace {

// The records of a member, which are its name. No exit record where an exception passes, so this is no frame.
class Member {
 public:
  explicit Member(const wchar_t* name) : name_(name) { txlogLog(vl::kTag, TXLOG_ENTRY, name_); }
  void done() const { txlogLog(vl::kTag, TXLOG_EXIT, name_); }

 private:
  const wchar_t* name_;
};

// Enough for a control's memory to take any password without growing, which would leave the old memory behind.
constexpr int kFirstBlank = 1024;

void showFirstBlank(HWND control) {
  CSecStr blank;
  std::fill_n(blank.GetBuffer(kFirstBlank + 1), kFirstBlank, L' ');
  blank.ReleaseBuffer(kFirstBlank);
  SetWindowTextW(control, blank);
}

void blankToItsLength(HWND control) {
  CSecStr blank;
  const int length = GetWindowTextLengthW(control);
  wchar_t* const text = blank.GetBuffer(length + 1);
  GetWindowTextW(control, text, length + 1);
  std::fill_n(text, length, L' ');  // whatever was read, should it be less than that
  blank.ReleaseBuffer(length);
  SetWindowTextW(control, blank);
}

}  // namespace

IMPLEMENT_DYNAMIC(CSecureDialog, CDialog)

BEGIN_MESSAGE_MAP(CSecureDialog, CDialog)
END_MESSAGE_MAP()

CSecureDialog::CSecureDialog(const wchar_t* templateName, CWnd* parent) : CDialog(templateName, parent) {}

CSecureDialog::CSecureDialog(UINT templateId, CWnd* parent) : CDialog(templateId, parent) {}

CSecureDialog::~CSecureDialog() = default;

int CSecureDialog::DestroyWindow() {
  const Member member(L"CSecureDialog::DestroyWindow");
  const int result = CWnd::DestroyWindow();
  member.done();
  return result;
}

void CSecureDialog::OnOK() {
  const Member member(L"CSecureDialog::OnOK");
  if (!UpdateData(TRUE)) {
    return;
  }
  EndDialog(IDOK);
  member.done();
}

void CSecureDialog::OnCancel() {
  const Member member(L"CSecureDialog::OnCancel");
  EndDialog(IDCANCEL);
  member.done();
}

void CSecureDialog::OnInitDialogSecure() {
  const Member member(L"CSecureDialog::OnInitDialogSecure");
  m_bFirstExchange = true;
  m_bCleaningUp = false;
  CDialog::OnInitDialog();
  member.done();
}

void CSecureDialog::EndDialog(int result) {
  const Member member(L"CSecureDialog::EndDialog");
  SecureCleanUp();
  CDialog::EndDialog(result);
  member.done();
}

void CSecureDialog::DDX_Text(CDataExchange* exchange, int id, CSecStr& value) {
  const Member member(L"CSecureDialog::DDX_Text");
  const HWND control = exchange->PrepareEditCtrl(id);
  if (exchange->m_bSaveAndValidate) {
    value.Empty();
    const int length = GetWindowTextLengthW(control);
    wchar_t* const text = value.GetBuffer(length + 1);
    std::fill_n(text, length + 1, L'\0');  // should the control give less
    GetWindowTextW(control, text, length + 1);
    value.ReleaseBuffer(length);
  } else {
    if (m_bFirstExchange) {
      showFirstBlank(control);
      m_bFirstExchange = false;
    } else {
      blankToItsLength(control);
    }
    if (!m_bCleaningUp) {
      SetWindowTextW(control, value);
    }
  }
  member.done();
}

void CSecureDialog::SecureCleanUp() {
  const Member member(L"CSecureDialog::SecureCleanUp");
  m_bCleaningUp = true;
  UpdateData(FALSE);
  member.done();
}
