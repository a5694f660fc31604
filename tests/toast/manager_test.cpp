// The manager and the probes, over a sibling that is made up.
#include "fixture.h"

// The exported table of virtual functions: without it the program does not link.
extern "C" const void* _ZTVN2VL9Framework15ITXToastManagerE[];

namespace toast {

using Manager = WithFake;

static bool has(const std::wstring& log, const std::wstring& lines) {
  return log.find(lines) != std::wstring::npos;
}

TEST_F(Manager, RecordsOfALifeWithoutWorker) {
  EXPECT_NE(_ZTVN2VL9Framework15ITXToastManagerE[1], nullptr);
  support::LogCapture log;
  ITXToastManager* const manager = create();
  EXPECT_EQ(taken(log),
            L"8 vlCreateToastManager\n0 vlCreateToastManager: LoadLibrary(tx.hostkit.winrt.dll) succeeded\n"
            "0 vlCreateToastManager: loading CreateToastNotification succeeded\n"
            "8 TXToastManager::TXToastManager\n16 TXToastManager::TXToastManager\n16 vlCreateToastManager\n");
  EXPECT_EQ(fake->texts, L"first|" + std::wstring(99, L'x') + L"|true");
  const std::wstring error = L"1 TXToastManager::ShowToast : Display failed (0x80004005)\n";
  using Stored = std::optional<int>;
  for (const auto& [result, stored] : {std::pair{S_OK, Stored(42)}, {E_FAIL, Stored(43)}, {E_FAIL, Stored()}}) {
    fake->result = result;
    fake->stored = stored;
    EXPECT_EQ(manager->ShowToast(), stored.value_or(0));
    EXPECT_EQ(taken(log), operation(L"ShowToast", stored.value_or(0), result < 0 ? error : L""));
  }
  vlDeleteToastManager(manager);
  // No hide request: there is no worker. The toast went before its library did.
  EXPECT_EQ(taken(log),
            L"8 vlDeleteToastManager\n8 TXToastManager::~TXToastManager\n"
            "16 TXToastManager::~TXToastManager\n16 vlDeleteToastManager\n");
  EXPECT_EQ(fake->referencesAtEnd, 1);
}

TEST_F(Manager, TheWorkersStates) {
  takeHideRequest();
  ITXToastManager* const manager = create();
  support::LogCapture log;
  EXPECT_TRUE(manager->CreateToastThread());
  waitUntil([&] { return manager->HideToast(); });
  EXPECT_TRUE(manager->JoinToastThread());
  EXPECT_NE(fake->thread, GetCurrentThreadId());
  const std::wstring all = taken(log);
  EXPECT_TRUE(has(all, L"0 TXToastManager::CreateToastThread : thread created.\n"));
  EXPECT_TRUE(has(all, L"2 TXToastManager::ShowToastThread : exit reason = 3\n16 TXToastManager::ShowToastThread\n"));
  // Joined: there is nobody to post to, whatever displays.
  EXPECT_FALSE(manager->JoinToastThread());
  fake->displaying = true;
  EXPECT_FALSE(manager->HideToast());
  const std::wstring none = L"1 TXToastManager::HideToast : Exception getting thread id (invalid map<K, T> key) \n";
  EXPECT_EQ(taken(log), operation(L"JoinToastThread", 0) + operation(L"HideToast", 0, none));
  fake->displaying.reset();
  // A worker that was joined is replaced, and its failure is in the log only.
  fake->result = E_FAIL;
  EXPECT_TRUE(manager->CreateToastThread());
  EXPECT_TRUE(manager->JoinToastThread());
  EXPECT_TRUE(has(taken(log), L"1 TXToastManager::ShowToastThread : Display failed (0x80004005)\n2 "));
  fake->result.reset();
  // Another is not. The end hides and joins.
  EXPECT_TRUE(manager->CreateToastThread());
  waitUntil([&] { return fake->shown == 1; });
  taken(log);
  EXPECT_FALSE(manager->CreateToastThread());
  const std::wstring refused = L"1 TXToastManager::CreateToastThread : there is a thread already.\n";
  EXPECT_EQ(taken(log), operation(L"CreateToastThread", 0, refused));
  fake->displaying = true;
  vlDeleteToastManager(manager);
  const std::wstring end = taken(log);
  EXPECT_LT(end.find(L"8 TXToastManager::~TXToastManager\n8 TXToastManager::HideToast\n"),
            end.find(L"16 TXToastManager::JoinToastThread : returns 1\n16 TXToastManager::~TXToastManager\n"));
  EXPECT_FALSE(takeHideRequest());
}

TEST_F(Manager, DisplaysOfOneManagerRunOneAfterTheOther) {
  ITXToastManager* const manager = create();
  EXPECT_TRUE(manager->CreateToastThread());
  waitUntil([] { return fake->shown == 1; });
  const DWORD worker = fake->thread;
  std::thread second([&] { EXPECT_EQ(manager->ShowToast(), 3); });
  std::this_thread::sleep_for(std::chrono::milliseconds(30));
  waitUntil([&] { return manager->HideToast(); });
  waitUntil([&] { return fake->thread != worker && fake->shown == 1; });
  PostThreadMessageW(fake->thread, WM_HIDE_TOAST, 0, 0);
  second.join();
  vlDeleteToastManager(manager);
}

TEST_F(Manager, WithoutEntryPoints) {
  support::LogCapture log;
  EXPECT_EQ(static_cast<int>(vlGetUIMode()), 0x7654321);
  const std::wstring loaded = L"8 vlGetUIMode\n0 vlGetUIMode: LoadLibrary(tx.hostkit.winrt.dll) succeeded\n";
  EXPECT_EQ(taken(log), loaded + L"16 vlGetUIMode\n");
  offer(false);
  EXPECT_EQ(vlGetUIMode(), HOSTKIT_UI_MODE_UNKNOWN);
  EXPECT_TRUE(taken(log).starts_with(loaded + L"1 vlGetUIMode: GetProcAddress(GetUIMode) failed with error code 0x"));
  EXPECT_EQ(create(), nullptr);
  EXPECT_TRUE(has(taken(log), L"1 vlCreateToastManager: GetProcAddress(CreateToastNotification) failed with error"));
  EXPECT_EQ(references(), 1);
  vlDeleteToastManager(nullptr);
}

// On the worker nobody could catch it, and the end of the manager has a worker to wait for.
TEST_F(Manager, OutlivesAToastThatThrows) {
  fake->throws = true;
  ITXToastManager* const manager = create();
  EXPECT_THROW(manager->ShowToast(), std::runtime_error);
  support::LogCapture log;
  EXPECT_TRUE(manager->CreateToastThread());
  vlDeleteToastManager(manager);
  EXPECT_TRUE(has(taken(log), L"1 TXToastManager::ShowToastThread : ended by an exception\n"));
}

}  // namespace toast
