#include <vlhostkit/toast.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "arguments.h"
#include "command.h"
#include "modes.h"
#include "results.h"
#include "text.h"

namespace {

using namespace VL::Framework;

constexpr const char* kShowNotes =
    R"(The toast ends by a click, by itself after some seconds (unless --stay), or by a hide
request from another thread (--seconds). Where there are no windows it is printed on
standard error, and can't be clicked.)";

struct Toast {
  std::string title;
  std::string body;
  bool stays = false;
  std::optional<double> seconds;
};

struct DeleteManager {
  void operator()(ITXToastManager* manager) const { vlDeleteToastManager(manager); }
};

/// Asks for the toast to be hidden after some time, on a thread of its own; unless it ends before.
class HideLater {
 public:
  HideLater(ITXToastManager& manager, double seconds) : thread_([this, &manager, seconds] { run(manager, seconds); }) {}
  ~HideLater() {
    {
      const std::lock_guard lock(mutex_);
      over_ = true;
    }
    changed_.notify_one();
    thread_.join();
  }
  HideLater(const HideLater&) = delete;
  HideLater& operator=(const HideLater&) = delete;

 private:
  void run(ITXToastManager& manager, double seconds) {
    std::chrono::duration<double> time(seconds);
    std::unique_lock lock(mutex_);
    while (!changed_.wait_for(lock, time, [this] { return over_; })) {
      // A request is lost before the toast displays, so it is made again until the toast has ended.
      manager.HideToast();
      time = std::chrono::milliseconds(20);
    }
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  bool over_ = false;
  std::thread thread_;
};

std::string reasonInWords(int reason) {
  switch (reason) {
    case kToastActivated:
      return "clicked";
    case kToastTimedOut:
      return "its time was over";
    case kToastHidden:
      return "hidden";
    case kToastQuit:
      return "the thread was told to quit";
    default:
      return "for a reason of the sibling's own";
  }
}

secstring secretText(const std::string& text) {
  const std::wstring wide = toWide(text);
  return {wide.begin(), wide.end()};
}

void showToast(Context& context, const Toast& toast) {
  Json object{{"title", toast.title}, {"body", toast.body}, {"stays", toast.stays}};
  const std::unique_ptr<ITXToastManager, DeleteManager> manager(
      vlCreateToastManager(secretText(toast.title), secretText(toast.body), toast.stays));
  if (manager == nullptr) {
    vlDeleteToastManager(nullptr);  // each create has its delete
    context.output.failure("toast", "there is no tx.hostkit.winrt library that makes one", ERROR_MOD_NOT_FOUND,
                           std::move(object));
    return;
  }
  int reason = kToastNotShown;
  {
    std::optional<HideLater> hide;
    if (toast.seconds) {
      hide.emplace(*manager, *toast.seconds);
    }
    reason = manager->ShowToast();
  }
  if (reason == kToastNotShown) {
    context.output.failure("toast", "it can't be shown here", ERROR_GEN_FAILURE, std::move(object));
    return;
  }
  object["reason"] = reason;
  object["words"] = reasonInWords(reason);
  context.output.result("The toast has ended: " + reasonInWords(reason) + " (" + std::to_string(reason) + ")", object);
}

}  // namespace

std::string modeInWords(HOSTKIT_UI_MODE mode) {
  switch (mode) {
    case HOSTKIT_UI_MODE_UNKNOWN:
      return "unknown";
    case HOSTKIT_UI_MODE_DESKTOP:
      return "desktop";
    case HOSTKIT_UI_MODE_TABLET:
      return "tablet";
  }
  return "of the sibling's own";
}

void registerToast(CLI::App& app, Context& context) {
  CLI::App* const group = app.add_subcommand("toast", "Toasts");
  group->require_subcommand(1);
  CLI::App* const show = group->add_subcommand("show", "Show a toast until it ends");
  const auto toast = std::make_shared<Toast>();
  asWritten(show->add_option("TITLE", toast->title, "The first line"))->required();
  asWritten(show->add_option("BODY", toast->body, "The text below it"))->required();
  show->add_flag("--stay", toast->stays, "It does not end by itself");
  show->add_option("--seconds", toast->seconds, "Hide it from another thread after so many seconds")
      ->check(CLI::Range(0.0, 86400.0))
      ->type_name("N");
  show->footer(kShowNotes);
  show->callback([&context, toast] { context.command = [&context, toast] { showToast(context, *toast); }; });

  CLI::App* const mode = app.add_subcommand("uimode", "Say how the user works with the machine");
  mode->callback([&context] {
    context.command = [&context] {
      const HOSTKIT_UI_MODE answer = vlGetUIMode();
      const auto number = static_cast<int>(answer);
      context.output.result(modeInWords(answer) + " (" + std::to_string(number) + ")",
                            {{"mode", modeInWords(answer)}, {"value", number}});
    };
  });

  CLI::App* const winrt = app.add_subcommand("winrt", "Say whether this version of the system has the Windows Runtime");
  winrt->callback([&context] {
    context.command = [&context] {
      const bool supported = vlIsWinRTSupported();
      context.output.result(supported ? "yes" : "no", {{"supported", supported}});
    };
  });
}
