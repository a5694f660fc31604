// The manager and the probes, over a sibling that is made up.
#include <algorithm>
#include <chrono>

#include "fixture.h"

// Of the exported table of virtual functions: the program does not link without it.
extern "C" const void* _ZTVN2VL9Framework15ITXToastManagerE[];

namespace toast {
namespace {

const secstring kLong = L"a text that is long enough to lie on the heap";

class Manager : public WithFake {
 protected:
  static ITXToastManager* create() { return vlCreateToastManager(L"first", kLong, true); }
};

TEST_F(Manager, RecordsOfALifeWithoutWorker) {
  support::LogCapture log;
  ITXToastManager* const manager = create();
  ASSERT_NE(manager, nullptr);
  EXPECT_NE(_ZTVN2VL9Framework15ITXToastManagerE[0], manager);
  EXPECT_TRUE(log.was(records({{TXLOG_ENTRY, L"vlCreateToastManager"},
                               {TXLOG_NOTE, L"vlCreateToastManager: LoadLibrary(tx.hostkit.winrt.dll) succeeded"},
                               {TXLOG_NOTE, L"vlCreateToastManager: loading CreateToastNotification succeeded"},
                               {TXLOG_ENTRY, L"TXToastManager::TXToastManager"},
                               {TXLOG_EXIT, L"TXToastManager::TXToastManager"},
                               {TXLOG_EXIT, L"vlCreateToastManager"}})));
  EXPECT_EQ(fake->first, L"first");
  EXPECT_EQ(fake->second, kLong.c_str());
  EXPECT_TRUE(fake->flag);
  EXPECT_EQ(references(), 1);

  const struct {
    HRESULT result;
    std::optional<int> stored;
    int returned;
  } rows[] = {{S_OK, 42, 42}, {E_FAIL, 43, 43}, {E_FAIL, std::nullopt, 0}, {1, std::nullopt, 0}};
  for (const auto& row : rows) {
    fake->result = row.result;
    fake->stored = row.stored;
    EXPECT_EQ(manager->ShowToast(), row.returned);
    EXPECT_EQ(fake->thread, GetCurrentThreadId());
    Lines lines = {{TXLOG_ENTRY, L"TXToastManager::ShowToast"},
                   {TXLOG_ERROR, L"TXToastManager::ShowToast : Display failed (0x80004005)"},
                   {TXLOG_EXIT, L"TXToastManager::ShowToast : returns " + std::to_wstring(row.returned)}};
    if (row.result >= 0) {
      lines.erase(lines.begin() + 1);
    }
    EXPECT_TRUE(log.was(records(lines)));
  }
  EXPECT_FALSE(manager->JoinToastThread());
  EXPECT_FALSE(manager->HideToast());
  EXPECT_TRUE(log.was(records({{TXLOG_ENTRY, L"TXToastManager::JoinToastThread"},
                               {TXLOG_EXIT, L"TXToastManager::JoinToastThread : returns 0"},
                               {TXLOG_ENTRY, L"TXToastManager::HideToast"},
                               {TXLOG_EXIT, L"TXToastManager::HideToast : returns 0"}})));
  vlDeleteToastManager(manager);
  // No hide request: there is no worker. The toast went before its library did.
  EXPECT_TRUE(log.was(records({{TXLOG_ENTRY, L"vlDeleteToastManager"},
                               {TXLOG_ENTRY, L"TXToastManager::~TXToastManager"},
                               {TXLOG_EXIT, L"TXToastManager::~TXToastManager"},
                               {TXLOG_EXIT, L"vlDeleteToastManager"}})));
  EXPECT_EQ(fake->referencesAtEnd, 1);
}

TEST_F(Manager, TheWorkersStates) {
  makeQueue();
  ITXToastManager* const manager = create();
  support::LogCapture log;
  ASSERT_TRUE(manager->CreateToastThread());
  EXPECT_TRUE(hideSoon(*manager));
  EXPECT_TRUE(manager->JoinToastThread());
  EXPECT_NE(fake->thread, GetCurrentThreadId());
  const auto seen = log.take();
  const auto has = [&](int level, const wchar_t* text) {
    return std::count(seen.begin(), seen.end(), support::LogRecord{L"txhostkit", level, text});
  };
  EXPECT_EQ(has(TXLOG_NOTE, L"TXToastManager::CreateToastThread : thread created."), 1);
  EXPECT_EQ(has(TXLOG_EXIT, L"TXToastManager::CreateToastThread : returns 1"), 1);
  EXPECT_EQ(has(TXLOG_ENTRY, L"TXToastManager::ShowToastThread"), 1);
  EXPECT_EQ(has(TXLOG_TRACE, L"TXToastManager::ShowToastThread : exit reason = 3"), 1);
  EXPECT_EQ(has(TXLOG_EXIT, L"TXToastManager::ShowToastThread"), 1);
  EXPECT_EQ(has(TXLOG_EXIT, L"TXToastManager::HideToast : returns 1"), 1);
  EXPECT_EQ(has(TXLOG_EXIT, L"TXToastManager::JoinToastThread : returns 1"), 1);

  // Joined: there is nobody to post to, whatever displays.
  EXPECT_FALSE(manager->JoinToastThread());
  fake->displaying = true;
  log.take();
  EXPECT_FALSE(manager->HideToast());
  EXPECT_TRUE(log.was(
      records({{TXLOG_ENTRY, L"TXToastManager::HideToast"},
               {TXLOG_ERROR, L"TXToastManager::HideToast : Exception getting thread id (invalid map<K, T> key) "},
               {TXLOG_EXIT, L"TXToastManager::HideToast : returns 0"}})));
  EXPECT_FALSE(takeHideRequest());

  // A joined worker is replaced, a running one is not. Its failure is in the log only.
  fake->displaying.reset();
  EXPECT_TRUE(manager->CreateToastThread());
  while (fake->shown == 0) {
    std::this_thread::yield();
  }
  log.take();
  EXPECT_FALSE(manager->CreateToastThread());
  EXPECT_TRUE(log.was(records({{TXLOG_ENTRY, L"TXToastManager::CreateToastThread"},
                               {TXLOG_ERROR, L"TXToastManager::CreateToastThread : there is a thread already."},
                               {TXLOG_EXIT, L"TXToastManager::CreateToastThread : returns 0"}})));
  hideSoon(*manager);
  manager->JoinToastThread();
  fake->result = E_FAIL;
  manager->CreateToastThread();
  manager->JoinToastThread();
  const auto failed = log.take();
  const auto line = records({{TXLOG_ERROR, L"TXToastManager::ShowToastThread : Display failed (0x80004005)"}});
  EXPECT_EQ(std::count(failed.begin(), failed.end(), line[0]), 1);
  vlDeleteToastManager(manager);
  EXPECT_FALSE(takeHideRequest());
}

TEST_F(Manager, TheDestructorHidesAndJoins) {
  ITXToastManager* const manager = create();
  ASSERT_TRUE(manager->CreateToastThread());
  while (fake->shown == 0) {
    std::this_thread::yield();
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  support::LogCapture log(TXLOG_LEVEL_BIT(TXLOG_ENTRY) | TXLOG_LEVEL_BIT(TXLOG_EXIT));
  vlDeleteToastManager(manager);
  auto seen = log.take();
  std::erase(seen, records({{TXLOG_EXIT, L"TXToastManager::ShowToastThread"}})[0]);
  EXPECT_EQ(seen, records({{TXLOG_ENTRY, L"vlDeleteToastManager"},
                           {TXLOG_ENTRY, L"TXToastManager::~TXToastManager"},
                           {TXLOG_ENTRY, L"TXToastManager::HideToast"},
                           {TXLOG_EXIT, L"TXToastManager::HideToast : returns 1"},
                           {TXLOG_ENTRY, L"TXToastManager::JoinToastThread"},
                           {TXLOG_EXIT, L"TXToastManager::JoinToastThread : returns 1"},
                           {TXLOG_EXIT, L"TXToastManager::~TXToastManager"},
                           {TXLOG_EXIT, L"vlDeleteToastManager"}}));
}

TEST_F(Manager, AHideRequestGoesToTheCreatorWithoutWorker) {
  ITXToastManager* const manager = create();
  std::thread other([&] { hideSoon(*manager); });
  EXPECT_EQ(manager->ShowToast(), 3);
  other.join();
  // Whether it arrives plays no part: here nothing takes it.
  fake->displaying = true;
  makeQueue();
  EXPECT_TRUE(manager->HideToast());
  EXPECT_TRUE(takeHideRequest());
  vlDeleteToastManager(manager);
  ITXToastManager* foreign = nullptr;
  std::thread([&] { foreign = create(); }).join();
  EXPECT_TRUE(foreign->HideToast());
  EXPECT_FALSE(takeHideRequest());
  vlDeleteToastManager(foreign);
}

TEST_F(Manager, DisplaysOfOneManagerRunOneAfterTheOther) {
  makeQueue();
  ITXToastManager* const manager = create();
  ASSERT_TRUE(manager->CreateToastThread());
  while (fake->shown == 0) {
    std::this_thread::yield();
  }
  std::thread second([&] { EXPECT_EQ(manager->ShowToast(), 3); });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  const DWORD worker = fake->thread;
  hideSoon(*manager);
  manager->JoinToastThread();
  while (fake->thread == worker || fake->shown == 0) {
    std::this_thread::yield();
  }
  // The second display's thread is none that a hide request finds.
  EXPECT_FALSE(manager->HideToast());
  PostThreadMessageW(fake->thread, WM_HIDE_TOAST, 0, 0);
  second.join();
  vlDeleteToastManager(manager);  // TearDown asserts that never two ran at once
}

TEST_F(Manager, EachCreateHasItsDelete) {
  ITXToastManager* const first = create();
  ITXToastManager* const second = create();
  vlDeleteToastManager(first);
  EXPECT_EQ(references(), 1);
  vlDeleteToastManager(second);
  EXPECT_EQ(references(), 0);

  // A create that had its load but no toast.
  support::LogCapture log;
  fake->makesNone = true;
  EXPECT_EQ(create(), nullptr);
  auto seen = log.take();
  ASSERT_EQ(seen.size(), 4u);
  EXPECT_EQ(seen[3], records({{TXLOG_EXIT, L"vlCreateToastManager"}})[0]);
  EXPECT_EQ(references(), 1);
  vlDeleteToastManager(nullptr);
  EXPECT_EQ(references(), 0);
  offer(nullptr, nullptr);
  log.take();
  EXPECT_EQ(create(), nullptr);
  seen = log.take();
  ASSERT_EQ(seen.size(), 4u);
  EXPECT_EQ(seen[2].level, TXLOG_ERROR);
  EXPECT_EQ(
      seen[2].text.find(L"vlCreateToastManager: GetProcAddress(CreateToastNotification) failed with error code 0x"),
      0u);
  EXPECT_EQ(references(), 1);
  vlDeleteToastManager(nullptr);
}

TEST_F(Manager, TheModeIsTheSiblings) {
  support::LogCapture log;
  EXPECT_EQ(static_cast<int>(vlGetUIMode()), 0x7654321);
  const std::wstring loaded = L"vlGetUIMode: LoadLibrary(tx.hostkit.winrt.dll) succeeded";
  EXPECT_TRUE(log.was(records({{TXLOG_ENTRY, L"vlGetUIMode"}, {TXLOG_NOTE, loaded}, {TXLOG_EXIT, L"vlGetUIMode"}})));
  offer(nullptr, nullptr);
  EXPECT_EQ(vlGetUIMode(), HOSTKIT_UI_MODE_UNKNOWN);
  const auto seen = log.take();
  ASSERT_EQ(seen.size(), 4u);
  EXPECT_EQ(seen[2].text.find(L"vlGetUIMode: GetProcAddress(GetUIMode) failed with error code 0x"), 0u);
  EXPECT_EQ(seen[2].level, TXLOG_ERROR);
}

}  // namespace
}  // namespace toast
