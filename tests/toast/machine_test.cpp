// Versions, calls and threads that fail, and many lives. Native only.
#include <pthread.h>

#include <filesystem>

#include "fixture.h"

namespace toast {

using OnMachine = WithFake;

TEST_F(OnMachine, VersionsWithTheWindowsRuntime) {
  support::LogCapture log;
  for (const DWORD number : {0, 59, 61, 62, 63, 70, 100}) {
    machine().version().setNumbers(number / 10, number % 10);
    EXPECT_EQ(vlIsWinRTSupported(), number >= 62) << number;
    EXPECT_EQ(taken(log), std::wstring(L"8 vlIsWinRTSupported\n16 vlIsWinRTSupported: returns ") +
                              (number >= 62 ? L"true.\n" : L"false.\n"));
  }
}

TEST_F(OnMachine, WithoutTheSibling) {
  machine().modules().remove(kSibling);
  support::LogCapture log(TXLOG_LEVEL_BIT(TXLOG_ERROR));
  EXPECT_EQ(vlGetUIMode(), HOSTKIT_UI_MODE_UNKNOWN);
  EXPECT_EQ(create(), nullptr);
  vlDeleteToastManager(nullptr);
  EXPECT_EQ(taken(log),
            L"1 vlGetUIMode: LoadLibrary(tx.hostkit.winrt.dll) failed with error code 0x7e\n"
            "1 vlCreateToastManager: LoadLibrary(tx.hostkit.winrt.dll) failed with error code 0x7e\n");
  EXPECT_EQ(faults().calls("FreeLibrary"), 0u);
}

TEST_F(OnMachine, AThreadThatCannotStart) {
  ITXToastManager* const manager = create();
  pthread_attr_t usual, huge;
  pthread_getattr_default_np(&usual);
  pthread_getattr_default_np(&huge);
  pthread_attr_setstacksize(&huge, std::size_t{1} << 46);
  pthread_setattr_default_np(&huge);
  support::LogCapture log;
  EXPECT_FALSE(manager->CreateToastThread());
  pthread_setattr_default_np(&usual);
  const std::wstring line = L"1 TXToastManager::CreateToastThread : creating thread failed with error 11 (";
  EXPECT_EQ(taken(log), operation(L"CreateToastThread", 0, line + L"Resource temporarily unavailable).\n"));
  EXPECT_FALSE(manager->JoinToastThread());
  vlDeleteToastManager(manager);
}

// Hide requests beside a join, which changes the worker's state, and before the end.
TEST_F(OnMachine, TenThousandLivesLeaveNothing) {
  faults().reset();
  const auto threads = [] { return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {}); };
  const auto threadsBefore = threads();
  const std::size_t queuesBefore = machine().messages().queues();
  for (int i = 0; i < 10'000; ++i) {
    ITXToastManager* const manager = create();
    ASSERT_TRUE(manager->CreateToastThread());
    std::thread other([&] { waitUntil([&] { return manager->HideToast(); }); });
    EXPECT_TRUE(i % 2 == 0 || manager->JoinToastThread());
    other.join();
    vlDeleteToastManager(manager);
  }
  EXPECT_EQ(threads(), threadsBefore);
  EXPECT_EQ(machine().messages().queues(), queuesBefore);
}

}  // namespace toast
