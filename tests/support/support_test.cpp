// The tools of the other tests: a tool that sees nothing would let everything pass.
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include <support/guardedbuffer.h>
#include <support/logcapture.h>

#ifndef _WIN32
#include <unistd.h>

#include <csignal>
#endif

namespace support {
namespace {

TEST(LogCaptureTest, RecordsWhatIsLogged) {
  LogCapture log;
  txlogLog(L"tag", TXLOG_TRACE, L"%s has type %d", L"C:", 3);
  txlogLogBin(L"other", TXLOG_ERROR, "\x01\xff", 2, L"label");
  EXPECT_TRUE(log.was({{L"tag", TXLOG_TRACE, L"C: has type 3"}, {L"other", TXLOG_ERROR, L"label", {0x01, 0xff}}}));
  EXPECT_TRUE(log.was({}));
}

TEST(LogCaptureTest, ShowsWhatDiffers) {
  LogCapture log;
  const LogRecord entry{L"tag", TXLOG_ENTRY, L"vlFoo"};
  const auto logEntry = [] { txlogLog(L"tag", TXLOG_ENTRY, L"vlFoo"); };
  for (const std::vector<LogRecord>& expected : {std::vector<LogRecord>{},
                                                 {entry, entry},
                                                 {{L"Tag", TXLOG_ENTRY, L"vlFoo"}},
                                                 {{L"tag", TXLOG_EXIT, L"vlFoo"}},
                                                 {{L"tag", TXLOG_ENTRY, L"vlFoo "}},
                                                 {{L"tag", TXLOG_ENTRY, L"vlFoo", {0}}}}) {
    logEntry();
    const testing::AssertionResult result = log.was(expected);
    EXPECT_FALSE(result);
    EXPECT_NE(std::string(result.message()).find("level 8 L\"tag\" L\"vlFoo\""), std::string::npos) << result.message();
  }
}

TEST(GuardedBufferTest, SeesEveryWrite) {
  GuardedBuffer<wchar_t> buffer(4);
  EXPECT_TRUE(buffer.untouched());
  buffer.data()[1] = L'x';
  EXPECT_FALSE(buffer.untouched());
  EXPECT_FALSE(buffer.untouched(1));
  EXPECT_TRUE(buffer.untouched(2));
  for (const std::ptrdiff_t outside : {std::ptrdiff_t{-1}, std::ptrdiff_t{4}}) {
    buffer.refill();
    buffer.data()[outside] = 0;
    EXPECT_FALSE(buffer.guardsIntact()) << outside;
    EXPECT_FALSE(buffer.untouched(4)) << outside;
  }
}

#ifndef _WIN32
TEST(WatchdogDeathTest, RunsDuringATestAndNamesItWhenTheTimeIsOver) {
  const unsigned remaining = alarm(0);
  EXPECT_GT(remaining, 0u);
  alarm(remaining);
  EXPECT_EXIT(std::raise(SIGALRM), testing::ExitedWithCode(124), "WatchdogDeathTest.RunsDuringATest.* has not ended");
}
#endif

}  // namespace
}  // namespace support
