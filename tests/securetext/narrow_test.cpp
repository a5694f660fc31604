// Between narrow and wide: two conversions that have nothing to do with each other.
#include <algorithm>
#include <vector>

#include "fixture.h"

namespace securetext {
namespace {

class NarrowAndWide : public SecureTextTest {};

// What the platform makes of a narrow text.
std::wstring widened(const std::string& narrow) {
  std::wstring wide(narrow.size() + 1, L'\0');
  const int size = MultiByteToWideChar(CP_ACP, 0, narrow.c_str(), -1, wide.data(), static_cast<int>(wide.size()));
  wide.resize(static_cast<std::size_t>(std::max(size, 1) - 1));
  return wide;
}

TEST_F(NarrowAndWide, WideFormOfNarrowText) {
  for (std::string narrow : {"", "x", "secret", "caf\xc3\xa9 cr\xc3\xa8me"}) {
    const std::wstring wide = widened(narrow);
    EXPECT_EQ(textOf(CSecStr(narrow.data())), wide);
    EXPECT_EQ(textOf(CSecStr(narrow.c_str(), static_cast<int>(narrow.size()))), wide);
    CSecStr string(L"what it held before");
    EXPECT_EQ(&(string = narrow.c_str()), &string);
    EXPECT_EQ(textOf(string), wide);
    EXPECT_TRUE(zeroFrom(string.GetString(), string.GetLength()));
    string = L"what it held before";
    EXPECT_EQ(&(string = narrow.data()), &string);
    EXPECT_EQ(textOf(string), wide);
    EXPECT_TRUE(zeroFrom(string.GetString(), string.GetLength()));
  }
  EXPECT_EQ(textOf(CSecStr("sec\0ret", 7)), L"sec");
  EXPECT_EQ(textOf(CSecStr(static_cast<const char*>(nullptr), 0)), L"");
  EXPECT_EQ(textOf(CSecStr(static_cast<char*>(nullptr))), L"");
  EXPECT_EQ(outcomeOf([] { CSecStr(static_cast<const char*>(nullptr), -3); }), kInvalid);
  EXPECT_EQ(outcomeOf([] { CSecStr("secret", -1); }), kMemory);
  CSecStr string(L"secret");
  const int allocated = string.GetAllocLength();
  string = static_cast<const char*>(nullptr);
  EXPECT_EQ(textOf(string), L"");
  EXPECT_EQ(string.GetAllocLength(), allocated);
  EXPECT_TRUE(zeroFrom(string.GetString(), 0));
}

TEST_F(NarrowAndWide, NarrowFormOfWideText) {
  CSecStrA string("secret");
  const char* const buffer = string.GetString();
  EXPECT_EQ(static_cast<const char*>(string), buffer);
  string = static_cast<wchar_t*>(nullptr);
  EXPECT_EQ(textOf(string), "");
  EXPECT_EQ(string.GetString(), buffer);
  EXPECT_TRUE(zeroFrom(buffer, 0));
}

// The length is the wide one, and no byte is shown that was never written.
TEST_F(NarrowAndWide, NarrowFormOfWhatDoesNotConvertOrFit) {
  for (const wchar_t* const wide : {L"\x20ac", L"ab\x20ac", L"\x4e2d\x6587",
                                    L"ab\xd800"
                                    L"cd",
                                    L"a\xe9"
                                    L"bcd"}) {
    const CSecStr source(wide);
    const CSecStrA narrow(source);
    const std::string bytes = textOf(narrow);
    EXPECT_EQ(narrow.GetLength(), source.GetLength());
    EXPECT_EQ(bytes.find(static_cast<char>(kFill)), std::string::npos) << testing::PrintToString(bytes);
    EXPECT_TRUE(zeroFrom(narrow.GetString(), narrow.GetLength()));
  }
  CSecStr longer(L"ab");
  longer += L'\0';
  EXPECT_EQ(textOf(CSecStrA(longer)), std::string("ab\0", 3));
}

}  // namespace
}  // namespace securetext
