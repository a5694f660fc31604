// A log-on dialog that a test drives step by step, from within its message loop.
#ifndef DIALOG_FIXTURE_H
#define DIALOG_FIXTURE_H

#include <support/machinetest.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include <vlafx/dialog.h>
#include <vlafx/exceptions.h>
#include <vlhostkit/vlhostkit.h>

#include "resources.h"

namespace dialog {

using Step = std::function<void()>;

inline std::wstring spaces(std::size_t count) {
  return std::wstring(count, L' ');  // NOLINT(modernize-return-braced-init-list): would be two characters
}

/// What both kinds of test dialogs do beside their exchange. `steps` run one after the other, each as a message of the
/// loop; after the last one the dialog ends with 99, unless a step has ended it.
template <class Base>
class Driven : public Base {
 public:
  using Base::Base;

  std::vector<Step> steps;
  std::map<int, std::vector<std::wstring>> shown;  ///< what each control held, change by change
  bool watching = false;                           ///< whether `shown` grows

  std::wstring held(int id) const {
    wchar_t text[2048];
    return {text, text + GetWindowTextW(control(id), text, 2048)};
  }
  HWND control(int id) const {
    HWND found = nullptr;
    this->GetDlgItem(id, &found);
    return found;
  }
  /// As a user does who marks all first.
  void type(int id, const std::wstring& text) {
    SendMessageW(control(id), EM_SETSEL, 0, -1);
    for (const wchar_t character : text) {
      SendMessageW(control(id), WM_CHAR, character, 0);
    }
  }
  void press(int id) { SendMessageW(control(id), BM_CLICK, 0, 0); }

 protected:
  void begin() {
    step_ = 0;
    PostMessageW(this->m_hWnd, WM_APP, 0, 0);
  }
  BOOL OnWndMsg(UINT message, WPARAM first, LPARAM second, LRESULT* result) override {
    if (message == WM_APP) {
      *result = 0;
      if (step_ == steps.size()) {
        this->CDialog::EndDialog(99);
        return TRUE;
      }
      PostMessageW(this->m_hWnd, WM_APP, 0, 0);
      steps[step_++]();
      return TRUE;
    }
    if (message == WM_COMMAND && HIWORD(first) == EN_CHANGE && watching) {
      shown[LOWORD(first)].push_back(held(LOWORD(first)));
    }
    return Base::OnWndMsg(message, first, second, result);
  }

 private:
  std::size_t step_ = 0;
};

/// With two secret fields.
class SecretForm : public Driven<CSecureDialog> {
 public:
  SecretForm() : Driven(IDD_LOG_ON, nullptr) {}

  CSecStr password;
  CSecStr second;

 protected:
  BOOL OnInitDialog() override {
    OnInitDialogSecure();
    begin();
    return TRUE;
  }
  void DoDataExchange(CDataExchange* exchange) override {
    DDX_Text(exchange, IDC_PASSWORD, password);
    DDX_Text(exchange, IDC_SECOND, second);
  }
};

#ifndef _WIN32
/// Gives the machine the dialogs of the resource script.
inline void describeDialogs() {
  vlplatform::machine().windows().setDialog(nullptr, IDD_LOG_ON,
                                            {L"Log on",
                                             {{L"Edit", IDC_USER, L"", 0},
                                              {L"Edit", IDC_PASSWORD, L"", ES_PASSWORD},
                                              {L"Edit", IDC_SECOND, L"", ES_PASSWORD},
                                              {L"Button", IDOK, L"OK", 0},
                                              {L"Button", IDCANCEL, L"Cancel", 0},
                                              {L"Button", IDC_CLEAR, L"Clear", 0}}});
  vlplatform::machine().windows().setDialog(nullptr, L"NAMED", {L"By name", {{L"Edit", IDC_USER, L"", 0}}});
}
#endif

/// With the dialogs of the resource script, on both targets.
class DialogTest : public support::MachineTest {
 protected:
#ifndef _WIN32
  void SetUp() override {
    MachineTest::SetUp();
    describeDialogs();
  }
#endif
};

}  // namespace dialog

#endif
