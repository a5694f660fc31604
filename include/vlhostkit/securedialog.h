/// `CSecureDialog`, the base of dialogs in which the user types a secret.
#ifndef VLHOSTKIT_SECUREDIALOG_H
#define VLHOSTKIT_SECUREDIALOG_H

#include <vlafx/dialog.h>
#include <vlhostkit/securestring.h>

/// Moves text between edit controls and CSecStr members in a way that leaves no secret in the control: its text is
/// overwritten with spaces before other text goes in, and all secure controls are blanked when the dialog ends, by OK,
/// Cancel or EndDialog. The members keep their text for the dialog's owner, and wipe it when they end.
///
///     class CLogOn : public CSecureDialog {
///      public:
///       CLogOn() : CSecureDialog(IDD_LOG_ON, nullptr) {}
///       CSecStr m_password;
///      protected:
///       BOOL OnInitDialog() override {
///         OnInitDialogSecure();   // in place of CDialog::OnInitDialog
///         return TRUE;
///       }
///       void DoDataExchange(CDataExchange* exchange) override { DDX_Text(exchange, IDC_PASSWORD, m_password); }
///     };
///
/// A function DDX_Text for other types is reached as ::DDX_Text in there. docs/secrets.md tells what a control's own
/// memory can hold for all that.
///
/// What a dialog does (OnInitDialogSecure, EndDialog, DestroyWindow, OnOK, OnCancel, DDX_Text) leaves a record with its
/// name on entry and one on exit, but for the case told at OnOK, and without the exit record where an exception passes.
/// Exceptions of CSecStr, of memory and of the framework pass; temporary copies are wiped then, too. CDialog cancels a
/// modal dialog then, which blanks its controls unless that exchange fails, too. All members run on the thread of the
/// dialog.
class VLHOSTKIT_API CSecureDialog : public CDialog {
  DECLARE_DYNAMIC(CSecureDialog)
  DECLARE_MESSAGE_MAP()

 public:
  /// The dialog's template by name (copied) or id, and its parent, which may be null.
  CSecureDialog(const wchar_t* templateName, CWnd* parent);
  CSecureDialog(UINT templateId, CWnd* parent);
  ~CSecureDialog() override;

  /// Destroys the window, with the result of CWnd::DestroyWindow. Blanks nothing: that belongs to EndDialog.
  int DestroyWindow() override;

 protected:
  /// Reads the controls into the members and ends with 1. If that exchange fails, the dialog stays open as it is, and
  /// there is no exit record.
  void OnOK() override;
  /// Ends with 2; nothing is read.
  void OnCancel() override;

 public:
  /// Called by the derived dialog's OnInitDialog in place of CDialog::OnInitDialog, which it runs: without it a control
  /// is overwritten to its own length only, and a second run shows no text. A dialog whose first exchange fails ends
  /// with -1.
  virtual void OnInitDialogSecure();
  /// Blanks the secure controls by an exchange that shows no text, then ends the dialog with `result`. It hides
  /// CDialog::EndDialog, which blanks nothing: don't call it through a CDialog*.
  virtual void EndDialog(int result);

 protected:
  /// The exchange of one secret field, for DoDataExchange. From the control: `value` is wiped, then filled straight
  /// from the control. To the control: its text is overwritten with spaces first, as many as it has characters; 1024
  /// for the first control of the first exchange, so that its memory is large enough from then on. Then it gets the
  /// text of `value`, unless the dialog is ending.
  void DDX_Text(CDataExchange* exchange, int id, CSecStr& value);

 private:
  void SecureCleanUp();

  /// Until the first text goes to a control.
  bool m_bFirstExchange = false;
  /// From the dialog's end until its next beginning: controls are blanked and get no text.
  bool m_bCleaningUp = false;
};

#endif
