// The members that only CSecStr has: searching, comparing, editing in place, rewriting.
#include <type_traits>

#include "fixture.h"

namespace securetext {
namespace {

using WideEditing = SecureTextTest;

TEST_F(WideEditing, SearchesAndCompares) {
  CSecStr string(L"banana");
  EXPECT_EQ(string.Find(L'a', 2), 3);
  EXPECT_EQ(string.Find(L'b', 1), -1);
  EXPECT_EQ(string.Find(L'a', -1), -1);
  EXPECT_EQ(string.ReverseFind(L'n'), 4);
  EXPECT_EQ(string.GetAt(2), L'n');
  EXPECT_EQ(outcomeOf([&] { string.GetAt(7); }), kArgument);
  EXPECT_EQ(outcomeOf([&] { static_cast<void>(string == kNull); }), kArgument);
  const struct {
    const wchar_t* other;
    int order;
    int withoutCase;
  } rows[] = {{L"banana", 0, 0}, {L"Banana", 1, 0}, {L"bananas", -1, -1}, {L"", 1, 1}};
  const auto sign = [](int number) { return (number > 0) - (number < 0); };
  for (const auto& [text, order, withoutCase] : rows) {
    const CSecStr other(text);
    EXPECT_EQ(sign(string.Compare(text)), order) << text;
    EXPECT_EQ(sign(string.CompareNoCase(text)), withoutCase) << text;
    for (const bool equal : {string == other, string == text, text == string}) {
      EXPECT_EQ(equal, order == 0) << text;
    }
    for (const bool unequal : {string != other, string != text, text != string}) {
      EXPECT_EQ(unequal, order != 0) << text;
    }
    EXPECT_EQ(string < other, order < 0) << text;
    EXPECT_EQ(other<string, order> 0) << text;
  }
}

TEST_F(WideEditing, NullAndNulCharacters) {
  CSecStr string(L"abc");
  const int allocated = string.GetAllocLength();
  EXPECT_EQ(string.Insert(1, L'\0'), 3);
  string.Insert(1, L'x');
  string += L'\0';
  EXPECT_EQ(string.GetLength(), 5);
  EXPECT_STREQ(string, L"axbc");
  EXPECT_EQ(textOf(CSecStr(string)), L"axbc");
  EXPECT_EQ(textOf(string + L"d"), L"axbcd");
  // The length counts: what is put behind the NUL is there, and does not show.
  EXPECT_EQ(string.Insert(99, L"de"), 7);
  EXPECT_EQ(textOf(string), std::wstring(L"axbc\0de", 7));
  string += L"f";
  EXPECT_EQ(textOf(string), L"axbcf");
  EXPECT_EQ(&(string = kNull), &string);
  EXPECT_TRUE(string.IsEmpty() && string.GetAllocLength() >= allocated && cleanBehind(string));
}

TEST_F(WideEditing, EditsInPlaceLeaveResidueUntilTheNextRewriting) {
  CSecStr string(L"  xsecretsecretx  ");
  const wchar_t* const buffer = string.GetString();
  EXPECT_EQ(&string.TrimLeft(), &string);
  EXPECT_EQ(textOf(string), L"xsecretsecretx  ");
  EXPECT_EQ(&string.TrimRight(), &string);
  EXPECT_EQ(&string.TrimLeft(L'x'), &string);
  EXPECT_EQ(textOf(string), L"secretsecretx");
  EXPECT_EQ(&string.TrimRight(L'x'), &string);
  EXPECT_EQ(string.Remove(L'e'), 4);
  EXPECT_EQ(textOf(string.MakeUpper()), L"SCRTSCRT");
  EXPECT_EQ(textOf(string.MakeLower()), L"scrtscrt");
  string.SetAt(0, L'S');
  EXPECT_EQ(outcomeOf([&] { string.SetAt(8, L'x'); }), kArgument);
  // Not even wiped without a hit.
  EXPECT_EQ(string.Replace(L"xx", L"y") + string.Replace(L"", L"y") + string.Replace(kNull, L"y"), 0);
  EXPECT_EQ(textOf(string), L"Scrtscrt");
  EXPECT_FALSE(cleanBehind(string));
  string.Insert(0, L'-');
  EXPECT_EQ(textOf(string), L"-Scrtscrt");
  EXPECT_EQ(string.GetString(), buffer);
  EXPECT_TRUE(cleanBehind(string));
  // Both texts may lie in the object.
  EXPECT_EQ(string.Replace(string.GetString() + 8, string.GetString() + 6), 2);
  EXPECT_EQ(textOf(string), L"-Scrcrtscrcrt");
}

#ifndef _WIN32
// Moving the rest of the text at each hit would take minutes here, and the watchdog would end it.
TEST_F(WideEditing, ReplacesInLargeTexts) {
  constexpr int kHits = 400'000;
  for (const std::wstring newText : {L"", L"x", L"xy", L"longer"}) {
    std::wstring text, expected;
    for (int i = 0; i < kHits; ++i) {
      text += L"abAB";
      expected += newText + L"AB";
    }
    CSecStr string(text.c_str());
    EXPECT_EQ(string.Replace(L"ab", newText.c_str()), kHits);
    EXPECT_TRUE(textOf(string) == expected) << newText;
  }
}
#endif

}  // namespace
}  // namespace securetext
