// A sibling that is missing, versions, calls, threads and allocations that fail, and many lives. Native only.
#include <pthread.h>

#include <filesystem>

#include <support/allocfault.h>

#include "fixture.h"

namespace toast {
namespace {

class OnMachine : public WithFake {};

long threads() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
}

TEST_F(OnMachine, VersionsWithTheWindowsRuntime) {
  const struct {
    DWORD major;
    DWORD minor;
    bool supported;
  } rows[] = {{5, 0, false}, {5, 9, false}, {6, 0, false}, {6, 1, false}, {6, 2, true},
              {6, 3, true},  {7, 0, true},  {10, 0, true}, {0, 0, false}};
  support::LogCapture log;
  for (const auto& row : rows) {
    machine().version().setNumbers(row.major, row.minor);
    EXPECT_EQ(vlIsWinRTSupported(), row.supported) << row.major << '.' << row.minor;
    EXPECT_TRUE(log.was(records(
        {{TXLOG_ENTRY, L"vlIsWinRTSupported"},
         {TXLOG_EXIT, row.supported ? L"vlIsWinRTSupported: returns true." : L"vlIsWinRTSupported: returns false."}})));
  }
  machine().reset();
  faults().watch();
  EXPECT_TRUE(vlIsWinRTSupported());
  faults().fail("GetVersionExW");
  EXPECT_FALSE(vlIsWinRTSupported());
}

TEST_F(OnMachine, WithoutTheSibling) {
  machine().modules().remove(kSibling);
  support::LogCapture log;
  EXPECT_EQ(vlGetUIMode(), HOSTKIT_UI_MODE_UNKNOWN);
  EXPECT_EQ(vlCreateToastManager(L"a", L"b", false), nullptr);
  vlDeleteToastManager(nullptr);
  EXPECT_TRUE(log.was(
      records({{TXLOG_ENTRY, L"vlGetUIMode"},
               {TXLOG_ERROR, L"vlGetUIMode: LoadLibrary(tx.hostkit.winrt.dll) failed with error code 0x7e"},
               {TXLOG_EXIT, L"vlGetUIMode"},
               {TXLOG_ENTRY, L"vlCreateToastManager"},
               {TXLOG_ERROR, L"vlCreateToastManager: LoadLibrary(tx.hostkit.winrt.dll) failed with error code 0x7e"},
               {TXLOG_EXIT, L"vlCreateToastManager"},
               {TXLOG_ENTRY, L"vlDeleteToastManager"},
               {TXLOG_EXIT, L"vlDeleteToastManager"}})));
  EXPECT_EQ(faults().calls("FreeLibrary"), 0u);
}

TEST_F(OnMachine, AThreadThatCannotStart) {
  ITXToastManager* const manager = vlCreateToastManager(L"a", L"b", false);
  pthread_attr_t usual;
  ASSERT_EQ(pthread_getattr_default_np(&usual), 0);
  pthread_attr_t huge = usual;
  ASSERT_EQ(pthread_attr_setstacksize(&huge, std::size_t{1} << 46), 0);
  ASSERT_EQ(pthread_setattr_default_np(&huge), 0);
  support::LogCapture log;
  const bool created = manager->CreateToastThread();
  ASSERT_EQ(pthread_setattr_default_np(&usual), 0);
  EXPECT_FALSE(created);
  EXPECT_TRUE(log.was(records({{TXLOG_ENTRY, L"TXToastManager::CreateToastThread"},
                               {TXLOG_ERROR,
                                L"TXToastManager::CreateToastThread : creating thread failed with error "
                                L"11 (Resource temporarily unavailable)."},
                               {TXLOG_EXIT, L"TXToastManager::CreateToastThread : returns 0"}})));
  EXPECT_FALSE(manager->JoinToastThread());
  vlDeleteToastManager(manager);
}

TEST_F(OnMachine, APostThatFailsIsNotNoticed) {
  ITXToastManager* const manager = vlCreateToastManager(L"a", L"b", false);
  fake->displaying = true;
  faults().fail("PostThreadMessageW");
  EXPECT_TRUE(manager->HideToast());
  fake->displaying = false;
  EXPECT_FALSE(manager->HideToast());
  EXPECT_EQ(faults().calls("PostThreadMessageW"), 1u);
  vlDeleteToastManager(manager);
}

TEST_F(OnMachine, OutOfMemoryInCreate) {
  const secstring text(200, L'x');
  std::uint64_t n = 1;
  for (bool failed = true; failed; ++n) {
    secstring first = text;
    secstring second = text;
    ITXToastManager* manager = nullptr;
    support::AllocFault fault(n);
    try {
      manager = vlCreateToastManager(std::move(first), std::move(second), false);
    } catch (const std::bad_alloc&) {
    }
    failed = fault.end();
    EXPECT_EQ(manager == nullptr, failed) << n;
    EXPECT_EQ(fake->alive, failed ? 0 : 1) << n;
    vlDeleteToastManager(manager);
    EXPECT_EQ(references(), 0) << n;
  }
  EXPECT_GT(n, 5u);
}

// A message queue, a thread or a reference that stays would show after so many.
TEST_F(OnMachine, TenThousandLives) {
  faults().reset();
  makeQueue();
  const long threadsBefore = threads();
  const std::size_t queuesBefore = machine().messages().queues();
  for (int i = 0; i < 10'000; ++i) {
    ITXToastManager* const manager = vlCreateToastManager(L"a", L"b", false);
    ASSERT_TRUE(manager->CreateToastThread());
    hideSoon(*manager);
    if (i % 2 == 0) {
      ASSERT_TRUE(manager->JoinToastThread());
    }
    vlDeleteToastManager(manager);
  }
  EXPECT_EQ(threads(), threadsBefore);
  EXPECT_EQ(machine().messages().queues(), queuesBefore);
}

// Hide requests from many threads, beside the join that waits for the toast and changes the worker's state.
TEST_F(OnMachine, HideRequestsBesideAJoin) {
  faults().reset();
  for (int i = 0; i < 40; ++i) {
    ITXToastManager* const manager = vlCreateToastManager(L"a", L"b", false);
    ASSERT_TRUE(manager->CreateToastThread());
    std::atomic<bool> over{false};
    std::vector<std::thread> others;
    for (int other = 0; other < 3; ++other) {
      others.emplace_back([&] {
        while (!over) {
          manager->HideToast();
        }
      });
    }
    EXPECT_TRUE(manager->JoinToastThread());
    over = true;
    for (std::thread& other : others) {
      other.join();
    }
    vlDeleteToastManager(manager);
  }
}

}  // namespace
}  // namespace toast
