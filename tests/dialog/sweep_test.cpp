// Calls and allocations that fail, one after the other, in a whole life of a secure dialog.
#include <support/allocfault.h>
#include <support/faultsweep.h>

#include <new>
#include <optional>
#include <string_view>

#include "fixture.h"

namespace dialog {
namespace {

enum class End { ok, other, thrown };

class LogOn : public Driven<CSecureDialog> {
 public:
  LogOn() : Driven(IDD_LOG_ON, nullptr) {}
  CSecStr password;
  CSecStr second;

 protected:
  BOOL OnInitDialog() override {
    OnInitDialogSecure();
    begin();
    return TRUE;
  }
  void DoDataExchange(CDataExchange* exchange) override {
    DDX_Text(exchange, IDC_PASSWORD, password);
    DDX_Text(exchange, IDC_SECOND, second);
  }
};

constexpr std::wstring_view kTyped = L"hunter2";

// Whether it is what was typed, but for characters that a failed call has swallowed.
bool isTyped(std::wstring_view text) {
  std::size_t next = 0;
  for (const wchar_t character : text) {
    next = kTyped.find(character, next);
    if (next++ == std::wstring_view::npos) {
      return false;
    }
  }
  return true;
}

// Types and presses OK, with the fault armed when the dialog begins. Whatever comes of it, the dialog is gone, and
// the password is empty, or what reached the control.
class DialogSweep : public DialogTest {
 protected:
  template <class Arm, class Disarm>
  End logOn(Arm arm, Disarm disarm) {
    LogOn dialog;
    dialog.steps = {[&] { dialog.type(IDC_PASSWORD, std::wstring(kTyped)); }, [&] { dialog.press(IDOK); }};
    // A message that was not posted, or not handled, leaves the dialog waiting: someone closes it.
    machine().windows().setUser([](HWND window) {
      faults().forgetPlans();
      ::EndDialog(window, IDCANCEL);
    });
    End end = End::other;
    arm();
    try {
      end = dialog.DoModal() == IDOK ? End::ok : End::other;
    } catch (CException* exception) {
      exception->Delete();
      end = End::thrown;
    } catch (const std::bad_alloc&) {
      end = End::thrown;
    }
    disarm();
    EXPECT_EQ(dialog.m_hWnd, nullptr);
    const std::wstring_view password = dialog.password.GetString();
    EXPECT_TRUE(isTyped(password)) << password.size();
    return end;
  }
};

TEST_F(DialogSweep, EveryPlatformCall) {
  const int reached = support::sweepFaults(
      "CSecureDialog", [this](auto arm) { return logOn(arm, [] {}); },
      [this](End end, const std::string& failed, support::FaultSpan) {
        expectNothingOpen();
        EXPECT_TRUE(!failed.empty() || end == End::ok);
      });
  EXPECT_TRUE(reached > 50 || !support::isWholeSweep()) << reached;
}

TEST_F(DialogSweep, EveryAllocation) {
  for (const auto span : {support::AllocFault::Span::once, support::AllocFault::Span::forEver}) {
    bool failed = true;
    for (std::uint64_t n = 1; failed; ++n) {
      ASSERT_LT(n, 500u);
      std::optional<support::AllocFault> fault;
      const End end = logOn([&] { fault.emplace(n, span); }, [&] { failed = fault->end(); });
      EXPECT_EQ(end == End::ok, !failed) << n;
      expectNothingOpen();
    }
  }
}

}  // namespace
}  // namespace dialog
