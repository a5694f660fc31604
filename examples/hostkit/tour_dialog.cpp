#include <string>

#include <dialog/logon.h>
#include <dialog/resources.h>
#include <memoryscan/memoryscan.h>

#include "tour.h"

namespace {

using memoryscan::Secret;

// Fills itself in, as a user would: character by character.
class SelfTypingDialog : public LogOnDialog {
 public:
  SelfTypingDialog(TourPage& page, const Secret& typed) : page_(page), typed_(typed) {}

  void EndDialog(int result) override {
    LogOnDialog::EndDialog(result);
    wchar_t left[2 * Secret::kLength] = {};
    const int length = GetWindowTextW(control(IDC_PASSWORD), left, static_cast<int>(std::size(left)));
    const bool blank =
        std::wstring_view(left, static_cast<std::size_t>(length)).find_first_not_of(L' ') == std::wstring_view::npos;
    page_.fact("The password field afterwards",
               (blank ? "holds " : "does not only hold ") + std::to_string(length) + " spaces");
  }

 protected:
  BOOL OnInitDialog() override {
    LogOnDialog::OnInitDialog();
    SetWindowTextW(control(IDC_USER), L"alice");
    type(IDC_PASSWORD, 0, Secret::kLength);
    type(IDC_REPEAT, 0, kTooFew);
    PostMessageW(control(IDOK), BM_CLICK, 0, 0);
    PostMessageW(m_hWnd, WM_APP, 0, 0);
    return TRUE;
  }
  // Behind the first click, which the dialog refuses: the two passwords differ.
  LRESULT OnRefused(WPARAM, LPARAM) {
    wchar_t hint[100] = {};
    GetWindowTextW(control(IDC_HINT), hint, static_cast<int>(std::size(hint)));
    const std::wstring said = hint;
    page_.fact("Two different passwords", "\"" + std::string(said.begin(), said.end()) + "\"");
    // Goes on behind what is there: a text that is marked and typed over would go to the control's memory for Undo.
    SendMessageW(control(IDC_REPEAT), EM_SETSEL, kTooFew, kTooFew);
    type(IDC_REPEAT, kTooFew, Secret::kLength);
    PostMessageW(control(IDOK), BM_CLICK, 0, 0);
    return 0;
  }
  DECLARE_MESSAGE_MAP()

 private:
  HWND control(int id) const {
    HWND found = nullptr;
    GetDlgItem(id, &found);
    return found;
  }
  void type(int id, std::size_t from, std::size_t to) {
    memoryscan::Revealed<wchar_t> text(typed_);
    for (std::size_t i = from; i < to; ++i) {
      SendMessageW(control(id), WM_CHAR, text.get()[i], 0);
    }
  }

  static constexpr std::size_t kTooFew = 20;

  TourPage& page_;
  const Secret& typed_;
};

BEGIN_MESSAGE_MAP(SelfTypingDialog, LogOnDialog)
ON_MESSAGE(WM_APP, OnRefused)
END_MESSAGE_MAP()

[[gnu::noinline]] void logOn(TourPage& page, const Secret& typed) {
  SelfTypingDialog dialog(page, typed);
  const INT_PTR result = dialog.DoModal();
  if (result != IDOK) {
    page.missing("The dialog", GetLastError());
    return;
  }
  page.fact("The dialog's member", std::to_string(dialog.m_password.GetLength()) + " characters");
  page.fact("While the member is held", copiesFound(typed));
}

}  // namespace

void tourDialog(TourPage& page) {
  page.title("Secret text: a log-on dialog that fills itself in");
  prepareScreen();
  const Secret typed;
  logOn(page, typed);
  page.fact("Let go", copiesFound(typed));
}
