/// `CWnd`, an object with a window.
#ifndef VLAFX_WND_H
#define VLAFX_WND_H

#include <vlafx/cmdtarget.h>

class CDataExchange;

/// For the thread that made the window, as the window itself is.
class VLAFX_API CWnd : public CCmdTarget {
  DECLARE_DYNAMIC(CWnd)
  DECLARE_MESSAGE_MAP()

 public:
  CWnd() = default;
  ~CWnd() override;

  /// Null while there is no window.
  HWND GetSafeHwnd() const { return m_hWnd; }
  /// Destroys the window, which ends with PostNcDestroy. FALSE without one, and where the platform refuses (last
  /// error).
  virtual BOOL DestroyWindow();
  /// The handle of the control, null if there is none.
  void GetDlgItem(int id, HWND* control) const;

  /// Runs DoDataExchange: from the controls to the members, or from the members to the controls. FALSE if the exchange
  /// called CDataExchange::Fail, or without a window; other exceptions pass. What the controls notify meanwhile is not
  /// handled.
  BOOL UpdateData(BOOL saveAndValidate = TRUE);

  /// Null while there is no window.
  HWND m_hWnd = nullptr;

 protected:
  /// The exchange of each field, one DDX_ call after the other. Does nothing here.
  virtual void DoDataExchange(CDataExchange* exchange);
  /// Runs the handler of a WM_COMMAND.
  virtual BOOL OnCommand(WPARAM command, LPARAM control);
  /// Runs the handler of a message. FALSE if there is none; otherwise `result` is the message's result.
  virtual BOOL OnWndMsg(UINT message, WPARAM first, LPARAM second, LRESULT* result);
  /// The last that the object hears of its window, which is gone by then. An object that lives as long as its window
  /// deletes itself here.
  virtual void PostNcDestroy();

 private:
  bool exchanging_ = false;
};

#endif
