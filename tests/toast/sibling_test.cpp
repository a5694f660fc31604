// The real sibling: what a toast does on its thread.
#include <chrono>

#include "fixture.h"

namespace toast {
namespace {

using Clock = std::chrono::steady_clock;

class Sibling : public support::MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
    module_ = LoadLibraryW(L"tx.hostkit.winrt.dll");
    ASSERT_NE(module_, nullptr);
    const auto create = entryPoint<ITXToastNotification* (*)(secstring, secstring, bool)>("CreateToastNotification");
    testing::internal::CaptureStderr();
    stays_.reset(create(L"Title \x1b[2J", L"one\ntwo \u20ac", true));
    ends_.reset(create(L"Title", L"body", false));
    makeQueue();
  }
  void TearDown() override {
    stays_.reset();
    ends_.reset();
    EXPECT_TRUE(FreeLibrary(module_));
    shown();
    MachineTest::TearDown();
  }
  // What standard error got since the test began; once.
  std::string shown() { return std::exchange(captured_, true) ? "" : testing::internal::GetCapturedStderr(); }
  template <class Function>
  Function entryPoint(const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
  }
  int display(ITXToastNotification& toast) {
    int reason = -1;
    EXPECT_EQ(toast.Display(&reason), S_OK);
    EXPECT_FALSE(toast.IsDisplaying());
    EXPECT_EQ(toast.GetExitReason(), reason);
    return reason;
  }
  // Runs `action` on another thread once the toast displays on this one.
  template <class Action>
  int displayWhile(ITXToastNotification& toast, Action action) {
    std::thread other([&, id = GetCurrentThreadId()] {
      while (!toast.IsDisplaying()) {
        std::this_thread::yield();
      }
      action(id);
    });
    const int reason = display(toast);
    other.join();
    return reason;
  }

  std::unique_ptr<ITXToastNotification> stays_;
  std::unique_ptr<ITXToastNotification> ends_;

 private:
  HMODULE module_ = nullptr;
  bool captured_ = false;
};

TEST_F(Sibling, EndsByAHideRequestAndKeepsOtherMessages) {
  // A request from before was for another toast.
  PostThreadMessageW(GetCurrentThreadId(), WM_HIDE_TOAST, 0, 0);
  PostThreadMessageW(GetCurrentThreadId(), WM_APP, 1, 0);
  EXPECT_FALSE(stays_->IsDisplaying());
  EXPECT_EQ(displayWhile(*stays_,
                         [](DWORD id) {
                           PostThreadMessageW(id, WM_APP, 2, 0);
                           std::this_thread::sleep_for(std::chrono::milliseconds(30));
                           PostThreadMessageW(id, WM_HIDE_TOAST, 0, 0);
                           PostThreadMessageW(id, WM_HIDE_TOAST, 0, 0);
                         }),
            kToastHidden);
  MSG message;
  for (const WPARAM expected : {1, 2}) {
    ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_EQ(message.wParam, expected);
  }
  takeHideRequest();
  // The mark to quit ends a toast, and stays for the loop that it is meant for.
  PostQuitMessage(77);
  EXPECT_EQ(display(*stays_), kToastQuit);
  ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
  EXPECT_EQ(message.message, UINT{WM_QUIT});
  EXPECT_EQ(message.wParam, WPARAM{77});
#ifndef _WIN32
  const std::string text = "[toast] Title  [2J\n      | one\n      | two \xe2\x82\xac\n";
  EXPECT_EQ(shown(), text + text);
#endif
}

TEST_F(Sibling, EndsByItself) {
  const auto start = Clock::now();
  EXPECT_EQ(display(*ends_), kToastTimedOut);
  EXPECT_GE(Clock::now() - start, std::chrono::seconds(4));
  EXPECT_LE(Clock::now() - start, std::chrono::seconds(20));
}

TEST_F(Sibling, TheModeIsTheUsersChoice) {
  const auto mode = entryPoint<HOSTKIT_UI_MODE (*)()>("GetUIMode");
  EXPECT_EQ(mode(), HOSTKIT_UI_MODE_DESKTOP);
  HKEY key = nullptr;
  constexpr const wchar_t* kPath = L"Software\\Microsoft\\Windows\\CurrentVersion\\ImmersiveShell";
  ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, kPath, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr), 0);
  for (const DWORD tablet : {1, 0}) {
    RegSetValueExW(key, L"TabletMode", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&tablet), sizeof tablet);
    EXPECT_EQ(mode(), tablet != 0 ? HOSTKIT_UI_MODE_TABLET : HOSTKIT_UI_MODE_DESKTOP);
  }
  RegDeleteValueW(key, L"TabletMode");
  RegCloseKey(key);
}

#ifdef _WIN32

BOOL CALLBACK clickOn(HWND window, LPARAM) {
  wchar_t name[64] = L"";
  GetClassNameW(window, name, 64);
  if (std::wstring(name).starts_with(L"tx.hostkit.toast.")) {
    wchar_t text[8] = L"";
    EXPECT_EQ(GetWindowTextW(window, text, 8), 0) << "the texts are nobody's business";
    EXPECT_NE(GetWindowLongPtrW(window, GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
    PostMessageW(window, WM_LBUTTONUP, 0, 0);
  }
  return TRUE;
}

TEST_F(Sibling, EndsByAClick) {
  EXPECT_EQ(displayWhile(*stays_,
                         [&](DWORD id) {
                           for (int i = 0; i < 200 && stays_->IsDisplaying(); ++i) {
                             EnumThreadWindows(id, &clickOn, 0);
                             std::this_thread::sleep_for(std::chrono::milliseconds(10));
                           }
                         }),
            kToastActivated);
}

#endif

}  // namespace
}  // namespace toast
