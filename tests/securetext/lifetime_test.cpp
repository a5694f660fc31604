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
  struct {
    std::string_view chars;
    int length;
    std::string_view expected;
  } const texts[] = {{"secret", 6, "secret"}, {"secret", 3, "sec"}, {"sec\0ret"sv, 7, "sec"},
                     {"\0secret"sv, 7, ""},   {"secret", 0, ""},    {"s", 1, "s"}};
  for (const auto& [chars, length, expected] : texts) {
    const auto source = this->t(chars);
    EXPECT_EQ(textOf(String(source.data(), length)), this->t(expected)) << chars << length;
    EXPECT_EQ(source, this->t(chars));
  }
  EXPECT_EQ(textOf(String(this->kNull, 0)), this->t(""));

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

TYPED_TEST(BothWidths, AssignmentTakesACopyAndLeavesNothing) {
  using String = TypeParam;
  const String shorter(this->t("pin").c_str());
  String target(this->t("a longer secret").c_str());
  const int allocated = headerOf(target.GetString()).nAllocLength;
  const auto* const buffer = target.GetString();
  EXPECT_EQ(&(target = shorter), &target);
  EXPECT_EQ(textOf(target), this->t("pin"));
  EXPECT_EQ(target.GetString(), buffer);
  EXPECT_EQ(headerOf(buffer).nAllocLength, allocated);
  EXPECT_TRUE(zeroFrom(buffer, 3));

  const String& same = target;
  target = same;
  EXPECT_EQ(textOf(target), this->t("pin"));

  String copy(target);
  EXPECT_NE(copy.GetString(), target.GetString());
  copy.GetBuffer()[0] = 'b';
  EXPECT_EQ(textOf(target), this->t("pin"));
  target.Empty();
  EXPECT_EQ(textOf(copy), this->t("bin"));
  target = copy;
  copy.Empty();
  EXPECT_EQ(textOf(target), this->t("bin"));
  target = String();
  EXPECT_EQ(textOf(target), this->t(""));
  EXPECT_TRUE(zeroFrom(buffer, 0));

  // One character behind the text is asked for.
  String exact;
  exact = String(this->t("0123456789").c_str());
  EXPECT_GE(headerOf(exact.GetString()).nAllocLength, 11);
}

TYPED_TEST(BothWidths, EmptyZeroesTheWholeAllocation) {
  TypeParam string(this->t("secret").c_str());
  auto* const buffer = string.GetBuffer(40);
  const int allocated = headerOf(buffer).nAllocLength;
  std::fill(buffer, buffer + allocated, 'x');
  string.Empty();
  EXPECT_EQ(textOf(string), this->t(""));
  EXPECT_EQ(string.GetBuffer(), buffer);
  EXPECT_EQ(headerOf(buffer).nAllocLength, allocated);
  EXPECT_TRUE(zeroFrom(buffer, 0));
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

TYPED_TEST(BothWidths, ReleaseBufferCleansBehindTheText) {
  using Char = CharOf<TypeParam>;
  TypeParam string;
  Char* const buffer = string.GetBuffer(20);
  const int allocated = headerOf(buffer).nAllocLength;
  ASSERT_GE(allocated, 20);
  const auto fill = [&] { std::fill(buffer, buffer + allocated, 'x'); };
  const Text<Char> full(static_cast<std::size_t>(allocated), 'x');

  fill();
  string.ReleaseBuffer(allocated);
  EXPECT_EQ(textOf(string), full);
  string.ReleaseBuffer(-1);  // measured up to the terminator behind the allocated length
  EXPECT_EQ(textOf(string), full);
  for (const int n : {allocated + 1, INT_MAX, -2, INT_MIN}) {
    EXPECT_EQ(outcomeOf([&] { string.ReleaseBuffer(n); }), kInvalid) << n;
    EXPECT_EQ(textOf(string), full);
  }
  for (const int n : {allocated - 1, 5, 1, 0}) {
    fill();
    string.ReleaseBuffer(n);
    EXPECT_EQ(textOf(string), full.substr(0, static_cast<std::size_t>(n)));
    EXPECT_TRUE(zeroFrom(buffer, n));
  }
  fill();
  buffer[3] = 0;
  string.ReleaseBuffer(-1);
  EXPECT_EQ(textOf(string), this->t("xxx"));
  EXPECT_TRUE(zeroFrom(buffer, 3));
  EXPECT_EQ(string.GetBuffer(), buffer);
}

TYPED_TEST(BothWidths, InsertAtEveryPlace) {
  using String = TypeParam;
  struct {
    int index;
    const char* expected;
  } const places[] = {{0, "<>abc"},  {1, "a<>bc"},  {3, "abc<>"},       {4, "abc<>"},
                      {-1, "<>abc"}, {99, "abc<>"}, {INT_MIN, "<>abc"}, {INT_MAX, "abc<>"}};
  for (const auto& [index, expected] : places) {
    String string(this->t("abc").c_str());
    EXPECT_EQ(string.Insert(index, this->t("<>").c_str()), 5) << index;
    EXPECT_EQ(textOf(string), this->t(expected));
    const auto nothing = this->t("");
    for (const auto* const none : {this->kNull, nothing.c_str()}) {
      const auto* const buffer = string.GetString();
      EXPECT_EQ(string.Insert(index, none), 5);
      EXPECT_EQ(string.GetString(), buffer);
      EXPECT_EQ(textOf(string), this->t(expected));
    }
  }
  String empty;
  EXPECT_EQ(empty.Insert(3, this->kNull), 0);
  EXPECT_EQ(empty.Insert(3, this->t("new").c_str()), 3);
  EXPECT_EQ(textOf(empty), this->t("new"));
}

TYPED_TEST(BothWidths, ArgumentsMayLieInTheObject) {
  using String = TypeParam;
  const auto whole = this->t("secret");
  for (std::size_t at = 0; at <= whole.size(); ++at) {
    for (std::size_t from = 0; from <= whole.size(); ++from) {
      for (const bool roomy : {false, true}) {
        String string(whole.c_str());
        if (roomy) {
          string.GetBuffer(100);
        }
        const auto part = whole.substr(from);
        string.Insert(static_cast<int>(at), string.GetString() + from);
        EXPECT_EQ(textOf(string), Text<CharOf<TypeParam>>(whole).insert(at, part)) << at << " " << from;
      }
    }
    String string(whole.c_str());
    string.Append(string.GetString() + at, static_cast<int>(whole.size() - at));
    EXPECT_EQ(textOf(string), whole + whole.substr(at));
    String assigned(whole.c_str());
    assigned = String(assigned.GetString() + at);
    EXPECT_EQ(textOf(assigned), whole.substr(at));
  }
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

TYPED_TEST(BothWidths, FindsTexts) {
  const TypeParam string(this->t("abcabc").c_str());
  struct {
    const char* wanted;
    int start, expected;
  } const rows[] = {{"bc", 0, 1},     {"bc", 1, 1},       {"bc", 2, 4}, {"bc", 5, -1},
                    {"abcabc", 0, 0}, {"abcabcd", 0, -1}, {"B", 0, -1}};
  for (const auto& [wanted, start, expected] : rows) {
    EXPECT_EQ(string.Find(this->t(wanted).c_str(), start), expected) << wanted << start;
  }
}

}  // namespace
}  // namespace securetext
