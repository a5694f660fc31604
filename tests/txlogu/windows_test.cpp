/// What only Windows has: the last-error value and the ANSI code page.
#include <windows.h>

#include "recorder.h"

namespace {

TEST(Windows, LastErrorOutlivesACall) {
  ASSERT_EQ(txlogSetSink([](void*, const txlogRecord*) { SetLastError(ERROR_GEN_FAILURE); }, nullptr,
                         TXLOG_LEVEL_BIT(TXLOG_ERROR)),
            TXLOG_DONE);
  SetLastError(0xdeadbeef);
  txlogLog(L"t", TXLOG_ERROR, L"%S", "\xFF\xFE narrow");
  txlogLogBin(L"t", TXLOG_ERROR, "x", 1, L"label");
  txlogLog(L"t", TXLOG_TRACE, L"off");
  EXPECT_EQ(GetLastError(), 0xdeadbeef);
  EXPECT_EQ(txlogSetSink(nullptr, nullptr, 0), TXLOG_DONE);
  txlogLog(L"t", TXLOG_ERROR, L"the first look at TXLOG");
  EXPECT_EQ(GetLastError(), 0xdeadbeef);
}

// Whatever the code page is: the same text as the platform's own conversion of all its characters at once.
TEST(Windows, NarrowTextIsInTheAnsiCodePage) {
  std::string narrow;
  for (int byte = 0x20; byte <= 0xFF; ++byte) {
    const char one = static_cast<char>(byte);
    wchar_t wide[2];
    if (MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, &one, 1, wide, 2) == 1) narrow += one;
  }
  wchar_t expected[512];
  const int length = MultiByteToWideChar(CP_ACP, 0, narrow.c_str(), -1, expected, 512);
  ASSERT_GT(length, 90);
  Recorder recorder;
  txlogLog(L"t", TXLOG_NOTE, L"%S", narrow.c_str());
  EXPECT_EQ(recorder.lastText(), expected);
}

}  // namespace
