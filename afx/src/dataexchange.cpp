#include <vlafx/dataexchange.h>

#include <vlafx/exceptions.h>

HWND CDataExchange::PrepareCtrl(int id) {
  m_pDlgWnd->GetDlgItem(id, &m_hWndLastControl);
  if (m_hWndLastControl == nullptr) {
    AfxThrowInvalidArgException();
  }
  m_bEditLastControl = FALSE;
  return m_hWndLastControl;
}

HWND CDataExchange::PrepareEditCtrl(int id) {
  PrepareCtrl(id);
  m_bEditLastControl = TRUE;
  return m_hWndLastControl;
}

// NOLINTNEXTLINE(readability-make-member-function-const): it ends the exchange
void CDataExchange::Fail() {
  if (m_hWndLastControl != nullptr) {
    SetFocus(m_hWndLastControl);
    if (m_bEditLastControl) {
      SendMessageW(m_hWndLastControl, EM_SETSEL, 0, -1);
    }
  }
  AfxThrowUserException();
}

void DDX_Text(CDataExchange* exchange, int id, CStringT<wchar_t>& value) {
  const HWND control = exchange->PrepareEditCtrl(id);
  if (exchange->m_bSaveAndValidate) {
    const int length = GetWindowTextLengthW(control);
    wchar_t* const text = value.GetBuffer(length + 1);  // room that may be written to, for an empty text also
    value.ReleaseBuffer(GetWindowTextW(control, text, length + 1));
  } else {
    SetWindowTextW(control, value.GetString());
  }
}

void DDV_MaxChars(CDataExchange* exchange, const CStringT<wchar_t>& value, int chars) {
  if (!exchange->m_bSaveAndValidate) {
    // The DDX call before has made its control the last one.
    SendMessageW(exchange->m_hWndLastControl, EM_LIMITTEXT, static_cast<WPARAM>(chars), 0);
  } else if (value.GetLength() > chars) {
    exchange->Fail();
  }
}
