/// What only POSIX has: forks, full devices, broken pipes.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <thread>
#include <vector>

#include "child.h"
#include "recorder.h"

namespace {

TEST(Posix, ForkedProcessesCanLogWhileOtherThreadsDo) {
  std::atomic<bool> stop{false};
  static int taken;
  taken = 0;
  ASSERT_EQ(txlogSetSink([](void*, const txlogRecord*) { ++taken; }, nullptr, TXLOG_ALL_LEVELS), TXLOG_DONE);
  std::vector<std::thread> threads;
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
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_EQ(status, 0) << "round " << round;
  }
  stop = true;
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(txlogSetSink(nullptr, nullptr, 0), TXLOG_DONE);
}

TEST(Posix, AFullDeviceIsNamedOnceAndEndsNothing) {
  const TemporaryFolder folder;
  setTxlog("file=/dev/full");
  EXPECT_TRUE(runEmit("levels", folder / u8"stderr"));
  setTxlog("");
  EXPECT_EQ(linesOf(folder / u8"stderr"), std::vector<std::string>{"txlogu: the log file can't be written: /dev/full"});
}

TEST(Posix, ABrokenPipeEndsNothing) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  close(ends[0]);
  const std::string program = emitProgram().string();
  setTxlog("stderr");
  const pid_t child = fork();
  if (child == 0) {
    dup2(ends[1], STDERR_FILENO);
    execl(program.c_str(), program.c_str(), "levels", static_cast<char*>(nullptr));
    _exit(1);
  }
  setTxlog("");
  close(ends[1]);
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
}

}  // namespace
