// A toast sibling of the tests' own, in place of the real one.
#ifndef TOAST_FIXTURE_H
#define TOAST_FIXTURE_H

#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>

#include <support/entrypoints.h>
#include <support/logcapture.h>
#include <support/machinetest.h>
#include <vlhostkit/vlhostkit.h>

namespace toast {

using namespace VL::Framework;

inline constexpr const wchar_t* kSibling = L"tx.hostkit.winrt.dll";

// The records as "LEVEL TEXT" lines; the tag is always the same.
inline std::wstring taken(support::LogCapture& log) {
  std::wstring lines;
  for (const auto& record : log.take()) {
    EXPECT_EQ(record.tag, L"txhostkit");
    lines += std::to_wstring(record.level) + L' ' + record.text + L'\n';
  }
  return lines;
}
// A manager's operation with what it logs between.
inline std::wstring operation(const std::wstring& name, int result, const std::wstring& between = {}) {
  const std::wstring whole = L"TXToastManager::" + name;
  return L"8 " + whole + L'\n' + between + L"16 " + whole + L" : returns " + std::to_wstring(result) + L'\n';
}

FARPROC address(auto* function) {
  return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function));
}
void waitUntil(auto predicate) {
  while (!predicate()) {
    std::this_thread::sleep_for(std::chrono::microseconds(50));
  }
}
// Whether a hide request waits for this thread, which has a queue afterwards; takes it.
inline bool takeHideRequest() {
  MSG message;
  return PeekMessageW(&message, nullptr, WM_HIDE_TOAST, WM_HIDE_TOAST, PM_REMOVE) != 0;
}
// References on the sibling; on Windows 1 stands for any number.
inline long references() {
#ifdef _WIN32
  return GetModuleHandleW(kSibling) != nullptr ? 1 : 0;
#else
  return vlplatform::machine().modules().references(kSibling);
#endif
}

// What the fake's toasts do, and what was done to them.
struct Fake {
  std::optional<HRESULT> result;  // Display returns it at once, in place of waiting for a hide request
  std::optional<int> stored = 3;
  std::optional<bool> displaying;  // in place of the truth
  bool throws = false;
  std::wstring texts;
  std::atomic<int> alive{0};
  std::atomic<int> shown{0};  // displays that run
  std::atomic<DWORD> thread{0};
  std::atomic<long> referencesAtEnd{-1};
};
inline std::unique_ptr<Fake> fake;

class FakeToast : public ITXToastNotification {
 public:
  FakeToast() { ++fake->alive; }
  ~FakeToast() override { fake->referencesAtEnd = --fake->alive + references(); }
  HRESULT Display(int* reason) override {
    IsDisplaying();  // may throw
    takeHideRequest();
    fake->thread = GetCurrentThreadId();
    EXPECT_EQ(++fake->shown, 1) << "one after the other";
    displaying_ = true;
    MSG message{};
    while (!fake->result && message.message != WM_HIDE_TOAST && GetMessageW(&message, nullptr, 0, 0) > 0) {
    }
    displaying_ = false;
    --fake->shown;
    *reason = fake->stored.value_or(*reason);
    return fake->result.value_or(S_OK);
  }
  int GetExitReason() override { return 0; }  // nobody calls this
  bool IsDisplaying() override {
    if (fake->throws) {
      throw std::runtime_error("toast");
    }
    return fake->displaying.value_or(displaying_);
  }

 private:
  std::atomic<bool> displaying_{false};
};

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature of the sibling's
inline ITXToastNotification* createFake(secstring first, secstring second, bool flag) {
  // NOLINTNEXTLINE(readability-redundant-string-cstr): its allocator is another
  fake->texts = std::wstring(first.c_str()) + L'|' + second.c_str() + (flag ? L"|true" : L"|false");
  return new FakeToast;
}

// Tests with a sibling whose entry points are the fake's. On Windows the real one is loaded, and asked nothing.
class WithFake : public support::MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
    fake = std::make_unique<Fake>();
#ifndef _WIN32
    machine().modules().add(kSibling, {});
#endif
    offer(true);
  }
  void TearDown() override {
    EXPECT_EQ(fake->alive, 0);
    EXPECT_EQ(references(), 0);
    points_.reset();
    MachineTest::TearDown();
  }
  // Whether it has its entry points.
  void offer(bool found) {
    const FARPROC mode = address(+[] { return HOSTKIT_UI_MODE{0x7654321}; });
    points_.reset();
    points_.emplace(
        kSibling, std::vector<support::EntryPoint>{{"CreateToastNotification", found ? address(&createFake) : nullptr},
                                                   {"GetUIMode", found ? mode : nullptr}});
  }
  static ITXToastManager* create() {
    return vlCreateToastManager(L"first", secstring(99, L'x'), true);
  }

 private:
  std::optional<support::EntryPoints> points_;
};

}  // namespace toast

#endif
