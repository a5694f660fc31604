// A toast sibling of the tests' own, in place of the real one.
#ifndef TOAST_FIXTURE_H
#define TOAST_FIXTURE_H

#include <algorithm>
#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <support/entrypoints.h>
#include <support/logcapture.h>
#include <support/machinetest.h>
#include <vlhostkit/vlhostkit.h>

namespace toast {

using namespace VL::Framework;
using Lines = std::vector<std::pair<int, std::wstring>>;

inline std::vector<support::LogRecord> records(const Lines& lines) {
  std::vector<support::LogRecord> result;
  for (const auto& [level, text] : lines) {
    result.push_back({L"txhostkit", level, text});
  }
  return result;
}

template <class Function>
FARPROC address(Function* function) {
  return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function));
}

inline void makeQueue() {
  MSG message;
  PeekMessageW(&message, nullptr, WM_USER, WM_USER, PM_NOREMOVE);
}
// Whether a hide request waits for this thread; takes it.
inline bool takeHideRequest() {
  MSG message;
  return PeekMessageW(&message, nullptr, WM_HIDE_TOAST, WM_HIDE_TOAST, PM_REMOVE) != 0;
}

// What the fake's toasts do, and what was done to them.
struct Fake {
  // What they are made of; Display waits for a hide request unless it has `result` to fail with.
  std::optional<HRESULT> result;
  std::optional<int> stored = 3;
  std::optional<bool> displaying;  // in place of the truth
  bool makesNone = false;

  std::wstring first;
  std::wstring second;
  bool flag = false;
  std::atomic<int> alive{0};
  std::atomic<int> shown{0};     // displays that run
  std::atomic<int> most{0};      // at a time
  std::atomic<DWORD> thread{0};  // that displayed last
  std::atomic<long> referencesAtEnd{-1};
};
inline std::unique_ptr<Fake> fake;

// References on the sibling; on Windows 1 stands for any number.
inline long references() {
#ifdef _WIN32
  return GetModuleHandleW(L"tx.hostkit.winrt.dll") != nullptr ? 1 : 0;
#else
  return vlplatform::machine().modules().references(L"tx.hostkit.winrt.dll");
#endif
}

class FakeToast : public ITXToastNotification {
 public:
  FakeToast() { ++fake->alive; }
  ~FakeToast() override {
    --fake->alive;
    fake->referencesAtEnd = references();
  }
  HRESULT Display(int* reason) override {
    makeQueue();
    fake->thread = GetCurrentThreadId();
    const int now = ++fake->shown;
    fake->most = std::max<int>(fake->most, now);
    displaying_ = true;
    MSG message{};
    while (!fake->result && message.message != WM_HIDE_TOAST && GetMessageW(&message, nullptr, 0, 0) > 0) {
    }
    displaying_ = false;
    --fake->shown;
    if (fake->stored) {
      *reason = *fake->stored;
    }
    return fake->result.value_or(S_OK);
  }
  int GetExitReason() override {
    ADD_FAILURE() << "nobody calls this";
    return 0;
  }
  bool IsDisplaying() override { return fake->displaying.value_or(displaying_); }

 private:
  std::atomic<bool> displaying_{false};
};

inline ITXToastNotification* createFake(secstring first, secstring second, bool flag) {
  fake->first = first.c_str();
  fake->second = second.c_str();
  fake->flag = flag;
  return fake->makesNone ? nullptr : new FakeToast;
}
inline HOSTKIT_UI_MODE fakeMode() {
  return static_cast<HOSTKIT_UI_MODE>(0x7654321);
}

// Each test has a sibling whose entry points are the fake's. On Windows the real one is loaded, and asked nothing.
class WithFake : public support::MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
    fake = std::make_unique<Fake>();
#ifndef _WIN32
    machine().modules().add(kSibling, {});
#endif
    offer(address(&createFake), address(&fakeMode));
  }
  void TearDown() override {
    EXPECT_EQ(fake->alive, 0);
    EXPECT_EQ(references(), 0);
    EXPECT_LE(fake->most, 1);
    points_.reset();
    fake.reset();
    MachineTest::TearDown();
  }
  // Null: the entry point is missing.
  void offer(FARPROC create, FARPROC mode) {
    points_.reset();
    points_.emplace(kSibling,
                    std::vector<support::EntryPoint>{{"CreateToastNotification", create}, {"GetUIMode", mode}});
  }
  static bool hideSoon(ITXToastManager& manager) {
    while (!manager.HideToast()) {
      std::this_thread::yield();
    }
    return true;
  }
  static constexpr const wchar_t* kSibling = L"tx.hostkit.winrt.dll";

 private:
  std::optional<support::EntryPoints> points_;
};

}  // namespace toast

#endif
