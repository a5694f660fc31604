// Dialogs, their controls and the messages of windows.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <sstream>
#include <thread>

#include <memoryscan/memoryscan.h>
#include <support/machinetest.h>
#include <vlplatform/windows.h>

namespace {

class DialogsTest : public support::MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
    std::vector<vlplatform::ControlTemplate> list{{L"Static", 99, L"Label", 0},
                                                  {L"EDIT", 100, L"start", WS_TABSTOP},
                                                  {L"Edit", 101, L"fixed", ES_READONLY},
                                                  {L"Button", IDCANCEL, L"Cancel", 0}};
    machine().windows().setDialog(nullptr, 7, {L"Title", list});
    react = [](HWND window, UINT message, WPARAM wParam, LPARAM) {
      SetWindowLongPtrW(window, DWLP_MSGRESULT, 77);
      return message == WM_INITDIALOG || wParam == 1;
    };
  }
  // Notes "message:control/code " and whether there are no controls any more.
  static INT_PTR procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto first = reinterpret_cast<WPARAM>(GetDlgItem(dialog, 100));
    const int item = message != WM_INITDIALOG ? LOWORD(wParam) : wParam == first ? 100 : 0;
    seen << message << ':' << item << '/' << HIWORD(wParam) << (GetDlgItem(dialog, 99) != nullptr ? " " : "- ");
    return react(dialog, message, wParam, lParam);
  }
  static std::string taken() { return std::exchange(seen, {}).str(); }
  static HWND make() { return CreateDialogParamW(nullptr, L"#7", nullptr, procedure, 5); }
  static INT_PTR modal(HWND owner = nullptr) { return DialogBoxParamW(nullptr, L"#7", owner, procedure, 5); }
  static std::wstring textOf(HWND window) {
    wchar_t text[8] = L"";
    EXPECT_EQ(GetWindowTextW(window, text, 8), std::min(7, GetWindowTextLengthW(window)));
    return text;
  }
  static inline std::ostringstream seen;
  static inline std::function<bool(HWND, UINT, WPARAM, LPARAM)> react;
};

TEST_F(DialogsTest, AModelessDialogLivesUntilItIsDestroyed) {
  const HWND dialog = make();
  EXPECT_EQ(taken(), "272:100/0 273:100/256 ");
  const HWND edit = GetFocus();
  EXPECT_EQ(textOf(dialog) + textOf(GetDlgItem(dialog, 99)), L"TitleLabel");
  taken();
  EXPECT_TRUE(SendMessageW(dialog, WM_APP, 1, 0) == 77 && SendMessageW(dialog, WM_APP, 0, 0) == 0);
  EXPECT_TRUE(EndDialog(dialog, 3) && IsWindow(dialog) && PostMessageW(edit, WM_APP, 0, 0));
  const HWND owned = CreateDialogParamW(nullptr, MAKEINTRESOURCEW(7), edit, nullptr, 0);
  EXPECT_TRUE(IsWindow(owned) && DestroyWindow(dialog));
  EXPECT_EQ(taken(), "32768:1/0 32768:0/0 273:100/512 2:0/0 130:0/0- ");
  MSG left;
  EXPECT_FALSE(IsWindow(dialog) || IsWindow(edit) || IsWindow(owned) || PeekMessageW(&left, nullptr, 0, 0, PM_REMOVE));
}

TEST_F(DialogsTest, AModalDialogRunsUntilItEnds) {
  // Ends in this message, or by WM_CLOSE or WM_QUIT; destroyed instead of ended; the result.
  constexpr std::tuple<UINT, bool, INT_PTR> kRows[] = {{WM_INITDIALOG, false, 44}, {WM_INITDIALOG, true, -1},
                                                       {WM_APP, false, 44},        {WM_APP, true, 0},
                                                       {WM_CLOSE, false, 44},      {WM_QUIT, false, IDOK}};
  for (const auto& [ends, destroys, result] : kRows) {
    std::jthread other;
    react = [&, ends = ends, destroys = destroys](HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
      if (message == WM_INITDIALOG && lParam == 5) {
        ends == WM_QUIT ? PostQuitMessage(3) : void(other = std::jthread([=] { PostMessageW(dialog, ends, 0, 0); }));
      }
      const bool now = ends == WM_CLOSE ? message == WM_COMMAND && LOWORD(wParam) == IDCANCEL : message == ends;
      return now && (destroys ? DestroyWindow(dialog) : EndDialog(dialog, 44)) != FALSE;
    };
    EXPECT_EQ(modal(), result) << ends << ' ' << destroys;
    MSG message;
    EXPECT_EQ(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE), ends == WM_QUIT);
  }
}

TEST_F(DialogsTest, EditControlsTakeWhatIsTyped) {
  const std::string change = "273:100/1024 273:100/768 ";
  const std::tuple<int, int, int, int, std::wstring, std::wstring, int, std::string> rows[] = {
      {100, 5, 5, 0, L"a\t\033\177b\b", L"starta", 6, change + change + change},
      {100, 0, -1, 0, L"x", L"x", 1, change},
      {100, 2, 2, 0, L"\b\b\b", L"art", 0, change + change},
      {100, 1, 1, 6, L"xy", L"sxtart", 2, change + "273:100/1281 "},
      {100, 3, 1, 5, L"x", L"sxrt", 2, change},
      {101, 0, -1, 0, L"x\b", L"fixed", 5, ""}};
  for (const auto& [item, from, to, limit, typed, text, caret, notices] : rows) {
    const HWND dialog = make();
    const HWND edit = GetDlgItem(dialog, item);
    SendMessageW(edit, EM_LIMITTEXT, static_cast<WPARAM>(limit), 0);
    SendMessageW(edit, EM_SETSEL, static_cast<WPARAM>(from), to);
    taken();
    std::ranges::for_each(typed, [&](wchar_t c) { SendMessageW(edit, WM_CHAR, static_cast<WPARAM>(c), 0); });
    EXPECT_EQ(taken(), notices);
    EXPECT_EQ(textOf(edit), text);
    SendMessageW(edit, EM_SETSEL, static_cast<WPARAM>(-1), 0);
    EXPECT_EQ(SendMessageW(edit, EM_GETSEL, 0, 0), caret * 0x10001);
    EXPECT_TRUE(SetWindowTextW(edit, L"beyond the limit") && textOf(edit) == L"beyond ");
    EXPECT_EQ(taken(), item == 100 ? change : "273:101/1024 273:101/768 ");
    SendMessageW(GetDlgItem(dialog, IDCANCEL), BM_CLICK, 0, 0);
    EXPECT_EQ(taken(), "273:100/512 273:2/0 ");
    DestroyWindow(dialog);
  }
}

TEST_F(DialogsTest, TextsLeaveNoCopies) {
  const memoryscan::Secret secret;
  for (const bool typed : {true, false}) {
    memoryscan::Revealed<wchar_t> text(secret);
    const HWND dialog = make();
    EXPECT_TRUE(typed || SetWindowTextW(GetFocus(), text.get()));
    std::for_each_n(text.get(), typed * memoryscan::Secret::kLength,
                    [](wchar_t c) { PostMessageW(GetFocus(), WM_CHAR, WPARAM(c), 0); });
    for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE); DispatchMessageW(&message)) {
    }
    text.end();
    memoryscan::scrubDeadStack();
    EXPECT_EQ(scanMemory(secret).count, 1u) << typed;
    DestroyWindow(dialog);
    EXPECT_EQ(scanMemory(secret).count, 0u) << typed;
  }
}

TEST_F(DialogsTest, FiltersFaultsAndRefusals) {
  const HWND dialog = make();
  HWND target = dialog;
  MSG found{}, message{nullptr, WM_SETTEXT, 0, 0, 0, {}};
  const auto peek = [&] { return PeekMessageW(&found, target, WM_APP, WM_APP, PM_REMOVE); };
  std::ranges::for_each(std::initializer_list<HWND>{nullptr, GetFocus(), dialog},
                        [](HWND to) { PostMessageW(to, WM_APP, 0, 0); });
  EXPECT_TRUE(peek() && found.hwnd != nullptr && peek() && !peek());  // its own and its controls'
  target = reinterpret_cast<HWND>(-1);
  EXPECT_TRUE(peek() && found.hwnd == nullptr && !peek());
  machine().windows().setUser([](HWND modalDialog) { EndDialog(modalDialog, 9); });
  const std::function<INT_PTR()> calls[] = {
      [&] { return IsWindow(target) + (GetDlgItem(target, 99) != nullptr); },
      [&] { return PostMessageW(target, WM_APP, 0, 0); },
      [&] { return CreateDialogParamW(nullptr, L"#7", target, nullptr, 0) != nullptr; },
      [&] { return modal(target) == 9; },
      [&] { return EndDialog(target, 0) + DestroyWindow(target) + (SetFocus(target) != nullptr); },
      [&] { return textOf(target).size() + SetWindowTextW(target, L""); },
      [&] { return SendMessageW(target, WM_SETTEXT, 0, 0) + DispatchMessageW(&message); },
      [&] { return GetMessageW(&found, target, 0, 0) + 1; },
      [&] { return GetWindowLongPtrW(target, DWLP_DLGPROC) + SetWindowLongPtrW(target, DWLP_USER, 1); }};
  for (const auto& call : calls) {
    const auto expect = [&](HWND window, DWORD code) {
      target = message.hwnd = window;
      SetLastError(ERROR_SUCCESS);
      EXPECT_EQ(call() != 0 ? ERROR_SUCCESS : GetLastError(), code) << &call - calls;
    };
    faults().failAny(1, vlplatform::FaultSpan::forEver);
    expect(dialog, vlplatform::Faults::kDefaultCode);
    faults().watch();
    expect(reinterpret_cast<HWND>(0x44), ERROR_INVALID_WINDOW_HANDLE);
    std::thread(expect, dialog, &call < calls + 4 ? ERROR_SUCCESS : ERROR_ACCESS_DENIED).join();  // four: any thread
  }
  EXPECT_TRUE(IsWindow(dialog) && DestroyWindow(dialog));
  EXPECT_TRUE(FindResourceW(nullptr, L"x", RT_DIALOG) == nullptr && GetLastError() == ERROR_RESOURCE_NAME_NOT_FOUND);
}

}  // namespace
