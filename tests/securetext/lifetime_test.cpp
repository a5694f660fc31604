// What CSecStr and CSecStrA have in common: construction, assignment, the buffer protocol, Insert and Append.
#include <climits>
#include <type_traits>
#include <vector>

#include "fixture.h"

namespace securetext {
namespace {

static_assert(!std::is_polymorphic_v<CSecStr> && sizeof(CSecStr) == sizeof(void*));
static_assert(!std::is_polymorphic_v<CSecStrA> && sizeof(CSecStrA) == sizeof(void*));

template <class String>
using CharOf = std::remove_reference_t<decltype(*std::declval<String>().GetBuffer())>;

template <class StringType>
class BothWidths : public SecureTextTest {
 protected:
  using StringChar = CharOf<StringType>;

  static Text<StringChar> t(std::string_view ascii) { return text<StringChar>(ascii); }
  static constexpr const StringChar* kNull = nullptr;
};
using Strings = testing::Types<CSecStr, CSecStrA>;
TYPED_TEST_SUITE(BothWidths, Strings);

TYPED_TEST(BothWidths, CountedConstructor) {
  using String = TypeParam;
  using namespace std::string_view_literals;
  // It ends at the first NUL.
  EXPECT_EQ(textOf(String(this->t("sec\0ret"sv).data(), 7)), this->t("sec"));
  EXPECT_EQ(textOf(String(this->t("secret").data(), 6)), this->t("secret"));
  const auto source = this->t("secret");
  for (const int length : {3, 1, INT_MAX, -1, INT_MIN}) {
    EXPECT_EQ(outcomeOf([&] { String(this->kNull, length); }), kInvalid) << length;
  }
  for (const int length : {-1, -2, INT_MIN}) {
    EXPECT_EQ(outcomeOf([&] { String(source.c_str(), length); }), kMemory) << length;
  }
}

TYPED_TEST(BothWidths, NewlyMadeStringsOwnNothingToWrite) {
  using String = TypeParam;
  String made;
  const String ofNull(this->kNull);
  const String ofEmpty(this->t("").c_str());
  const String copy(made);
  for (const String* const string : std::initializer_list<const String*>{&made, &ofNull, &ofEmpty, &copy}) {
    EXPECT_EQ(textOf(*string), this->t(""));
    EXPECT_EQ(headerOf(string->GetString()).nAllocLength, 0);
  }
  made.Empty();
  made.ReleaseBuffer(0);
  made.ReleaseBuffer(-1);
  made.GetBuffer(0);
  made.GetBuffer(-7);
  EXPECT_EQ(outcomeOf([&] { made.ReleaseBuffer(1); }), kInvalid);
  EXPECT_EQ(headerOf(made.GetString()).nAllocLength, 0);
  EXPECT_EQ(this->memory.open(), 0);
}

TYPED_TEST(BothWidths, GetBufferGrowsOverZeros) {
  using Char = CharOf<TypeParam>;
  TypeParam string(this->t("secret").c_str());
  const Char* const old = string.GetString();
  const int allocated = headerOf(old).nAllocLength;
  for (const int n : {allocated, 0, -1, INT_MIN}) {
    EXPECT_EQ(string.GetBuffer(n), old);
    EXPECT_EQ(textOf(string), this->t("secret"));
  }

  std::vector<bool> oldWasZero;
  this->memory.onAllocate = [&] { oldWasZero.push_back(zeroFrom(old, 0)); };
  const Char* const grown = string.GetBuffer(allocated + 50);
  this->memory.onAllocate = nullptr;
  ASSERT_EQ(oldWasZero.size(), 2u);  // the private copy, then the larger block
  EXPECT_FALSE(oldWasZero[0]);
  EXPECT_TRUE(oldWasZero[1]);
  EXPECT_EQ(string.GetString(), grown);
  EXPECT_GE(headerOf(grown).nAllocLength, allocated + 50);
  EXPECT_EQ(textOf(string), this->t("secret"));
}

TYPED_TEST(BothWidths, GrowthOfATextWithANulShowsNoUnwrittenMemory) {
  TypeParam string(this->t("secret").c_str());
  string.GetBuffer()[2] = 0;
  string.GetBuffer(500);
  EXPECT_EQ(textOf(string), this->t(std::string_view("se\0\0\0\0", 6)));
}

TYPED_TEST(BothWidths, AppendOfACountedText) {
  using String = TypeParam;
  constexpr bool wide = std::is_same_v<String, CSecStr>;
  String string(this->t("abc").c_str());
  InvalidParameters runtime;
  string.Append(this->t("de").c_str(), 2);
  string.Append(this->t("fgh").c_str(), 1);
  string.Append(this->t(std::string_view("g\0h", 3)).c_str(), 3);
  string.Append(this->t("no").c_str(), 0);
  EXPECT_EQ(outcomeOf([&] { string.Append(this->t("no").c_str(), -1); }), kMemory);
  EXPECT_EQ(runtime.reports(), 0);
  EXPECT_EQ(textOf(string), this->t("abcdefg"));

  // The narrow twin has no early return for nothing at all.
  const auto* const buffer = string.GetString();
  EXPECT_EQ(outcomeOf([&] { string.Append(this->kNull, 0); }), kDone);
  if (InvalidParameters::kReachesLibrary) {
    EXPECT_EQ(runtime.reports(), wide ? 0 : 1);
  }
  EXPECT_EQ(errno, wide ? 0 : EINVAL);
  for (const int length : {3, -1}) {
    errno = 0;
    const int before = runtime.reports();
    EXPECT_EQ(outcomeOf([&] { string.Append(this->kNull, length); }), kInvalid);
    EXPECT_EQ(errno, EINVAL);
    if (InvalidParameters::kReachesLibrary) {
      EXPECT_EQ(runtime.reports(), before + 1);
      EXPECT_TRUE(runtime.allNull());
      EXPECT_EQ(runtime.errorAtReport(), EINVAL);
    }
  }
  EXPECT_EQ(string.GetString(), buffer);
  EXPECT_EQ(textOf(string), this->t("abcdefg"));
}

}  // namespace
}  // namespace securetext
