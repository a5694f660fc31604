// Ends a test program whose current test case hangs, with a message that names the case: ctest's own time limit says
// which program hung, but not where. VL_TEST_SECONDS sets another limit for a case; 0 is none, for debuggers.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#ifdef _WIN32
#include <io.h>
#include <windows.h>
#else
#include <unistd.h>

#include <csignal>
#endif

namespace {

constexpr int kExitCode = 124;

// Written before the time starts, since a signal handler can't format.
char message[512];

#ifdef _WIN32

void CALLBACK expire(void*, BOOLEAN) {
  _write(2, message, static_cast<unsigned>(std::strlen(message)));
  TerminateProcess(GetCurrentProcess(), kExitCode);
}

class Timer {
 public:
  void start(unsigned seconds) {
    CreateTimerQueueTimer(&timer_, nullptr, expire, nullptr, seconds * 1000, 0, WT_EXECUTEONLYONCE);
  }
  void stop() {
    if (timer_ != nullptr) {
      DeleteTimerQueueTimer(nullptr, timer_, INVALID_HANDLE_VALUE);
      timer_ = nullptr;
    }
  }

 private:
  HANDLE timer_ = nullptr;
};

#else

void expire(int) {
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, message, std::strlen(message));
  _exit(kExitCode);
}

class Timer {
 public:
  Timer() { std::signal(SIGALRM, expire); }
  // NOLINTBEGIN(readability-convert-member-functions-to-static): called as the other target's
  void start(unsigned seconds) { alarm(seconds); }
  void stop() { alarm(0); }
  // NOLINTEND(readability-convert-member-functions-to-static)
};

#endif

class Watchdog : public testing::EmptyTestEventListener {
 public:
  void OnTestStart(const testing::TestInfo& test) override {
    if (seconds_ != 0) {
      std::snprintf(message, sizeof message, "\nwatchdog: %s.%s has not ended after %u s\n", test.test_suite_name(),
                    test.name(), seconds_);
      timer_.start(seconds_);
    }
  }
  void OnTestEnd(const testing::TestInfo&) override { timer_.stop(); }

 private:
  static unsigned limit() {
    const char* const text = std::getenv("VL_TEST_SECONDS");
    return text == nullptr ? 60 : static_cast<unsigned>(std::strtoul(text, nullptr, 10));
  }

  unsigned seconds_ = limit();
  Timer timer_;
};

[[maybe_unused]] const bool installed = [] {
  testing::UnitTest::GetInstance()->listeners().Append(new Watchdog);
  return true;
}();

}  // namespace
