#include <vlafx/wnd.h>

#include <vlafx/dataexchange.h>
#include <vlafx/exceptions.h>

IMPLEMENT_DYNAMIC(CWnd, CCmdTarget)

BEGIN_MESSAGE_MAP(CWnd, CCmdTarget)
END_MESSAGE_MAP()

CWnd::~CWnd() = default;

BOOL CWnd::DestroyWindow() {
  return m_hWnd != nullptr && ::DestroyWindow(m_hWnd);
}

void CWnd::GetDlgItem(int id, HWND* control) const {
  *control = ::GetDlgItem(m_hWnd, id);
}

BOOL CWnd::UpdateData(BOOL saveAndValidate) {
  if (m_hWnd == nullptr) {
    return FALSE;
  }
  // A control that gets its text notifies its dialog of the change, which no user made.
  struct Exchanging {
    explicit Exchanging(bool& mark) : mark_(mark), before_(mark) { mark_ = true; }
    ~Exchanging() { mark_ = before_; }
    bool& mark_;
    const bool before_;
  } const exchanging(exchanging_);
  CDataExchange exchange(this, saveAndValidate);
  try {
    DoDataExchange(&exchange);
  } catch (CUserException* refusal) {
    refusal->Delete();
    return FALSE;
  }
  return TRUE;
}

void CWnd::DoDataExchange(CDataExchange*) {}

BOOL CWnd::OnCommand(WPARAM command, LPARAM control) {
  if (control == 0) {
    return OnCmdMsg(LOWORD(command), 0);  // of a menu or a key: they have no notification codes
  }
  return !exchanging_ && OnCmdMsg(LOWORD(command), HIWORD(command));
}

BOOL CWnd::OnWndMsg(UINT message, WPARAM first, LPARAM second, LRESULT* result) {
  if (message == WM_COMMAND) {
    *result = 0;
    return OnCommand(first, second);
  }
  const AFX_MSGMAP_ENTRY* const entry = findHandler(message, 0, 0);
  if (entry == nullptr) {
    return FALSE;
  }
  *result = entry->pfn(this, first, second);
  return TRUE;
}

void CWnd::PostNcDestroy() {}
