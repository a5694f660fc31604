/// `CDialog`, a dialog made from a template of the program's resources.
#ifndef VLAFX_DIALOG_H
#define VLAFX_DIALOG_H

#include <exception>
#include <string>

#include <vlafx/dataexchange.h>
#include <vlafx/wnd.h>

/// Derive, give the fields in DoDataExchange, and run:
///
///     class CLogOn : public CDialog {
///      public:
///       CLogOn() : CDialog(IDD_LOG_ON) {}
///       CStringT<wchar_t> m_user;
///      protected:
///       void DoDataExchange(CDataExchange* exchange) override { DDX_Text(exchange, IDC_USER, m_user); }
///     };
///     CLogOn dialog;
///     if (dialog.DoModal() == IDOK) { logOn(dialog.m_user.GetString()); }
///
/// The template is looked for as AfxFindDialogResourceHandle does. The buttons IDOK and IDCANCEL, the Escape key and
/// the window's close box reach OnOK and OnCancel. The window's DWLP_USER value belongs to this class.
///
/// Exceptions do not pass through the platform's code. The first one that leaves a handler of a modal dialog cancels
/// the dialog (OnCancel runs; what that throws ends there) and leaves DoModal; of a modeless one, that of OnInitDialog
/// does the same to Create, and a later one ends there, since nobody is left to take it, with the dialog open.
///
/// For one thread. An object shows one dialog at a time, and can show it again.
class VLAFX_API CDialog : public CWnd {
  DECLARE_DYNAMIC(CDialog)
  DECLARE_MESSAGE_MAP()

 public:
  /// For Create.
  CDialog() = default;
  /// For DoModal. The name is copied; `parent`, which may be null, is not.
  explicit CDialog(const wchar_t* templateName, CWnd* parent = nullptr);
  explicit CDialog(UINT templateId, CWnd* parent = nullptr);
  /// Destroys the window of a modeless dialog that is still open; members of derived classes are gone by then.
  ~CDialog() override;

  /// Shows the dialog until EndDialog, and gives its result; IDCANCEL if the thread is asked to quit meanwhile, 0 if
  /// others destroy the window or the parent is gone. -1 if the platform can't make it (last error), or while the
  /// object already has a window. The object is not deleted meanwhile.
  virtual INT_PTR DoModal();
  /// Makes the dialog and leaves it open. FALSE if the platform can't make it (last error), if OnInitDialog has ended
  /// or destroyed it, or while the object already has a window. The thread's message loop runs it; OnOK and OnCancel
  /// only hide it, so override them to call DestroyWindow.
  BOOL Create(const wchar_t* templateName, CWnd* parent = nullptr);
  BOOL Create(UINT templateId, CWnd* parent = nullptr);

  /// The dialog's initialisation: moves the members to the controls. A failed exchange ends the dialog with -1. TRUE
  /// lets the platform give the input to the first control.
  virtual BOOL OnInitDialog();
  /// Ends a modal dialog with `result`, as soon as the message at hand is handled; hides a modeless one.
  void EndDialog(int result);

 protected:
  /// OK: moves the controls to the members and, unless that fails, ends with IDOK.
  virtual void OnOK();
  /// Ends with IDCANCEL.
  virtual void OnCancel();

 private:
  /// A call of DoModal or Create, which outlives what its handlers do to the object.
  struct Run {
    bool modal = false;
    bool ended = false;  ///< by EndDialog
    bool gone = false;   ///< the window, and perhaps the object
    std::exception_ptr failure{};
  };

  static INT_PTR CALLBACK procedure(HWND window, UINT message, WPARAM first, LPARAM second);
  INT_PTR handle(HWND window, UINT message, WPARAM first, LPARAM second);
  static void cancel(HWND window, const Run& run);

  std::wstring name_;
  const wchar_t* template_ = nullptr;
  CWnd* parent_ = nullptr;
  Run* run_ = nullptr;  ///< null while a modeless dialog is open
};

#endif
