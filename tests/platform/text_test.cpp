// Narrow and wide text.
#include <gtest/gtest.h>

#include <string>

#include <support/guardedbuffer.h>
#include <support/machinetest.h>

#include <vlplatform/windows.h>

namespace {

using TextTest = support::MachineTest;

// What a conversion leaves in its buffer, and nothing behind it.
template <class Char, class Convert>
std::basic_string<Char> converted(Convert convert) {
  support::GuardedBuffer<Char> buffer(16);
  const auto size = static_cast<std::size_t>(convert(buffer.data()));
  EXPECT_TRUE(size != 0 ? buffer.untouched(size) : buffer.guardsIntact());
  return std::basic_string<Char>(buffer.data(), size);
}
std::wstring widen(const std::string& text, DWORD flags = 0) {
  const int bytes = static_cast<int>(text.size());
  return converted<wchar_t>(
      [&](wchar_t* to) { return MultiByteToWideChar(CP_UTF8, flags, text.data(), bytes, to, 16); });
}
std::string narrow(wchar_t c, DWORD flags = 0) {
  return converted<char>(
      [&](char* to) { return WideCharToMultiByte(CP_UTF8, flags, &c, 1, to, 16, nullptr, nullptr); });
}

TEST_F(TextTest, AllCodePointsComeBack) {
  faults().reset();  // many calls
  char bytes[8];
  wchar_t back[4];
  for (wchar_t c = 1; c <= 0x10FFFF; ++c) {
    const bool surrogate = c >= 0xD800 && c <= 0xDFFF;
    const int size = WideCharToMultiByte(CP_ACP, 0, &c, 1, bytes, 8, nullptr, nullptr);
    ASSERT_EQ(size, surrogate ? 3 : c < 0x80 ? 1 : c < 0x800 ? 2 : c < 0x10000 ? 3 : 4) << static_cast<int>(c);
    ASSERT_EQ(MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, bytes, size, back, 4), 1) << static_cast<int>(c);
    ASSERT_EQ(back[0], surrogate ? 0xFFFD : c);
  }
}

// Each longest part that could begin a code point becomes one replacement.
TEST_F(TextTest, IllFormedBytes) {
  constexpr wchar_t r = 0xFFFD;
  const std::pair<std::string, std::wstring> rows[] = {
      {"a\xFFz", {L'a', r, L'z'}}, {"\xC0\xAF", {r, r}},
      {"\xE0\x80\xAF", {r, r, r}}, {"\xF0\x80\x80\xAF", {r, r, r, r}},
      {"\xED\xA0\x80", {r, r, r}}, {"\xF4\x90\x80\x80", {r, r, r, r}},
      {"\xE2\x82Z", {r, L'Z'}},    {"\xF0\x9F\x98\xE2\x82\xAC", {r, 0x20AC}},
      {"\xC3\xC3\xA9", {r, 0xE9}}, {"\xF1\x80\x80\xE1\x80\xC2", {r, r, r}},
  };
  for (const auto& [bytes, expected] : rows) {
    EXPECT_EQ(widen(bytes), expected) << testing::PrintToString(bytes);
    EXPECT_EQ(widen(bytes, MB_ERR_INVALID_CHARS), L"");
    EXPECT_EQ(GetLastError(), DWORD{ERROR_NO_UNICODE_TRANSLATION});
  }
  for (const wchar_t c : {wchar_t{0xD800}, wchar_t{0xDFFF}, wchar_t{0x110000}, static_cast<wchar_t>(-1)}) {
    EXPECT_EQ(narrow(c), "\xEF\xBF\xBD");
    EXPECT_EQ(narrow(c, WC_ERR_INVALID_CHARS), "");
    EXPECT_EQ(GetLastError(), DWORD{ERROR_NO_UNICODE_TRANSLATION});
  }
}

}  // namespace
