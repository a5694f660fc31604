/// What only POSIX has: forks, full devices, broken pipes; and counted allocations.
#include <support/allocfault.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "environment.h"
#include "recorder.h"

namespace {

using Posix = Environment;

TEST_F(Posix, ForkedProcessesCanLogWhileOtherThreadsDo) {
  std::atomic<bool> stop{false};
  static int taken;
  taken = 0;
  ASSERT_EQ(txlogSetSink([](void*, const txlogRecord*) { ++taken; }, nullptr, TXLOG_ALL_LEVELS), TXLOG_DONE);
  std::vector<std::jthread> threads;
  for (int index = 0; index < 2; ++index) {
    threads.emplace_back([&stop] {
      while (!stop) txlogLog(L"t", TXLOG_TRACE, L"text");
    });
  }
  for (int round = 0; round < 50; ++round) {
    const pid_t child = fork();
    if (child == 0) {
      alarm(20);  // a lock that nobody will ever release
      const int before = taken;
      txlogLog(L"t", TXLOG_TRACE, L"child");
      _exit(taken == before + 1 ? 0 : 1);
    }
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0) << "round " << round;
  }
  stop = true;
  threads.clear();
  EXPECT_EQ(txlogSetSink(nullptr, nullptr, 0), TXLOG_DONE);
}

TEST_F(Posix, AFullDeviceIsNamedOnceAndEndsNothing) {
  setTxlog("file=/dev/full");
  EXPECT_EQ(standardErrorOf("levels"), Lines{"txlogu: the log file can't be written: /dev/full"});
}

TEST_F(Posix, ABrokenPipeEndsNothing) {
  setTxlog("stderr");
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  close(ends[0]);
  const std::string program = emitProgram();
  const pid_t child = fork();
  if (child == 0) {
    dup2(ends[1], STDERR_FILENO);
    execl(program.c_str(), program.c_str(), "levels", static_cast<char*>(nullptr));
    _exit(1);
  }
  close(ends[1]);
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
}

TEST(Allocations, CallsMakeNone) {
  static int taken = 0;
  ASSERT_EQ(txlogSetSink([](void*, const txlogRecord*) { ++taken; }, nullptr, TXLOG_LEVEL_BIT(TXLOG_ERROR)),
            TXLOG_DONE);
  support::AllocFault none(0);
  txlogLog(L"t", TXLOG_ERROR, L"%s %S %d %p", L"wide", "narrow", 1, nullptr);
  txlogLogBin(L"t", TXLOG_ERROR, "x", 1, L"label");
  for (int index = 0; index < 1000; ++index) txlogLog(L"t", TXLOG_TRACE, L"off %s", L"x");
  none.end();
  EXPECT_EQ(none.allocations(), 0u);
  EXPECT_EQ(taken, 2);
  EXPECT_EQ(txlogSetSink(nullptr, nullptr, 0), TXLOG_DONE);
}

}  // namespace
