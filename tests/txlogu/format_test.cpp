#include <climits>
#include <cstdint>
#include <type_traits>

#include "recorder.h"

namespace {

template <typename... Arguments>
std::wstring formatted(const wchar_t* format, Arguments... arguments) {
  Recorder recorder;
  txlogLog(L"tag", TXLOG_TRACE, format, arguments...);
  return recorder.lastText();
}

TEST(Format, Integers) {
  EXPECT_EQ(formatted(L"(%d) %d%d %d", 0, -1, INT_MAX, INT_MIN), L"(0) -12147483647 -2147483648");
  EXPECT_EQ(formatted(L"0x%x %x %x", 0u, 0xDEADBEEFu, -1), L"0x0 deadbeef ffffffff");
}

TEST(Format, PointersShowAllDigits) {
  const std::wstring zeros(2 * sizeof(void*) - 4, L'0');
  EXPECT_EQ(formatted(L"%p", reinterpret_cast<void*>(0xABCD)), zeros + L"ABCD");
  EXPECT_EQ(formatted(L"(%p,%p)", nullptr, reinterpret_cast<void*>(0x1F)), L"(" + zeros + L"0000," + zeros + L"001F)");
  EXPECT_EQ(formatted(L"%p", reinterpret_cast<void*>(UINTPTR_MAX)), std::wstring(2 * sizeof(void*), L'F'));
}

TEST(Format, StringsFollowThePlatformsWideRules) {
  EXPECT_EQ(formatted(L"%s|%ls|%S", L"w\u00e4", L"W\u4e2d", "narrow"), L"w\u00e4|W\u4e2d|narrow");
  EXPECT_EQ(formatted(L"[%s][%ls][%S]", L"", L"", ""), L"[][][]");
  EXPECT_EQ(formatted(L"%s %ls %S %d", nullptr, nullptr, nullptr, 7), L"(null) (null) (null) 7");
  EXPECT_EQ(formatted(L"%s", L"%d %n"), L"%d %n") << "an argument is no format";
}

TEST(Format, NarrowTextIsDecoded) {
  if constexpr (sizeof(wchar_t) == 2) {
    // Every ANSI code page has ASCII; what lies above differs from machine to machine.
    EXPECT_EQ(formatted(L"%S", "~ az"), L"~ az");
  } else {
    EXPECT_EQ(formatted(L"%S", "\xC3\xA4 \xE4\xB8\xAD \xF0\x9F\x98\x80"), L"\u00e4 \u4e2d \U0001F600");
    EXPECT_EQ(formatted(L"%S", "\xED\xA0\x80|\xF4\x90\x80\x80"), L"\uFFFD\uFFFD\uFFFD|\uFFFD\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(formatted(L"%S", "a\xE2\x82"), L"a\uFFFD") << "cut within a character";
  }
}

TEST(Format, PercentAndNoConversion) {
  EXPECT_EQ(formatted(L"100%% %d", 1), L"100% 1");
  EXPECT_EQ(formatted(L""), L"");
  EXPECT_EQ(formatted(nullptr), L"(null)");
  EXPECT_EQ(formatted(L"end %"), L"end %");
}

// The argument's size is unknown, so what follows can't be trusted either: no later argument may be touched.
TEST(Format, UnknownConversionEndsTheFormatting) {
  const auto* const poison = reinterpret_cast<const wchar_t*>(16);
  for (const wchar_t* const unknown : {L"%u", L"%5d", L"%-d", L"%.3s", L"%hs", L"%hS", L"%ld", L"%l", L"%lS", L"%n",
                                       L"%f", L"%X", L"%i", L"%c", L"% s", L"%\n"}) {
    const std::wstring format = std::wstring(L"%d ") + unknown + L" %s %% %d";
    EXPECT_EQ(formatted(format.c_str(), 3, poison, poison), L"3" + format.substr(2));
  }
}

TEST(Format, LongTextIsCut) {
  const std::wstring full(TXLOG_MAX_TEXT, L'x');
  const std::wstring tooLong = full + L"y";
  Recorder recorder;
  txlogLog(L"tag", TXLOG_TRACE, tooLong.c_str());
  txlogLog(L"tag", TXLOG_TRACE, L"%s%s", L"x", full.c_str());
  txlogLog(L"tag", TXLOG_TRACE, L"%S", std::string(TXLOG_MAX_TEXT + 1, 'x').c_str());
  txlogLogBin(L"tag", TXLOG_TRACE, "", 0, tooLong.c_str());
  txlogLog(L"tag", TXLOG_TRACE, L"%s", full.c_str());
  ASSERT_EQ(recorder.records().size(), 5u);
  for (const Recorded& record : recorder.records()) {
    EXPECT_EQ(record.textCut, &record != &recorder.records().back() ? 1 : 0);
    EXPECT_EQ(record.text, full);
  }
  if constexpr (sizeof(wchar_t) == 2) {
    const std::wstring front = full.substr(1);
    EXPECT_EQ(formatted(L"%s\U0001F600", front.c_str()), front) << "no half of a surrogate pair";
  }
}

}  // namespace
