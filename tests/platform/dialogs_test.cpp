// Dialogs, their controls and the messages of windows.
#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <thread>

#include <memoryscan/memoryscan.h>
#include <support/machinetest.h>
#include <vlplatform/windows.h>

namespace {

const LPCWSTR kDialog = MAKEINTRESOURCEW(7);

class DialogsTest : public support::MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
    machine().windows().setDialog(nullptr, 7,
                                  {L"Title",
                                   {{L"Static", 99, L"Label", 0},
                                    {L"EDIT", 100, L"start", WS_TABSTOP},
                                    {L"Edit", 101, L"fixed", WS_TABSTOP | ES_READONLY},
                                    {L"Button", IDCANCEL, L"Cancel", WS_TABSTOP}}});
    react = [](HWND, UINT message, WPARAM, LPARAM) { return message == WM_INITDIALOG; };
  }
  // Notes the message, the control with its code, and whether the controls are there.
  static INT_PTR procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    const int item = message == WM_INITDIALOG ? GetDlgCtrlID(reinterpret_cast<HWND>(wParam)) : LOWORD(wParam);
    seen << std::hex << message << ':' << std::dec << item;
    seen << (message == WM_COMMAND ? "/" + std::to_string(HIWORD(wParam)) : "");
    seen << (GetDlgItem(dialog, 99) != nullptr ? " " : "- ");
    return react(dialog, message, wParam, lParam);
  }
  static std::string taken() { return std::exchange(seen, {}).str(); }
  static HWND make() { return CreateDialogParamW(nullptr, kDialog, nullptr, procedure, 5); }
  static INT_PTR modal(HWND owner = nullptr) { return DialogBoxParamW(nullptr, kDialog, owner, procedure, 5); }
  static std::wstring textOf(HWND window) {
    wchar_t text[8];
    EXPECT_EQ(GetWindowTextW(window, text, 8), std::min(7, GetWindowTextLengthW(window)));
    return text;
  }
  static inline std::ostringstream seen;
  static inline std::function<bool(HWND, UINT, WPARAM, LPARAM)> react;
};

TEST_F(DialogsTest, AModelessDialogLivesUntilItIsDestroyed) {
  const HWND dialog = make();
  const HWND edit = GetDlgItem(dialog, 100);
  EXPECT_EQ(taken(), "110:100 111:100/256 ");
  EXPECT_EQ(GetFocus(), edit);
  EXPECT_EQ(GetWindowLongPtrW(edit, GWL_STYLE), LONG_PTR{WS_CHILD | WS_TABSTOP});
  EXPECT_EQ(textOf(dialog) + textOf(GetDlgItem(dialog, 99)), L"TitleLabel");
  react = [](HWND window, UINT message, WPARAM wParam, LPARAM) {
    SetWindowLongPtrW(window, DWLP_MSGRESULT, 77);
    return message == WM_APP && wParam == 1;
  };
  EXPECT_EQ(SendMessageW(dialog, WM_APP, 1, 0), 77);
  EXPECT_EQ(SendMessageW(dialog, WM_APP, 0, 0), 0);
  EXPECT_TRUE(EndDialog(dialog, 3) && IsWindow(dialog) && PostMessageW(edit, WM_APP, 0, 0));
  const HWND owned = CreateDialogParamW(nullptr, L"#7", edit, nullptr, 0);
  EXPECT_EQ(GetParent(owned), GetParent(edit));
  taken();
  EXPECT_TRUE(DestroyWindow(dialog));
  EXPECT_EQ(taken(), "111:100/512 2:0 82:0- ");
  MSG left;
  EXPECT_FALSE(IsWindow(dialog) || IsWindow(edit) || IsWindow(owned) || PeekMessageW(&left, nullptr, 0, 0, PM_REMOVE));
  std::thread([] { EXPECT_TRUE(IsWindow(make())); }).join();
  EXPECT_EQ(taken(), "110:100 ");  // ends with its thread, and is told nothing
}

TEST_F(DialogsTest, AModalDialogRunsUntilItEnds) {
  struct Row {
    UINT message;  // in which it ends, or WM_CLOSE, WM_QUIT
    bool destroys;
    INT_PTR result;
  };
  constexpr Row kRows[] = {{WM_INITDIALOG, false, 44}, {WM_INITDIALOG, true, -1}, {WM_APP, false, 44},
                           {WM_APP, true, 0},          {WM_CLOSE, false, 44},     {WM_QUIT, false, IDOK}};
  for (const auto& [ends, destroys, result] : kRows) {
    std::jthread other;
    react = [&](HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
      if (message == WM_INITDIALOG) {
        EXPECT_EQ(lParam, 5);
        ends == WM_QUIT ? PostQuitMessage(3) : void(other = std::jthread([=] { PostMessageW(dialog, ends, 0, 0); }));
      }
      if (ends == WM_CLOSE ? message == WM_COMMAND && LOWORD(wParam) == IDCANCEL : message == ends) {
        EXPECT_TRUE(destroys ? DestroyWindow(dialog) : EndDialog(dialog, 44));
      }
      return false;
    };
    EXPECT_EQ(modal(), result) << ends << ' ' << destroys;
    MSG message;
    EXPECT_EQ(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE), ends == WM_QUIT);
    expectNothingOpen();
  }
  react = [](HWND, UINT, WPARAM, LPARAM) { return false; };
  machine().windows().setUser([](HWND dialog) { EndDialog(dialog, 9); });
  EXPECT_EQ(modal(), 9);
}

TEST_F(DialogsTest, EditControlsTakeWhatIsTyped) {
  struct Row {
    int item, from, to, limit;
    const wchar_t *typed, *text;
    int caret;
    std::string notices;
  };
  const std::string change = "111:100/1024 111:100/768 ";
  for (const Row& row : {Row{100, 5, 5, 0, L"ab", L"startab", 7, change + change},
                         {100, 0, -1, 0, L"x", L"x", 1, change},
                         {100, 4, 1, 0, L"\b", L"st", 1, change},
                         {100, 2, 2, 0, L"\b\b\b", L"art", 0, change + change},
                         {100, 99, 99, 0, L"\t\x1B\x7F", L"start", 5, ""},
                         {100, 1, 1, 6, L"xy", L"sxtart", 2, change + "111:100/1281 "},
                         {100, 1, 3, 5, L"x", L"sxrt", 2, change},
                         {101, 0, -1, 0, L"x\b", L"fixed", 5, ""}}) {
    const HWND dialog = make();
    const HWND edit = GetDlgItem(dialog, row.item);
    SendMessageW(edit, EM_LIMITTEXT, static_cast<WPARAM>(row.limit), 0);
    SendMessageW(edit, EM_SETSEL, static_cast<WPARAM>(row.from), row.to);
    taken();
    for (const wchar_t* c = row.typed; *c != L'\0'; ++c) {
      SendMessageW(edit, WM_CHAR, static_cast<WPARAM>(*c), 0);
    }
    EXPECT_EQ(taken(), row.notices);
    EXPECT_EQ(textOf(edit), row.text);
    SendMessageW(edit, EM_SETSEL, static_cast<WPARAM>(-1), 0);
    EXPECT_EQ(SendMessageW(edit, EM_GETSEL, 0, 0), row.caret * 0x10001);
    EXPECT_TRUE(SetWindowTextW(edit, L"beyond the limit"));
    EXPECT_EQ(textOf(edit), L"beyond ");
    EXPECT_EQ(taken(), row.item == 100 ? change : "111:101/1024 111:101/768 ");
    SendMessageW(GetDlgItem(dialog, IDCANCEL), BM_CLICK, 0, 0);
    EXPECT_EQ(taken(), "111:100/512 111:2/0 ");
    EXPECT_TRUE(DestroyWindow(dialog));
  }
}

TEST_F(DialogsTest, TextsLeaveNoCopies) {
  const memoryscan::Secret secret;
  for (const bool typed : {true, false}) {
    memoryscan::Revealed<wchar_t> text(secret);
    const HWND dialog = make();
    const HWND edit = GetDlgItem(dialog, 100);
    for (const wchar_t* c = text.get(); typed && *c != L'\0'; ++c) {  // more than the first block holds
      MSG message;
      PostMessageW(edit, WM_CHAR, static_cast<WPARAM>(*c), 0);
      EXPECT_TRUE(PeekMessageW(&message, edit, 0, 0, PM_REMOVE));
      DispatchMessageW(&message);
    }
    EXPECT_TRUE(typed || SetWindowTextW(edit, text.get()));
    text.end();
    memoryscan::scrubDeadStack();
    EXPECT_EQ(scanMemory(secret).count, 1u) << typed;
    DestroyWindow(dialog);
    EXPECT_EQ(scanMemory(secret).count, 0u) << typed;
  }
}

TEST_F(DialogsTest, FiltersAndRefusals) {
  const HWND dialog = make();
  HWND target = dialog;
  MSG message{};
  const auto peek = [&] { return PeekMessageW(&message, target, WM_APP, WM_APP, PM_REMOVE); };
  for (const HWND window : {HWND{nullptr}, GetDlgItem(dialog, 100), dialog}) {
    PostMessageW(window, WM_APP, 0, 0);
  }
  EXPECT_TRUE(peek() && message.hwnd != nullptr && peek() && !peek());  // its own and its controls'
  target = reinterpret_cast<HWND>(-1);
  EXPECT_TRUE(peek() && message.hwnd == nullptr && !peek());
  const std::tuple<const char*, std::function<INT_PTR()>, bool> rows[] = {
      {"IsWindow", [&] { return IsWindow(target); }, true},
      {"GetDlgItem", [&] { return GetDlgItem(target, 99) != nullptr; }, true},
      {"GetDlgCtrlID", [&] { return GetDlgCtrlID(target); }, true},
      {"GetParent", [&] { return GetParent(target) != nullptr; }, true},
      {"PostMessageW", [&] { return PostMessageW(target, WM_APP, 0, 0); }, true},
      {"CreateDialogParamW", [&] { return CreateDialogParamW(nullptr, kDialog, target, nullptr, 0) != nullptr; }, true},
      {"DialogBoxParamW", [&] { return modal(target) > 0; }, true},
      {"EndDialog", [&] { return EndDialog(target, 0); }, false},
      {"GetWindowTextLengthW", [&] { return GetWindowTextLengthW(target); }, false},
      {"GetWindowTextW", [&] { return !textOf(target).empty(); }, false},
      {"SetWindowTextW", [&] { return SetWindowTextW(target, L""); }, false},
      {"SendMessageW", [&] { return SendMessageW(target, WM_SETTEXT, 0, 0); }, false},
      {"DispatchMessageW",
       [&] {
         return DispatchMessageW(&(message = {target, WM_SETTEXT, 0, 0, 0, {}}));
       },
       false},
      {"GetMessageW", [&] { return GetMessageW(&message, target, 0, 0) + 1; }, false},
      {"GetWindowLongPtrW", [&] { return GetWindowLongPtrW(target, DWLP_DLGPROC); }, false},
      {"SetWindowLongPtrW", [&] { return SetWindowLongPtrW(target, DWLP_USER, 1); }, false},
      {"SetFocus", [&] { return SetFocus(target) != nullptr; }, false},
      {"DestroyWindow", [&] { return DestroyWindow(target); }, false},
  };
  for (const auto& row : rows) {
    const auto& [name, call, anyThread] = row;
    const auto check = [&](HWND window, DWORD code) {
      target = window;
      SetLastError(support::kUntouchedError);
      EXPECT_EQ(std::get<1>(row)(), 0) << std::get<0>(row);
      EXPECT_EQ(GetLastError(), code) << std::get<0>(row);
    };
    faults().fail(name, 1, vlplatform::FaultSpan::once, 4321);
    check(dialog, 4321);
    check(reinterpret_cast<HWND>(0x44), name == std::string("IsWindow") ? support::kUntouchedError : 1400);
    anyThread ? void() : std::thread(check, dialog, 5).join();
  }
  EXPECT_TRUE(DestroyWindow(dialog));
  EXPECT_EQ(FindResourceW(nullptr, L"other", RT_DIALOG), nullptr);
  EXPECT_EQ(GetLastError(), ERROR_RESOURCE_NAME_NOT_FOUND);
}

}  // namespace
