// What needs the native machine: counted calls and calls that fail.
#include <string>
#include <vector>

#include "fixture.h"
#include "resources.h"

namespace securetext {
namespace {

class SecureTextFaults : public SecureTextTest {
 protected:
  // `hits` times a text to replace, with other text between, and what replacing makes of it.
  struct Sample {
    std::wstring text;
    std::wstring expected;
  };
  static Sample sample(int hits, const std::wstring& newText) {
    Sample made;
    for (int i = 0; i < hits; ++i) {
      made.text += L"abAB";
      made.expected += newText + L"AB";
    }
    return made;
  }
};

// Moving the rest of the text at each hit would take minutes here, and the watchdog would end it.
TEST_F(SecureTextFaults, ReplacesInLargeTexts) {
  constexpr int kHits = 400'000;
  for (const wchar_t* const newText : {L"", L"x", L"xy", L"longer"}) {
    const auto [text, expected] = sample(kHits, newText);
    CSecStr string(text.c_str());
    EXPECT_EQ(string.Replace(L"ab", newText), kHits);
    EXPECT_TRUE(textOf(string) == expected) << newText;
  }
}

TEST_F(SecureTextFaults, ResourceThatCannotBeReadLeavesTheText) {
  machine().strings().set(nullptr, IDS_PLAIN, L"loaded");
  CSecStr string(L"secret");
  faults().fail("LoadStringW", 1, vlplatform::FaultSpan::forEver);
  EXPECT_EQ(string.LoadStringW(GetModuleHandleW(nullptr), IDS_PLAIN), 0);
  EXPECT_EQ(textOf(string), L"secret");
}

// The length is told by one call and used by another: a formatter that fails leaves no half text.
TEST_F(SecureTextFaults, FormatterThatFails) {
  for (const char* const function : {"_vscwprintf", "vswprintf_s"}) {
    CSecStr string(L"secret");
    faults().watch();
    faults().fail(function);
    const std::string_view outcome = outcomeOf([&] { string.Format(L"%s!", L"text"); });
    const std::wstring left = textOf(string);
    EXPECT_TRUE(outcome == kInvalid ? left == L"secret" : left.empty()) << function << " " << outcome;
  }
}

}  // namespace
}  // namespace securetext
