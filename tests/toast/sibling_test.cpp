// The real sibling: what a toast does on its thread.
#include "fixture.h"

namespace toast {
namespace {

class Sibling : public support::MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
    module_ = LoadLibraryW(kSibling);
    ASSERT_NE(module_, nullptr);
    takeHideRequest();
  }
  void TearDown() override {
    EXPECT_TRUE(FreeLibrary(module_));
    MachineTest::TearDown();
  }
  template <class Function>
  Function entryPoint(const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
  }
  // Shows a toast on this thread, and runs `action` on another once it displays.
  template <class Action>
  int display(bool stays, Action action) {
    const auto create = entryPoint<ITXToastNotification* (*)(secstring, secstring, bool)>("CreateToastNotification");
    const std::unique_ptr<ITXToastNotification> toast(create(L"Title \x1b[2J", L"one\ntwo \u20ac", stays));
    EXPECT_FALSE(toast->IsDisplaying());
    std::thread other([&, id = GetCurrentThreadId()] {
      waitUntil([&] { return toast->IsDisplaying(); });
      action(id, *toast);
    });
    int reason = -1;
    EXPECT_EQ(toast->Display(&reason), S_OK);
    EXPECT_FALSE(toast->IsDisplaying());
    EXPECT_EQ(toast->GetExitReason(), reason);
    other.join();
    return reason;
  }

 private:
  HMODULE module_ = nullptr;
};

TEST_F(Sibling, EndsByAHideRequestAndKeepsOtherMessages) {
  PostThreadMessageW(GetCurrentThreadId(), WM_HIDE_TOAST, 0, 0);  // of another time, for another toast
  PostThreadMessageW(GetCurrentThreadId(), WM_APP, 1, 0);
  testing::internal::CaptureStderr();
  const int reason = display(true, [](DWORD id, ITXToastNotification&) {
    PostThreadMessageW(id, WM_APP, 2, 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    PostThreadMessageW(id, WM_HIDE_TOAST, 0, 0);
  });
  const std::string printed = testing::internal::GetCapturedStderr();
#ifndef _WIN32
  EXPECT_EQ(printed, "[toast] Title  [2J\n      | one\n      | two \xe2\x82\xac\n");
#endif
  EXPECT_EQ(reason, kToastHidden);
  MSG message{};
  for (const WPARAM expected : {1, 2}) {
    EXPECT_TRUE(PeekMessageW(&message, nullptr, WM_APP, WM_APP, PM_REMOVE));
    EXPECT_EQ(message.wParam, expected);
  }
  // The mark to quit ends a toast, and stays for the loop that it is meant for.
  PostQuitMessage(77);
  EXPECT_EQ(display(true, [](DWORD, ITXToastNotification&) {}), kToastQuit);
  EXPECT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
  EXPECT_EQ(message.message, UINT{WM_QUIT});
  EXPECT_EQ(message.wParam, WPARAM{77});
}

TEST_F(Sibling, EndsByItself) {
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(display(false, [](DWORD, ITXToastNotification&) {}), kToastTimedOut);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(4));
}

TEST_F(Sibling, TheModeIsTheUsersChoice) {
  const auto mode = entryPoint<HOSTKIT_UI_MODE (*)()>("GetUIMode");
  EXPECT_EQ(mode(), HOSTKIT_UI_MODE_DESKTOP);
  constexpr const wchar_t* kPath = L"Software\\Microsoft\\Windows\\CurrentVersion\\ImmersiveShell";
  EXPECT_EQ(vlRegWriteDWORDValue(HKEY_CURRENT_USER, kPath, L"TabletMode", 1), 0);
  EXPECT_EQ(mode(), HOSTKIT_UI_MODE_TABLET);
  EXPECT_EQ(vlRegDeleteValue(HKEY_CURRENT_USER, kPath, L"TabletMode", 0), 0);
}

#ifdef _WIN32
BOOL CALLBACK clickOn(HWND window, LPARAM) {
  wchar_t text[64] = L"";
  if (GetClassNameW(window, text, 64) != 0 && std::wstring(text).starts_with(L"tx.hostkit.toast.")) {
    EXPECT_EQ(GetWindowTextW(window, text, 64), 0) << "the texts are nobody's business";
    PostMessageW(window, WM_LBUTTONUP, 0, 0);
  }
  return TRUE;
}

TEST_F(Sibling, EndsByAClick) {
  EXPECT_EQ(display(true,
                    [](DWORD id, ITXToastNotification& toast) {
                      waitUntil([&] { return EnumThreadWindows(id, &clickOn, 0), !toast.IsDisplaying(); });
                    }),
            kToastActivated);
}
#endif

}  // namespace
}  // namespace toast
