// The members that only CSecStr has: searching, cutting, joining, rewriting.
#include <climits>
#include <vector>

#include "fixture.h"

namespace securetext {
namespace {

class WideEditing : public SecureTextTest {
 protected:
  static constexpr const wchar_t* kNull = nullptr;
};

TEST_F(WideEditing, Parts) {
  const CSecStr five(L"abcde");
  const struct {
    int first, count;
    const wchar_t* expected;
  } mids[] = {{2, 100, L"cde"}, {-3, 2, L"ab"}, {6, 1, L""}, {2, -1, L""}, {4, INT_MAX, L"e"}, {5, 1, L""}};
  for (const auto& [first, count, expected] : mids) {
    EXPECT_EQ(textOf(five.Mid(first, count)), expected) << first << " " << count;
  }
  EXPECT_EQ(textOf(five.Right(99)), L"abcde");
  EXPECT_EQ(textOf(five.Left(-1)), L"");
}

TEST_F(WideEditing, ComparesOnEitherSide) {
  const CSecStr string(L"secret");
  EXPECT_TRUE(L"secret" == string && string == L"secret");
  EXPECT_FALSE(L"secret" != string || string != L"secret");
  EXPECT_FALSE(L"Secret" == string || string == L"Secret");
  EXPECT_TRUE(L"Secret" != string && string != L"Secret");
}

TEST_F(WideEditing, NullTexts) {
  CSecStr string(L"secret");
  EXPECT_EQ(outcomeOf([&] { string.Compare(kNull); }), kArgument);
  EXPECT_EQ(outcomeOf([&] { static_cast<void>(string == kNull); }), kArgument);
  const int allocated = string.GetAllocLength();
  EXPECT_EQ(&(string = kNull), &string);
  EXPECT_TRUE(string.IsEmpty());
  EXPECT_EQ(string.GetAllocLength(), allocated);
  EXPECT_TRUE(zeroFrom(string.GetString(), 0));
}

TEST_F(WideEditing, NulCharacters) {
  CSecStr string(L"abc");
  EXPECT_EQ(string.Insert(1, L'\0'), 3);
  EXPECT_EQ(string.Insert(1, L'x'), 4);
  EXPECT_EQ(textOf(string), L"axbc");
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
}

TEST_F(WideEditing, Replaces) {
  struct {
    const wchar_t *text, *oldText, *newText;
    int count;
    const wchar_t* expected;
  } const rows[] = {
      {L"banana", L"an", L"-", 2, L"b--a"},
      {L"banana", L"an", L"<an>", 2, L"b<an><an>a"},
      {L"banana", L"an", nullptr, 2, L"ba"},
      {L"aaa", L"aa", L"b", 1, L"ba"},
      {L"aaaa", L"aa", L"aaa", 2, L"aaaaaa"},
      {L"banana", L"a", L"aa", 3, L"baanaanaa"},
      {L"banana", L"b", L"long text ", 1, L"long text anana"},
      {L"banana", L"", L"x", 0, L"banana"},
      {L"banana", nullptr, L"x", 0, L"banana"},
  };
  for (const auto& [text, oldText, newText, count, expected] : rows) {
    CSecStr string(text);
    const wchar_t* const buffer = string.GetString();
    EXPECT_EQ(string.Replace(oldText, newText), count) << text << oldText << newText;
    EXPECT_EQ(textOf(string), expected);
    if (count == 0) {
      EXPECT_EQ(string.GetString(), buffer);
    } else if (string.GetString() == buffer) {
      EXPECT_TRUE(zeroFrom(buffer, string.GetLength()));
    }
  }
  // Not even wiped without a hit: what stands behind the text stays.
  CSecStr string(L"abcabc");
  string.Remove(L'c');
  EXPECT_EQ(string.Replace(L"bb", L"x"), 0);
  EXPECT_FALSE(zeroFrom(string.GetString(), 4));
  // Both texts may lie in the object.
  EXPECT_EQ(string.Replace(string.GetString() + 3, string.GetString()), 2);
  EXPECT_EQ(textOf(string), L"aababaabab");
}

TEST_F(WideEditing, EditsInPlaceLeaveResidueUntilTheNextRewriting) {
  CSecStr string(L"  xsecretsecretx  ");
  const wchar_t* const buffer = string.GetString();
  EXPECT_EQ(&string.TrimLeft(), &string);
  EXPECT_EQ(&string.TrimRight(), &string);
  EXPECT_EQ(&string.TrimLeft(L'x'), &string);
  EXPECT_EQ(&string.TrimRight(L'x'), &string);
  EXPECT_EQ(textOf(string), L"secretsecret");
  EXPECT_EQ(string.Remove(L'e'), 4);
  EXPECT_EQ(string.Remove(L'-'), 0);
  EXPECT_EQ(textOf(string.MakeUpper()), L"SCRTSCRT");
  EXPECT_EQ(textOf(string.MakeLower()), L"scrtscrt");
  string.SetAt(0, L'S');
  EXPECT_EQ(outcomeOf([&] { string.SetAt(-1, L'x'); }), kArgument);
  EXPECT_EQ(outcomeOf([&] { string.SetAt(8, L'x'); }), kArgument);
  EXPECT_EQ(textOf(string), L"Scrtscrt");
  EXPECT_EQ(string.GetString(), buffer);
  EXPECT_FALSE(zeroFrom(buffer, string.GetLength()));
  string.Insert(0, L'-');
  EXPECT_EQ(textOf(string), L"-Scrtscrt");
  EXPECT_EQ(string.GetString(), buffer);
  EXPECT_TRUE(zeroFrom(buffer, string.GetLength()));
}

}  // namespace
}  // namespace securetext
