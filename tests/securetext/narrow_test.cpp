// Between narrow and wide: two conversions that have nothing to do with each other.
#include <vector>

#include "fixture.h"

namespace securetext {
namespace {

using NarrowAndWide = SecureTextTest;

// What the platform makes of a narrow text.
std::wstring widened(const std::string& narrow) {
  const int length = static_cast<int>(narrow.size());
  std::wstring wide(narrow.size(), L'\0');
  wide.resize(static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, narrow.data(), length, wide.data(), length)));
  return wide;
}

TEST_F(NarrowAndWide, WideFormOfNarrowText) {
  for (std::string narrow : {"", "x", "secret", "caf\xc3\xa9 cr\xc3\xa8me"}) {
    CSecStr assigned(L"what it held before"), assignedWritable(L"what it held before");
    EXPECT_EQ(&(assigned = narrow.c_str()), &assigned);
    EXPECT_EQ(&(assignedWritable = narrow.data()), &assignedWritable);
    const CSecStr made(narrow.data()), counted(narrow.c_str(), static_cast<int>(narrow.size()));
    for (const CSecStr* const string : {&std::as_const(assigned), &std::as_const(assignedWritable), &made, &counted}) {
      EXPECT_EQ(textOf(*string), widened(narrow));
    }
    EXPECT_TRUE(cleanBehind(assigned) && cleanBehind(assignedWritable));
  }
  EXPECT_EQ(textOf(CSecStr("sec\0ret", 7)), L"sec");
  EXPECT_EQ(textOf(CSecStr(static_cast<const char*>(nullptr), 0)), L"");
  EXPECT_EQ(textOf(CSecStr(static_cast<char*>(nullptr))), L"");
  EXPECT_EQ(outcomeOf([] { CSecStr(static_cast<const char*>(nullptr), -3); }), kInvalid);
  EXPECT_EQ(outcomeOf([] { CSecStr("secret", -1); }), kMemory);
}

TEST_F(NarrowAndWide, NullTextsEmptyAndKeepTheBuffer) {
  CSecStr wide(L"secret");
  CSecStrA narrow("secret");
  const wchar_t* const wideBuffer = wide;
  const char* const narrowBuffer = narrow;
  wide = static_cast<const char*>(nullptr);
  // Of its narrow text nothing is left when the wide one is copied.
  bool zero = true;
  memory.onAllocate = [&] { zero = zero && zeroFrom(narrowBuffer, 0); };
  narrow = std::wstring(L"other").data();
  memory.onAllocate = nullptr;
  narrow = static_cast<wchar_t*>(nullptr);
  EXPECT_TRUE(zero);
  EXPECT_TRUE(textOf(wide).empty() && wide.GetString() == wideBuffer && cleanBehind(wide));
  EXPECT_TRUE(textOf(narrow).empty() && narrow.GetString() == narrowBuffer && cleanBehind(narrow));
}

// The length is the wide one, and no byte is shown that was never written.
TEST_F(NarrowAndWide, NarrowFormOfWhatDoesNotConvertOrFit) {
  for (const std::wstring wide : {L"\x20ac", L"ab\x20ac", L"\x4e2d\x6587",
                                  L"ab\xd800"
                                  L"cd",
                                  L"a\xe9"
                                  L"bcd"}) {
    const CSecStrA narrow(CSecStr(wide.c_str()));
    const std::string bytes = textOf(narrow);
    EXPECT_EQ(bytes.size(), wide.size());
    EXPECT_EQ(bytes.find(static_cast<char>(kFill)), std::string::npos) << testing::PrintToString(bytes);
    EXPECT_TRUE(cleanBehind(narrow));
  }
  CSecStr longer(L"ab");
  longer += L'\0';
  EXPECT_EQ(textOf(CSecStrA(longer)), std::string("ab\0", 3));
}

}  // namespace
}  // namespace securetext
