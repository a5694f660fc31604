// CSecStr: formats and string resources.
#include <vector>

#include "fixture.h"
#include "resources.h"

namespace securetext {
namespace {

constexpr const wchar_t* kLong = L"a text that is longer than what the string has room for at first";

// Lets the test look at the protected pointer.
struct Access : CSecStr {
  using CSecStr::m_pFnFindStringResourceHandle;
};

class Formatting : public SecureTextTest {
 protected:
#ifndef _WIN32
  void SetUp() override {
    SecureTextTest::SetUp();
    machine().strings().set(program, IDS_PLAIN, L"loaded");
    machine().strings().set(program, IDS_FORMAT, L"%s has %d");
    machine().strings().set(program, IDS_LONG, kLong);
    machine().strings().set(other, IDS_LONG, L"other");
  }
#endif

  const HINSTANCE program = GetModuleHandleW(nullptr);
  // A module without the first two of them.
#ifdef _WIN32
  const HINSTANCE other = GetModuleHandleW(L"kernel32.dll");
#else
  const HINSTANCE other = reinterpret_cast<HINSTANCE>(this);
#endif
};

TEST_F(Formatting, PlatformRules) {
  CSecStr string(L"before");
  string.Format(L"%s|%S|%ls|%hs|%5s|%-5s|%.2s|%*s", L"wide", "narrow", L"l", "h", L"ab", L"ab", L"abc", 4, L"x");
  EXPECT_EQ(textOf(string), L"wide|narrow|l|h|   ab|ab   |ab|   x");
  string.Format(L"%300d", 1);
  EXPECT_EQ(textOf(string), std::wstring(299, L' ') + L"1");
  string.Format(L"plain%ccd", 0);
  EXPECT_EQ(textOf(string), L"plain");
  EXPECT_TRUE(cleanBehind(string));
  // Arguments and format may be the object's own.
  string.Format(L"%s-%s", string.GetString(), string.GetString() + 3);
  EXPECT_EQ(textOf(string), L"plain-in");
  string = L"%d%%";
  string.Format(string, 5);
  EXPECT_EQ(textOf(string), L"5%");
}

TEST_F(Formatting, NullAndBrokenFormats) {
  for (const wchar_t* const nothing : {kNull, L""}) {
    CSecStr string(L"secret");
    string.Format(nothing);
    EXPECT_TRUE(string.IsEmpty() && cleanBehind(string));
  }
  // Which formats are none is the runtime's affair; either way the object is whole, and as it was if it throws.
  for (const wchar_t* const broken : {L"%", L"%n", L"%q", L"%s%", L"%.s%n"}) {
    CSecStr string(L"secret");
    int number = 0;
    const std::string_view outcome = outcomeOf([&] { string.Format(broken, &number, &number); });
    const std::wstring left = textOf(string);
    EXPECT_TRUE(outcome == kDone || (outcome == kInvalid && left == L"secret")) << broken << outcome;
#ifndef _WIN32
    EXPECT_EQ(outcome, kInvalid) << broken;
#endif
  }
#ifndef _WIN32
  // Its length was counted: a formatter that fails then leaves no half text.
  CSecStr string(L"secret");
  faults().fail("vswprintf_s");
  string.Format(L"%s!", L"text");
  EXPECT_EQ(textOf(string), L"");
#endif
}

TEST_F(Formatting, LoadsStrings) {
  CSecStr string(L"a rather long secret");
  EXPECT_EQ(string.LoadStringW(IDS_UNKNOWN), 0);
  EXPECT_EQ(textOf(string), L"a rather long secret");
  EXPECT_NE(string.LoadStringW(IDS_PLAIN), 0);
  EXPECT_EQ(textOf(string), L"loaded");
  EXPECT_TRUE(cleanBehind(string));
  EXPECT_NE(string.LoadStringW(program, IDS_LONG), 0);
  EXPECT_EQ(textOf(string), kLong);
}

TEST_F(Formatting, AsksTheFunctionForTheModuleOnceALoad) {
  static std::vector<UINT> asked;
  static HINSTANCE answer;
  const auto former = Access::m_pFnFindStringResourceHandle;
  CSecStr::UpdateFindStringResourceHandleFunction([](UINT id) { return asked.push_back(id), answer; });
  CSecStr string(L"abc");
  answer = other;
  EXPECT_EQ(string.LoadStringW(IDS_PLAIN), 0);
  EXPECT_EQ(textOf(string), L"abc");
  string.Format(UINT{IDS_FORMAT}, L"x", 1);
  EXPECT_EQ(textOf(string), L"");
#ifndef _WIN32
  EXPECT_NE(string.LoadStringW(IDS_LONG), 0);
  EXPECT_EQ(textOf(string), L"other");
  asked.pop_back();
#endif
  answer = program;
  string.Format(UINT{IDS_FORMAT}, L"x", 1);
  EXPECT_EQ(textOf(string), L"x has 1");
  EXPECT_EQ(asked, (std::vector<UINT>{IDS_PLAIN, IDS_FORMAT, IDS_FORMAT}));
  CSecStr::UpdateFindStringResourceHandleFunction(former);
}

}  // namespace
}  // namespace securetext
