/// The exchange between a dialog's members and its controls.
#ifndef VLAFX_DATAEXCHANGE_H
#define VLAFX_DATAEXCHANGE_H

#include <vlafx/string.h>
#include <vlafx/wnd.h>

/// One exchange, made by CWnd::UpdateData.
class VLAFX_API CDataExchange {
 public:
  /// `dialog` lives longer than the exchange.
  CDataExchange(CWnd* dialog, BOOL saveAndValidate) : m_bSaveAndValidate(saveAndValidate), m_pDlgWnd(dialog) {}

  /// Nonzero: from the controls to the members.
  BOOL m_bSaveAndValidate;
  /// Whose exchange it is.
  CWnd* m_pDlgWnd;
  /// The last control that was prepared, null before the first, and whether that was an edit control.
  HWND m_hWndLastControl = nullptr;
  BOOL m_bEditLastControl = FALSE;

  /// The handle of the control, which becomes the one that Fail goes back to. Throw CInvalidArgException* if the dialog
  /// has no such control.
  HWND PrepareCtrl(int id);
  HWND PrepareEditCtrl(int id);
  /// Ends the exchange, whose UpdateData gives FALSE then: the input goes to the last control, with the text of an edit
  /// control marked. Throws CUserException*.
  [[noreturn]] void Fail();
};

/// Moves an edit control's text. Not for secrets: neither the control nor the string is overwritten.
VLAFX_API void DDX_Text(CDataExchange* exchange, int id, CStringT<wchar_t>& value);
/// Behind the DDX_Text of the same control: no more than `chars` can be typed there, and a longer text fails.
VLAFX_API void DDV_MaxChars(CDataExchange* exchange, const CStringT<wchar_t>& value, int chars);

#endif
