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

TEST_F(WideEditing, AssignsWideTexts) {
  const std::wstring whole = L"a longer secret";
  CSecStr string;
  for (const std::size_t from : {15, 0, 7, 14}) {
    string = whole.c_str();
    string = string.GetString() + from;
    EXPECT_EQ(textOf(string), whole.substr(from));
    EXPECT_NE(string.GetLength() == 0, from < whole.size());
  }
  const int allocated = string.GetAllocLength();
  EXPECT_FALSE(string.IsEmpty());
  EXPECT_EQ(&(string = kNull), &string);
  EXPECT_TRUE(string.IsEmpty());
  EXPECT_EQ(string.GetAllocLength(), allocated);
  EXPECT_TRUE(zeroFrom(string.GetString(), 0));
  EXPECT_EQ(textOf(CSecStr(L'x')), L"x");
  EXPECT_EQ(textOf(CSecStr(L'\0')), L"");

  string.SetString(L"secret", 3);
  EXPECT_EQ(textOf(string), L"sec");
  string.SetString(string.GetString() + 1, 2);
  EXPECT_EQ(textOf(string), L"ec");
  InvalidParameters runtime;
  EXPECT_EQ(outcomeOf([&] { string.SetString(kNull, 1); }), kInvalid);
  EXPECT_EQ(outcomeOf([&] { string.SetString(kNull, -1); }), kInvalid);
  EXPECT_EQ(outcomeOf([&] { string.SetString(L"x", -1); }), kMemory);
  EXPECT_EQ(runtime.reports(), 0);
  EXPECT_EQ(textOf(string), L"ec");
  string.SetString(kNull, 0);
  EXPECT_EQ(textOf(string), L"");
}

TEST_F(WideEditing, Parts) {
  const CSecStr five(L"abcde");
  struct {
    int first, count;
    const wchar_t* expected;
  } const mids[] = {{2, 100, L"cde"},
                    {-3, 2, L"ab"},
                    {6, 1, L""},
                    {2, -1, L""},
                    {0, 5, L"abcde"},
                    {0, 4, L"abcd"},
                    {1, 4, L"bcde"},
                    {5, 1, L""},
                    {4, INT_MAX, L"e"},
                    {INT_MAX, INT_MAX, L""},
                    {INT_MIN, INT_MAX, L"abcde"},
                    {0, 0, L""}};
  for (const auto& [first, count, expected] : mids) {
    EXPECT_EQ(textOf(five.Mid(first, count)), expected) << first << " " << count;
  }
  struct {
    int n;
    const wchar_t *mid, *left, *right;
  } const ones[] = {{0, L"abcde", L"", L""},       {2, L"cde", L"ab", L"de"},         {5, L"", L"abcde", L"abcde"},
                    {7, L"", L"abcde", L"abcde"},  {99, L"", L"abcde", L"abcde"},     {-1, L"abcde", L"", L""},
                    {INT_MIN, L"abcde", L"", L""}, {INT_MAX, L"", L"abcde", L"abcde"}};
  for (const auto& [n, mid, left, right] : ones) {
    EXPECT_EQ(textOf(five.Mid(n)), mid) << n;
    EXPECT_EQ(textOf(five.Left(n)), left) << n;
    EXPECT_EQ(textOf(five.Right(n)), right) << n;
    EXPECT_EQ(textOf(CSecStr().Mid(n)), L"");
    EXPECT_EQ(textOf(CSecStr().Left(n)), L"");
    EXPECT_EQ(textOf(CSecStr().Right(n)), L"");
  }
  CSecStr whole = five.Mid(0);
  EXPECT_NE(whole.GetString(), five.GetString());
  whole.Empty();
  EXPECT_EQ(textOf(five), L"abcde");
}

TEST_F(WideEditing, Joins) {
  const CSecStr a(L"ab"), b(L"cd"), empty;
  EXPECT_EQ(textOf(a + b), L"abcd");
  EXPECT_EQ(textOf(a + L"x"), L"abx");
  EXPECT_EQ(textOf(L"x" + a), L"xab");
  EXPECT_EQ(textOf(a + kNull), L"ab");
  EXPECT_EQ(textOf(kNull + a), L"ab");
  EXPECT_EQ(textOf(empty + empty), L"");
  EXPECT_EQ(textOf(a), L"ab");

  CSecStr string;
  EXPECT_EQ(&(string += L'a'), &string);
  EXPECT_EQ(&(string += a), &string);
  EXPECT_EQ(&(string += L"cd"), &string);
  string += string;
  EXPECT_EQ(textOf(string), L"aabcdaabcd");
  string += string.GetString() + 5;
  string += kNull;
  string.Append(string.GetString() + 13);
  string.Append(kNull);
  EXPECT_EQ(textOf(string), L"aabcdaabcdaabcdcd");
  for (int i = 0; i < 40; ++i) {
    string += L'!';
  }
  EXPECT_EQ(textOf(string), std::wstring(L"aabcdaabcdaabcdcd").append(40, L'!'));
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
  } const rows[] = {{L"banana", L"an", L"-", 2, L"b--a"},
                    {L"banana", L"an", L"<an>", 2, L"b<an><an>a"},
                    {L"banana", L"na", L"NA", 2, L"baNANA"},
                    {L"banana", L"an", L"", 2, L"ba"},
                    {L"banana", L"an", nullptr, 2, L"ba"},
                    {L"banana", L"banana", nullptr, 1, L""},
                    {L"aaa", L"aa", L"b", 1, L"ba"},
                    {L"aaaa", L"aa", L"aaa", 2, L"aaaaaa"},
                    {L"a", L"a", L"a", 1, L"a"},
                    {L"banana", L"a", L"aa", 3, L"baanaanaa"},
                    {L"banana", L"b", L"long text ", 1, L"long text anana"},
                    {L"banana", L"bananas", L"x", 0, L"banana"},
                    {L"banana", L"A", L"x", 0, L"banana"},
                    {L"banana", L"", L"x", 0, L"banana"},
                    {L"banana", nullptr, L"x", 0, L"banana"},
                    {L"", L"a", L"x", 0, L""}};
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

TEST_F(WideEditing, SearchesAndCompares) {
  const CSecStr string(L"abcABCabc");
  EXPECT_EQ(string.Find(L'b', 0), 1);
  EXPECT_EQ(string.Find(L'b', 2), 7);
  EXPECT_EQ(string.Find(L'x', 0), -1);
  EXPECT_EQ(string.ReverseFind(L'a'), 6);
  EXPECT_EQ(string.ReverseFind(L'x'), -1);
  EXPECT_EQ(string.GetAt(3), L'A');
  for (const int index : {-1, 10}) {
    EXPECT_EQ(outcomeOf([&] { string.GetAt(index); }), kArgument);
  }
  EXPECT_EQ(string.Compare(L"abcABCabc"), 0);
  EXPECT_LT(string.Compare(L"b"), 0);
  EXPECT_GT(string.Compare(L"abc"), 0);
  EXPECT_NE(string.Compare(L"ABCabcABC"), 0);
  EXPECT_EQ(string.CompareNoCase(L"ABCabcABC"), 0);
  EXPECT_LT(string.CompareNoCase(L"ABD"), 0);
  EXPECT_EQ(outcomeOf([&] { string.Compare(kNull); }), kArgument);
  EXPECT_EQ(outcomeOf([&] { string.CompareNoCase(kNull); }), kArgument);

  const CSecStr same(L"abcABCabc"), other(L"abd");
  EXPECT_TRUE(string == same && string == L"abcABCabc" && L"abcABCabc" == string);
  EXPECT_FALSE(string == other || string == L"abd" || L"abd" == string);
  EXPECT_TRUE(string != other && string != L"abd" && L"abd" != string);
  EXPECT_FALSE(string != same || string != L"abcABCabc" || L"abcABCabc" != string);
  EXPECT_TRUE(string < other && !(other < string) && !(string < same));
  EXPECT_EQ(outcomeOf([&] { static_cast<void>(string == kNull); }), kArgument);
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
