// CSecStr: formats and string resources.
#include <cwchar>
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
  void SetUp() override {
    SecureTextTest::SetUp();
#ifndef _WIN32
    const HINSTANCE program = GetModuleHandleW(nullptr);
    machine().strings().set(program, IDS_PLAIN, L"loaded");
    machine().strings().set(program, IDS_FORMAT, L"%s has %d");
    machine().strings().set(program, IDS_LONG, kLong);
#endif
    former_ = Access::m_pFnFindStringResourceHandle;
    asked_.clear();
  }
  void TearDown() override {
    CSecStr::UpdateFindStringResourceHandleFunction(former_);
    SecureTextTest::TearDown();
  }

  static HINSTANCE answer(UINT id) {
    asked_.push_back(id);
    return answer_;
  }

  static inline std::vector<UINT> asked_;
  static inline HINSTANCE answer_ = nullptr;

 private:
  HINSTANCE (*former_)(UINT) = nullptr;
};

TEST_F(Formatting, PlatformRules) {
  CSecStr string(L"before");
  string.Format(L"%s|%S|%ls|%hs|%5s|%-5s|%.2s|%*s", L"wide", "narrow", L"l", "h", L"ab", L"ab", L"abc", 4, L"x");
  EXPECT_EQ(textOf(string), L"wide|narrow|l|h|   ab|ab   |ab|   x");
  string.Format(L"%300d", 1);
  EXPECT_EQ(textOf(string), std::wstring(299, L' ') + L"1");
  const wchar_t* const buffer = string.GetString();
  string.Format(L"plain");
  EXPECT_EQ(textOf(string), L"plain");
  EXPECT_EQ(string.GetString(), buffer);
  EXPECT_TRUE(zeroFrom(buffer, 5));
  string.Format(L"ab%ccd", 0);
  EXPECT_EQ(textOf(string), L"ab");
}

TEST_F(Formatting, ArgumentsAndFormatMayBeTheObjectsOwn) {
  CSecStr string(L"abc");
  string.Format(L"%s-%s", string.GetString(), string.GetString() + 1);
  EXPECT_EQ(textOf(string), L"abc-bc");
  string = L"%d%%";
  string.Format(string, 5);
  EXPECT_EQ(textOf(string), L"5%");
}

TEST_F(Formatting, NullAndBrokenFormats) {
  for (const wchar_t* const nothing : {static_cast<const wchar_t*>(nullptr), L""}) {
    CSecStr string(L"secret");
    string.Format(nothing);
    EXPECT_EQ(textOf(string), L"");
    EXPECT_TRUE(zeroFrom(string.GetString(), 0));
  }
  // Which formats are none is the runtime's affair; either way the object is whole, and as it was if it throws.
  for (const wchar_t* const broken : {L"%", L"%n", L"%q", L"%s%", L"%.s%n"}) {
    CSecStr string(L"secret");
    int number = 0;
    const std::string_view outcome = outcomeOf([&] { string.Format(broken, &number, &number); });
    const std::wstring left = textOf(string);
    if (outcome != kDone) {
      EXPECT_EQ(outcome, kInvalid);
      EXPECT_EQ(left, L"secret");
    }
#ifndef _WIN32
    EXPECT_EQ(outcome, kInvalid) << broken;
#endif
  }
}

TEST_F(Formatting, LoadsStrings) {
  CSecStr string(L"a rather long secret");
  const wchar_t* const buffer = string.GetString();
  EXPECT_EQ(string.LoadStringW(IDS_UNKNOWN), 0);
  EXPECT_EQ(string.LoadStringW(GetModuleHandleW(nullptr), IDS_UNKNOWN), 0);
  EXPECT_EQ(textOf(string), L"a rather long secret");
  EXPECT_NE(string.LoadStringW(IDS_PLAIN), 0);
  EXPECT_EQ(textOf(string), L"loaded");
  EXPECT_EQ(string.GetString(), buffer);
  EXPECT_TRUE(zeroFrom(buffer, 6));

  // The larger block is asked for when the old text is gone.
  bool zero = false;
  memory.onAllocate = [&] { zero = zeroFrom(buffer, 0); };
  EXPECT_NE(string.LoadStringW(GetModuleHandleW(nullptr), IDS_LONG), 0);
  memory.onAllocate = nullptr;
  EXPECT_TRUE(zero);
  EXPECT_EQ(textOf(string), kLong);
}

TEST_F(Formatting, AsksTheFunctionForTheModuleOnceALoad) {
  CSecStr::UpdateFindStringResourceHandleFunction(&answer);
  CSecStr string(L"abc");
  // A module without that string.
#ifdef _WIN32
  answer_ = GetModuleHandleW(L"kernel32.dll");
#else
  static int otherModule;
  answer_ = reinterpret_cast<HINSTANCE>(&otherModule);
#endif
  EXPECT_EQ(string.LoadStringW(IDS_PLAIN), 0);
  EXPECT_EQ(textOf(string), L"abc");
  string.Format(UINT{IDS_FORMAT}, L"x", 1);
  EXPECT_EQ(textOf(string), L"");
  answer_ = GetModuleHandleW(nullptr);
  EXPECT_NE(string.LoadStringW(IDS_PLAIN), 0);
  string.Format(UINT{IDS_FORMAT}, L"x", 1);
  EXPECT_EQ(textOf(string), L"x has 1");
  EXPECT_EQ(asked_, (std::vector<UINT>{IDS_PLAIN, IDS_FORMAT, IDS_PLAIN, IDS_FORMAT}));
#ifndef _WIN32
  machine().strings().set(reinterpret_cast<HINSTANCE>(&otherModule), IDS_PLAIN, L"other");
  answer_ = reinterpret_cast<HINSTANCE>(&otherModule);
  EXPECT_NE(string.LoadStringW(IDS_PLAIN), 0);
  EXPECT_EQ(textOf(string), L"other");
#endif
}

}  // namespace
}  // namespace securetext
