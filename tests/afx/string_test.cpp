// The operations of the string core, in both widths.
#include <algorithm>

#include <gtest/gtest.h>
#include <support/records.h>
#include <vlafx/exceptions.h>
#include <vlafx/string.h>

namespace afxtest {
namespace {

using support::as;

template <class Char>
std::basic_string<Char> text(const CSimpleStringT<Char>& core) {
  return {core.GetString(), static_cast<std::size_t>(core.GetLength())};
}

template <class Char>
class StringTest : public testing::Test {};
using CharTypes = testing::Types<char, wchar_t>;
TYPED_TEST_SUITE(StringTest, CharTypes);

TYPED_TEST(StringTest, EndsRawAccess) {
  CStringT<TypeParam> core;
  TypeParam* const buffer = core.GetBuffer(10);
  const int most = core.GetAllocLength();
  std::fill_n(buffer, most, static_cast<TypeParam>('z'));
  buffer[4] = TypeParam();
  core.ReleaseBuffer();
  EXPECT_EQ(text(core), as<TypeParam>("zzzz"));
  core.ReleaseBufferSetLength(2);
  EXPECT_EQ(core.GetString(), as<TypeParam>("zz"));
  std::fill_n(buffer, most, static_cast<TypeParam>('y'));  // no terminator among the allocated length
  core.ReleaseBuffer(-1);
  EXPECT_EQ(buffer[most], TypeParam());
  for (const int wrong : {-2, most + 1}) {
    EXPECT_THROW(core.ReleaseBuffer(wrong), CInvalidArgException*) << wrong;
    EXPECT_THROW(core.ReleaseBufferSetLength(wrong), CInvalidArgException*) << wrong;
  }
  EXPECT_EQ(core.GetLength(), most);
  EXPECT_THROW(core.GetBuffer(-1), CInvalidArgException*);
  EXPECT_THROW(core.SetString(nullptr, 1), CInvalidArgException*);
  EXPECT_THROW(core.SetString(core.GetString(), -1), CInvalidArgException*);
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
    core = as<TypeParam>(a).c_str();
    EXPECT_EQ(sign(core.Compare(as<TypeParam>(b).c_str())), exact) << a << ", " << b;
    EXPECT_EQ(sign(core.CompareNoCase(as<TypeParam>(b).c_str())), noCase) << a << ", " << b;
  }
  CStringT<TypeParam> high;
  high = static_cast<TypeParam>(0xe9);  // a negative number where char is signed
  EXPECT_GT(high.Compare(as<TypeParam>("z").c_str()), 0);
  EXPECT_GT(high.CompareNoCase(as<TypeParam>("z").c_str()), 0);
}

TYPED_TEST(StringTest, RemovesTrimsAndFoldsInPlace) {
  using Core = CStringT<TypeParam>;
  const auto dash = static_cast<TypeParam>('-');
  const struct {
    const char* name;
    void (*edit)(Core&, TypeParam);
    const char* before;
    const char* after;
  } cases[] = {
      {"Remove", [](Core& c, TypeParam d) { EXPECT_EQ(c.Remove(d), 4); }, "--a-b-", "ab"},
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
    core = as<TypeParam>(before).c_str();
    const TypeParam* const place = core.GetString();
    edit(core, dash);
    EXPECT_EQ(text(core), as<TypeParam>(after)) << name;
    EXPECT_EQ(core.GetString(), as<TypeParam>(after)) << name;
    EXPECT_EQ(core.GetString(), place) << name;
  }
}

TEST(WideStringTest, KnowsLettersAndBlanksBeyondAscii) {
  const wchar_t* const lower = L"\u00e4\u00e9 \u03c9\u03b1 \u0436\u044f \u0151";
  const wchar_t* const upper = L"\u00c4\u00c9 \u03a9\u0391 \u0416\u042f \u0150";
  CStringT<wchar_t> core;
  core = lower;
  EXPECT_EQ(core.CompareNoCase(upper), 0);
  EXPECT_EQ(core.MakeUpper().Compare(upper), 0);
  EXPECT_EQ(core.MakeLower().Compare(lower), 0);
  core = L"\u00a0\u2003\u3000x\u200b\u2028\u0085";  // U+200B has no width, and is no blank
  EXPECT_EQ(text(core.TrimLeft().TrimRight()), L"x\u200b");
}

}  // namespace
}  // namespace afxtest
