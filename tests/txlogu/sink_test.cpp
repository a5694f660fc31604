#include <atomic>
#include <cerrno>
#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "allocations.h"
#include "recorder.h"

namespace {

TEST(Sink, GetsTheFieldsOfATextRecord) {
  Recorder recorder;
  const wchar_t* const format = L"vlRegDeleteKey : ret=(%d)\n";
  txlogLog(L"VLHOSTKIT", TXLOG_EXIT, format, -2);
  ASSERT_EQ(recorder.records().size(), 1u);
  const Recorded& record = recorder.records()[0];
  EXPECT_EQ(record.level, TXLOG_EXIT);
  EXPECT_EQ(record.tag, L"VLHOSTKIT");
  EXPECT_EQ(record.format, format);
  EXPECT_EQ(record.text, L"vlRegDeleteKey : ret=(-2)\n");
  EXPECT_FALSE(record.binary);
  EXPECT_NE(record.threadId, 0u);
}

TEST(Sink, GetsTheBytesOfABinaryRecord) {
  Recorder recorder;
  const char bytes[] = {0, 1, '%', '\xFF'};
  txlogLogBin(L"txhostkit", TXLOG_TRACE, bytes, 4, L"label %s");
  // Null pointers and negative sizes are safe.
  txlogLogBin(nullptr, TXLOG_NOTE, nullptr, 100, nullptr);
  txlogLogBin(L"t", TXLOG_NOTE, "abc", -1, L"l");
  ASSERT_EQ(recorder.records().size(), 3u);
  const Recorded& record = recorder.records()[0];
  EXPECT_EQ(record.text, L"label %s");
  EXPECT_TRUE(record.binary && record.format == nullptr);
  EXPECT_EQ(record.data, std::string(bytes, 4));
  EXPECT_EQ(recorder.records()[1].tag, L"(null)");
  EXPECT_EQ(recorder.records()[1].text, L"(null)");
  EXPECT_FALSE(recorder.records()[1].hasData || recorder.records()[2].hasData);
}

TEST(Sink, GetsItsLevelsOnly) {
  Recorder recorder(TXLOG_LEVEL_BIT(TXLOG_NOTE) | TXLOG_LEVEL_BIT(TXLOG_EXIT) | TXLOG_LEVEL_BIT(-1));
  for (const int level : {0, 1, 2, 8, 16, 3, 17, 30, 31, 32, 48, -1, -2147483647 - 1, 2147483647}) {
    txlogLog(L"t", level, L"text");
    txlogLogBin(L"t", level, "x", 1, L"label");
  }
  std::vector<int> levels;
  for (const Recorded& record : recorder.records()) {
    if (!record.binary) levels.push_back(record.level);
  }
  EXPECT_EQ(levels, (std::vector<int>{0, 16, 31, 32, 48, -1, -2147483647 - 1, 2147483647}));
  EXPECT_EQ(recorder.records().size(), 2 * levels.size());
}

TEST(Sink, CallsAllocateNothing) {
  static int taken = 0;
  ASSERT_EQ(txlogSetSink([](void*, const txlogRecord*) { ++taken; }, nullptr, TXLOG_LEVEL_BIT(TXLOG_ERROR)),
            TXLOG_DONE);
  txlogLog(L"t", TXLOG_ERROR, L"warm up");
  const int before = allocationCount();
  txlogLog(L"t", TXLOG_ERROR, L"%s %S %d %p", L"wide", "narrow", 1, nullptr);
  txlogLogBin(L"t", TXLOG_ERROR, "x", 1, L"label");
  for (int index = 0; index < 1000; ++index) txlogLog(L"t", TXLOG_TRACE, L"off %s", L"x");
  EXPECT_EQ(allocationCount(), before);
  EXPECT_EQ(taken, 3);
  EXPECT_EQ(txlogSetSink(nullptr, nullptr, 0), TXLOG_DONE);
}

TEST(Sink, ExceptionsEndInTheChannel) {
  ASSERT_EQ(
      txlogSetSink([](void*, const txlogRecord*) { throw std::runtime_error("sink"); }, nullptr, TXLOG_ALL_LEVELS),
      TXLOG_DONE);
  EXPECT_NO_THROW(txlogLog(L"t", TXLOG_ERROR, L"text"));
  EXPECT_NO_THROW(txlogLog(L"t", TXLOG_ERROR, L"the lock is free again"));
  EXPECT_EQ(txlogSetSink(nullptr, nullptr, 0), TXLOG_DONE);
}

TEST(Sink, CallsFromWithinASinkAreDroppedOrRefused) {
  struct Nested {
    int calls = 0;
    int result = TXLOG_DONE;
  } nested;
  const auto sink = [](void* context, const txlogRecord*) {
    auto* self = static_cast<Nested*>(context);
    ++self->calls;
    txlogLog(L"t", TXLOG_ERROR, L"from within");
    self->result = txlogSetSink(nullptr, nullptr, 0);
  };
  ASSERT_EQ(txlogSetSink(sink, &nested, TXLOG_ALL_LEVELS), TXLOG_DONE);
  txlogLog(L"t", TXLOG_ERROR, L"one");
  EXPECT_EQ(nested.calls, 1);
  EXPECT_EQ(nested.result, TXLOG_REFUSED);
  txlogLog(L"t", TXLOG_ERROR, L"two");
  EXPECT_EQ(nested.calls, 2) << "the refused call has changed nothing";
  EXPECT_EQ(txlogSetSink(nullptr, nullptr, 0), TXLOG_DONE);
}

// Calls of all threads come one at a time, and none after the sink has been replaced.
TEST(Sink, IsNeverCalledTwiceAtOnceNorAfterItsReplacement) {
  struct Target {
    std::atomic<bool> alive{true};
    std::atomic<int> inside{0};
    std::atomic<int> faults{0};
    long calls = 0;  // unprotected: a thread checker sees calls that overlap
  };
  const auto sink = [](void* context, const txlogRecord*) {
    auto* target = static_cast<Target*>(context);
    if (!target->alive || ++target->inside != 1) ++target->faults;
    ++target->calls;
    --target->inside;
  };
  std::vector<Target> targets(40);
  ASSERT_EQ(txlogSetSink(sink, &targets[0], TXLOG_ALL_LEVELS), TXLOG_DONE);
  std::atomic<bool> stop{false};
  std::vector<std::thread> threads;
  for (int index = 0; index < 4; ++index) {
    threads.emplace_back([&stop, index] {
      while (!stop) txlogLog(L"t", TXLOG_TRACE, L"%d %s", index, L"text");
    });
  }
  for (std::size_t index = 1; index < targets.size(); ++index) {
    ASSERT_EQ(txlogSetSink(sink, &targets[index], TXLOG_ALL_LEVELS), TXLOG_DONE);
    targets[index - 1].alive = false;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  stop = true;
  for (std::thread& thread : threads) thread.join();
  ASSERT_EQ(txlogSetSink(nullptr, nullptr, 0), TXLOG_DONE);
  long calls = 0;
  for (const Target& target : targets) {
    EXPECT_EQ(target.faults, 0);
    calls += target.calls;
  }
  EXPECT_GT(calls, 0);
}

}  // namespace
