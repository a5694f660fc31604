// The real sibling: what a toast does on its thread.
#include "fixture.h"

namespace toast {

class Sibling : public support::MachineTest {
 protected:
  // Shows a toast on this thread, which has that id, while another does `action`.
  static int display(bool stays, auto action) {
    ITXToastManager* const manager = vlCreateToastManager(L"Title \x1b[2J", L"one\ntwo \u20ac", stays);
    std::thread other([&, id = GetCurrentThreadId()] { action(*manager, id); });
    const int reason = manager->ShowToast();
    other.join();
    EXPECT_FALSE(manager->HideToast());
    vlDeleteToastManager(manager);
    return reason;
  }
};

TEST_F(Sibling, EndsByAHideRequestAndKeepsOtherMessages) {
  takeHideRequest();
  PostThreadMessageW(GetCurrentThreadId(), WM_HIDE_TOAST, 0, 0);  // of another time, for another toast
  PostThreadMessageW(GetCurrentThreadId(), WM_APP, 1, 0);
  testing::internal::CaptureStderr();
  EXPECT_EQ(display(true,
                    [](ITXToastManager& manager, DWORD id) {
                      PostThreadMessageW(id, WM_APP, 2, 0);
                      std::this_thread::sleep_for(std::chrono::milliseconds(30));
                      waitUntil([&] { return manager.HideToast(); });
                    }),
            kToastHidden);
  const std::string printed = testing::internal::GetCapturedStderr();
#ifndef _WIN32
  EXPECT_EQ(printed, "[toast] Title  [2J\n      | one\n      | two \xe2\x82\xac\n");
#endif
  MSG message{};
  for (const WPARAM expected : {1, 2}) {
    EXPECT_TRUE(PeekMessageW(&message, nullptr, WM_APP, WM_APP, PM_REMOVE) && message.wParam == expected);
  }
  // The mark to quit ends a toast, and stays for the loop that it is meant for.
  PostQuitMessage(77);
  EXPECT_EQ(display(true, [](auto&, DWORD) {}), kToastQuit);
  EXPECT_FALSE(GetMessageW(&message, nullptr, 0, 0));
  EXPECT_EQ(message.wParam, WPARAM{77});
}

TEST_F(Sibling, EndsByItself) {
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(display(false, [](auto&, DWORD) {}), kToastTimedOut);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(4));
}

TEST_F(Sibling, TheModeIsTheUsersChoice) {
  EXPECT_EQ(vlGetUIMode(), HOSTKIT_UI_MODE_DESKTOP);
  constexpr const wchar_t* kPath = L"Software\\Microsoft\\Windows\\CurrentVersion\\ImmersiveShell";
  EXPECT_EQ(vlRegWriteDWORDValue(HKEY_CURRENT_USER, kPath, L"TabletMode", 1), 0);
  EXPECT_EQ(vlGetUIMode(), HOSTKIT_UI_MODE_TABLET);
  EXPECT_EQ(vlRegDeleteValue(HKEY_CURRENT_USER, kPath, L"TabletMode", 0), 0);
}

#ifdef _WIN32
BOOL CALLBACK clickOn(HWND window, LPARAM clicked) {
  wchar_t text[64] = L"";
  if (GetClassNameW(window, text, 64) != 0 && std::wstring(text).starts_with(L"tx.hostkit.toast.")) {
    EXPECT_EQ(GetWindowTextW(window, text, 64), 0) << "the texts are nobody's business";
    *reinterpret_cast<BOOL*>(clicked) = PostMessageW(window, WM_LBUTTONUP, 0, 0);
  }
  return TRUE;
}

TEST_F(Sibling, EndsByAClick) {
  const auto click = [](auto&, DWORD id) {
    BOOL clicked = FALSE;
    waitUntil([&] { return EnumThreadWindows(id, &clickOn, reinterpret_cast<LPARAM>(&clicked)), clicked; });
  };
  EXPECT_EQ(display(true, click), kToastActivated);
}
#endif

}  // namespace toast
