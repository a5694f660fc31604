#include <gtest/gtest.h>
#include <tx.cext/converter.h>

#include <vlhostkit/types.h>
#include <string>
#include <string_view>

namespace {

using VL::Framework::CConverter;

std::wstring converted(std::string_view text, const wchar_t* before = L"") {
  secstring out = before;
  CConverter::charToString(text.data(), static_cast<int>(text.size()), out);
  return {out.begin(), out.end()};
}

TEST(Converter, AppendsTheGivenLengthAndNoMore) {
  EXPECT_EQ(converted("plain text"), L"plain text");
  EXPECT_EQ(converted(std::string_view("longer than it").substr(0, 6), L"before, "), L"before, longer");
  EXPECT_EQ(converted(std::string_view("a\0b", 3)), std::wstring(L"a\0b", 3));
  EXPECT_EQ(converted(std::string(5000, 'x')), std::wstring(5000, L'x'));
}

TEST(Converter, LeavesTheTargetForNoText) {
  secstring out = L"kept";
  CConverter::charToString(nullptr, 4, out);
  CConverter::charToString("text", 0, out);
  CConverter::charToString("text", -1, out);
  EXPECT_EQ(out, L"kept");
}

// The process's code page differs from machine to machine; the platform says what its bytes are.
TEST(Converter, TakesBytesAsThePlatformDoes) {
  for (int byte = 1; byte < 256; ++byte) {
    const std::string text = {'<', static_cast<char>(byte), '>'};
    wchar_t expected[8];
    const int chars = MultiByteToWideChar(CP_ACP, 0, text.data(), 3, expected, 8);
    ASSERT_GT(chars, 0);
    EXPECT_EQ(converted(text), std::wstring(expected, static_cast<std::size_t>(chars))) << byte;
  }
}

TEST(Converter, BytesThatAreNoTextBecomeReplacementCharacters) {
  if (GetACP() != CP_UTF8) {
    GTEST_SKIP() << "the code page is not UTF-8";
  }
  EXPECT_EQ(converted("\xC3\xA9"), L"\u00E9");
  EXPECT_EQ(converted("a\xFF\xC3"), L"a\uFFFD\uFFFD");
}

}  // namespace
