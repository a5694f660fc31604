#include <array>
#include <atomic>
#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

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
  EXPECT_EQ(record.binary, 0);
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
  EXPECT_TRUE(record.binary == 1 && record.format == nullptr);
  EXPECT_EQ(record.data, std::string(bytes, 4));
  EXPECT_EQ(recorder.records()[1].tag, L"(null)");
  EXPECT_EQ(recorder.records()[1].text, L"(null)");
  EXPECT_EQ(recorder.records()[1].txlogRecord::data, nullptr);
  EXPECT_EQ(recorder.records()[2].txlogRecord::data, nullptr);
}

TEST(Sink, GetsItsLevelsOnly) {
  Recorder recorder(TXLOG_LEVEL_BIT(TXLOG_NOTE) | TXLOG_LEVEL_BIT(TXLOG_EXIT) | TXLOG_LEVEL_BIT(-1));
  for (const int level : {0, 1, 2, 8, 16, 3, 17, 30, 31, 32, 48, -1, -2147483647 - 1, 2147483647}) {
    txlogLog(L"t", level, L"text");
    txlogLogBin(L"t", level, "x", 1, L"label");
  }
  std::vector<int> levels;
  for (const Recorded& record : recorder.records()) {
    if (record.binary == 0) levels.push_back(record.level);
  }
  EXPECT_EQ(levels, (std::vector<int>{0, 16, 31, 32, 48, -1, -2147483647 - 1, 2147483647}));
  EXPECT_EQ(recorder.records().size(), 2 * levels.size());
}

TEST(Sink, ExceptionsEndInTheChannel) {
  const auto sink = [](void*, const txlogRecord*) { throw std::runtime_error("sink"); };
  ASSERT_EQ(txlogSetSink(sink, nullptr, TXLOG_ALL_LEVELS), TXLOG_DONE);
  EXPECT_NO_THROW(txlogLog(L"t", TXLOG_ERROR, L"text"));
  EXPECT_NO_THROW(txlogLog(L"t", TXLOG_ERROR, L"the lock is free again"));
  EXPECT_EQ(txlogSetSink(nullptr, nullptr, 0), TXLOG_DONE);
}

TEST(Sink, CallsFromWithinASinkAreDroppedOrRefused) {
  const auto sink = [](void* calls, const txlogRecord*) {
    ++*static_cast<int*>(calls);
    txlogLog(L"t", TXLOG_ERROR, L"from within");
    EXPECT_EQ(txlogSetSink(nullptr, nullptr, 0), TXLOG_REFUSED);
  };
  int calls = 0;
  ASSERT_EQ(txlogSetSink(sink, &calls, TXLOG_ALL_LEVELS), TXLOG_DONE);
  for (int call = 1; call <= 2; ++call) {
    txlogLog(L"t", TXLOG_ERROR, L"text");
    EXPECT_EQ(calls, call);  // the refused call has changed nothing
  }
  EXPECT_EQ(txlogSetSink(nullptr, nullptr, 0), TXLOG_DONE);
}

// Calls of all threads come one at a time, and none after the sink has been replaced.
TEST(Sink, IsNeverCalledTwiceAtOnceNorAfterItsReplacement) {
  static std::atomic<int> inside, faults;
  static long calls;  // unprotected: a thread checker sees calls that overlap
  inside = faults = 0;
  calls = 0;
  const auto sink = [](void* replaced, const txlogRecord*) {
    const bool alone = ++inside == 1;
    faults += !alone || *static_cast<std::atomic<bool>*>(replaced);
    ++calls;
    --inside;
  };
  std::array<std::atomic<bool>, 40> replaced{};
  ASSERT_EQ(txlogSetSink(sink, replaced.data(), TXLOG_ALL_LEVELS), TXLOG_DONE);
  std::atomic<bool> stop{false};
  std::vector<std::jthread> threads;
  for (int index = 0; index < 4; ++index) {
    threads.emplace_back([&stop, index] {
      while (!stop) txlogLog(L"t", TXLOG_TRACE, L"%d %s", index, L"text");
    });
  }
  for (std::size_t index = 1; index < replaced.size(); ++index) {
    EXPECT_EQ(txlogSetSink(sink, &replaced[index], TXLOG_ALL_LEVELS), TXLOG_DONE);
    replaced[index - 1] = true;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  stop = true;
  threads.clear();
  EXPECT_EQ(txlogSetSink(nullptr, nullptr, 0), TXLOG_DONE);
  EXPECT_EQ(faults, 0);
  EXPECT_GT(calls, 0);
}

}  // namespace
