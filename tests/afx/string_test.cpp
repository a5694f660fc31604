// The operations of the string core, in both widths.
#include <algorithm>
#include <cstring>
#include <limits>

#include "core.h"

namespace afxtest {
namespace {

template <class Char>
class StringTest : public testing::Test {
 protected:
  static std::basic_string<Char> t(std::string_view ascii) { return text<Char>(ascii); }
};
TYPED_TEST_SUITE(StringTest, CharTypes);

TYPED_TEST(StringTest, AssignsTextCharactersAndNothing) {
  CStringT<TypeParam> core;
  EXPECT_TRUE(core.IsEmpty());
  core = this->t("hello").c_str();
  EXPECT_EQ(text(core), this->t("hello"));
  EXPECT_EQ(core.GetString()[5], TypeParam());
  EXPECT_FALSE(core.IsEmpty());
  const int allocated = core.GetAllocLength();
  core = static_cast<TypeParam>('x');
  EXPECT_EQ(text(core), this->t("x"));
  core = TypeParam();
  EXPECT_TRUE(core.IsEmpty());
  core.SetString(this->t(std::string_view("a\0b", 3)).data(), 3);
  EXPECT_EQ(core.GetLength(), 3);
  core = core.GetString() + 2;  // its own text
  EXPECT_EQ(text(core), this->t("b"));
  core = this->t("01234").c_str();
  core.SetString(core.GetString() + 1, 3);
  EXPECT_EQ(text(core), this->t("123"));
  core = static_cast<const TypeParam*>(nullptr);
  EXPECT_TRUE(core.IsEmpty());
  EXPECT_EQ(core.GetAllocLength(), allocated);
}

TYPED_TEST(StringTest, ConvertsFromTheOtherWidth) {
  using Other = typename CStringT<TypeParam>::YCHAR;
  CStringT<TypeParam> core;
  core = text<Other>("plain text").c_str();
  EXPECT_EQ(text(core), this->t("plain text"));
  core = text<Other>("").c_str();
  EXPECT_TRUE(core.IsEmpty());
  core = text<Other>("again").c_str();
  core = static_cast<const Other*>(nullptr);
  EXPECT_TRUE(core.IsEmpty());
  EXPECT_GT(core.GetAllocLength(), 0);
}

TYPED_TEST(StringTest, EndsRawAccess) {
  CStringT<TypeParam> core;
  TypeParam* const buffer = core.GetBuffer(10);
  EXPECT_EQ(core.GetLength(), 0);
  ASSERT_GE(core.GetAllocLength(), 10);
  const int most = core.GetAllocLength();
  std::fill_n(buffer, most, static_cast<TypeParam>('z'));
  buffer[4] = TypeParam();
  core.ReleaseBuffer();
  EXPECT_EQ(text(core), this->t("zzzz"));
  core.ReleaseBufferSetLength(2);
  EXPECT_EQ(text(core), this->t("zz"));
  EXPECT_EQ(buffer[2], TypeParam());
  std::fill_n(buffer, most, static_cast<TypeParam>('y'));  // no terminator among the allocated length
  core.ReleaseBuffer(-1);
  EXPECT_EQ(core.GetLength(), most);
  EXPECT_EQ(buffer[most], TypeParam());
  EXPECT_EQ(core.GetBuffer(most), buffer);
  for (const int wrong : {-2, most + 1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    EXPECT_TRUE(throws<CInvalidArgException>([&] { core.ReleaseBuffer(wrong); })) << wrong;
    EXPECT_TRUE(throws<CInvalidArgException>([&] { core.ReleaseBufferSetLength(wrong); })) << wrong;
    EXPECT_EQ(core.GetLength(), most);
  }
  EXPECT_TRUE(throws<CInvalidArgException>([&] { core.ReleaseBufferSetLength(-1); }));
  EXPECT_TRUE(throws<CInvalidArgException>([&] { core.GetBuffer(-1); }));
}

TYPED_TEST(StringTest, RefusesArgumentsOutOfRange) {
  CStringT<TypeParam> core;
  core = this->t("abc").c_str();
  const TypeParam* const none = nullptr;
  EXPECT_EQ(core.GetAt(2), static_cast<TypeParam>('c'));
  EXPECT_EQ(core.GetAt(3), TypeParam());
  core.SetAt(1, static_cast<TypeParam>('X'));
  EXPECT_TRUE(throws<CInvalidArgException>([&] { core.GetAt(-1); }));
  EXPECT_TRUE(throws<CInvalidArgException>([&] { core.GetAt(4); }));
  EXPECT_TRUE(throws<CInvalidArgException>([&] { core.SetAt(-1, static_cast<TypeParam>('X')); }));
  EXPECT_TRUE(throws<CInvalidArgException>([&] { core.SetAt(3, static_cast<TypeParam>('X')); }));
  EXPECT_TRUE(throws<CInvalidArgException>([&] { core.SetString(none, 1); }));
  EXPECT_TRUE(throws<CInvalidArgException>([&] { core.SetString(core.GetString(), -1); }));
  EXPECT_TRUE(throws<CInvalidArgException>([&] { core.Compare(none); }));
  EXPECT_TRUE(throws<CInvalidArgException>([&] { core.CompareNoCase(none); }));
  EXPECT_EQ(text(core), this->t("aXc"));
  core.SetString(none, 0);
  EXPECT_TRUE(core.IsEmpty());
}

TYPED_TEST(StringTest, Finds) {
  CStringT<TypeParam> core;
  core = this->t("banana").c_str();
  const struct {
    const char* what;
    int start;
    int index;
  } cases[] = {{"ana", 0, 1}, {"ana", 2, 3}, {"ana", 4, -1}, {"banana", 0, 0}, {"bananas", 0, -1},
               {"", 0, 0},    {"", 6, 6},    {"", 7, -1},    {"a", 5, 5},      {"a", 6, -1},
               {"a", -1, -1}, {"x", 0, -1},  {"a", 1000, -1}};
  for (const auto& [what, start, index] : cases) {
    EXPECT_EQ(core.Find(this->t(what).c_str(), start), index) << what << " from " << start;
    if (std::strlen(what) == 1) {
      EXPECT_EQ(core.Find(static_cast<TypeParam>(*what), start), index) << what << " from " << start;
    }
  }
  EXPECT_EQ(core.Find(static_cast<const TypeParam*>(nullptr), 2), 2);
  EXPECT_EQ(core.ReverseFind(static_cast<TypeParam>('n')), 4);
  EXPECT_EQ(core.ReverseFind(static_cast<TypeParam>('b')), 0);
  EXPECT_EQ(core.ReverseFind(static_cast<TypeParam>('x')), -1);
}

TYPED_TEST(StringTest, Compares) {
  const struct {
    const char* a;
    const char* b;
    int exact;
    int noCase;
  } cases[] = {{"", "", 0, 0},         {"a", "", 1, 1},       {"", "a", -1, -1},     {"abc", "abc", 0, 0},
               {"abc", "abd", -1, -1}, {"ab", "abc", -1, -1}, {"ABC", "abc", -1, 0}, {"b", "A", 1, 1},
               {"B", "a", -1, 1},      {"_", "A", 1, -1}};
  const auto sign = [](int n) { return n < 0 ? -1 : n > 0; };
  for (const auto& [a, b, exact, noCase] : cases) {
    CStringT<TypeParam> core;
    core = this->t(a).c_str();
    EXPECT_EQ(sign(core.Compare(this->t(b).c_str())), exact) << a << ", " << b;
    EXPECT_EQ(sign(core.CompareNoCase(this->t(b).c_str())), noCase) << a << ", " << b;
  }
  CStringT<TypeParam> high;
  high = static_cast<TypeParam>(0xe9);  // a negative number where char is signed
  EXPECT_GT(high.Compare(this->t("z").c_str()), 0);
  EXPECT_GT(high.CompareNoCase(this->t("z").c_str()), 0);
}

TYPED_TEST(StringTest, RemovesTrimsAndFoldsInPlace) {
  using Core = CStringT<TypeParam>;
  const TypeParam dash = static_cast<TypeParam>('-');
  const struct {
    const char* name;
    void (*edit)(Core&, TypeParam);
    const char* before;
    const char* after;
  } cases[] = {
      {"Remove", [](Core& c, TypeParam d) { EXPECT_EQ(c.Remove(d), 4); }, "--a-b-", "ab"},
      {"Remove none", [](Core& c, TypeParam d) { EXPECT_EQ(c.Remove(d), 0); }, "ab", "ab"},
      {"MakeUpper", [](Core& c, TypeParam) { c.MakeUpper(); }, "aZ@`{[z", "AZ@`{[Z"},
      {"MakeLower", [](Core& c, TypeParam) { c.MakeLower(); }, "aZ@`{[A", "az@`{[a"},
      {"TrimRight", [](Core& c, TypeParam) { c.TrimRight(); }, " a b \t\r\n\v\f", " a b"},
      {"TrimRight all", [](Core& c, TypeParam) { c.TrimRight(); }, " \t", ""},
      {"TrimRight char", [](Core& c, TypeParam d) { c.TrimRight(d); }, "-a- --", "-a- "},
      {"TrimLeft", [](Core& c, TypeParam) { c.TrimLeft(); }, "\t\r\n\v\f a b ", "a b "},
      {"TrimLeft all", [](Core& c, TypeParam) { c.TrimLeft(); }, " \t", ""},
      {"TrimLeft char", [](Core& c, TypeParam d) { c.TrimLeft(d); }, "-- -a-", " -a-"},
  };
  for (const auto& [name, edit, before, after] : cases) {
    Core core;
    core = this->t(before).c_str();
    const TypeParam* const place = core.GetString();
    edit(core, dash);
    EXPECT_EQ(text(core), this->t(after)) << name;
    EXPECT_EQ(core.GetString()[core.GetLength()], TypeParam()) << name;
    EXPECT_EQ(core.GetString(), place) << name;
  }
}

// The empty buffer is in read-only memory, so a write to it ends the program.
TYPED_TEST(StringTest, NeverWritesTheEmptyBuffer) {
  using Other = typename CStringT<TypeParam>::YCHAR;
  const TypeParam a = static_cast<TypeParam>('a');
  CStringT<TypeParam> core;
  const TypeParam* const place = core.GetString();
  core = this->t("").c_str();
  core = TypeParam();
  core = text<Other>("").c_str();
  core.SetString(nullptr, 0);
  core.ReleaseBuffer(0);
  core.ReleaseBuffer(-1);
  core.ReleaseBufferSetLength(0);
  EXPECT_EQ(core.GetBuffer(), place);
  EXPECT_EQ(core.GetBuffer(0), place);
  EXPECT_EQ(core.Remove(a), 0);
  core.MakeUpper().MakeLower().TrimLeft().TrimRight().TrimLeft(a).TrimRight(a);
  EXPECT_TRUE(throws<CInvalidArgException>([&] { core.ReleaseBuffer(1); }));
  EXPECT_TRUE(throws<CInvalidArgException>([&] { core.SetAt(0, a); }));
  EXPECT_EQ(core.GetString(), place);
  EXPECT_EQ(core.GetAllocLength(), 0);
  CStringT<TypeParam> other;
  EXPECT_EQ(other.GetString(), place);
}

TEST(WideStringTest, FoldsLettersBeyondAscii) {
  const wchar_t* const lower = L"\u00e4\u00e9 \u03c9\u03b1 \u0436\u044f \u0151";
  const wchar_t* const upper = L"\u00c4\u00c9 \u03a9\u0391 \u0416\u042f \u0150";
  CStringT<wchar_t> core;
  core = lower;
  EXPECT_EQ(core.CompareNoCase(upper), 0);
  EXPECT_EQ(core.MakeUpper().Compare(upper), 0);
  EXPECT_EQ(core.MakeLower().Compare(lower), 0);
}

TEST(WideStringTest, TrimsBlanksOfUnicode) {
  CStringT<wchar_t> core;
  core = L"\u00a0\u2003\u3000x\u200b\u2028\u0085";  // U+200B has no width, and is no blank
  EXPECT_EQ(text(core.TrimLeft().TrimRight()), L"x\u200b");
}

TEST(WideStringTest, NarrowFormAndBack) {
  const wchar_t* const original = L"Gr\u00fc\u00dfe, caf\u00e9";
  CStringT<char> narrow;
  narrow = original;
  EXPECT_GE(narrow.GetLength(), 11);
  EXPECT_EQ(narrow.GetString()[narrow.GetLength()], '\0');
  CStringT<wchar_t> wide;
  wide = narrow.GetString();
  EXPECT_EQ(text(wide), original);
}

}  // namespace
}  // namespace afxtest
