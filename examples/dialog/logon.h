/// A log-on dialog: a user name, and a password that is typed twice.
#ifndef DIALOG_LOGON_H
#define DIALOG_LOGON_H

#include <vlhostkit/securedialog.h>

/// Makes the dialog known to the stand-in, where there are no resources, and lets someone at the terminal fill it in.
void prepareScreen();

class LogOnDialog : public CSecureDialog {
 public:
  explicit LogOnDialog(CWnd* parent = nullptr);

  CStringT<wchar_t> m_user;
  CSecStr m_password;

 protected:
  BOOL OnInitDialog() override;
  /// Refuses an empty user name and two different passwords, and says so in the dialog.
  void DoDataExchange(CDataExchange* exchange) override;
  void OnOK() override;

 private:
  [[noreturn]] void refuse(CDataExchange* exchange, int control, const wchar_t* why);

  CSecStr m_repeat;
};

#endif
