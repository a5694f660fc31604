// What CSecStr and CSecStrA have in common: construction, the buffer protocol, Append.
#include <cerrno>
#include <climits>
#include <type_traits>
#include <vector>

#include <support/records.h>

#include "fixture.h"

namespace securetext {
namespace {

using namespace std::string_view_literals;

static_assert(!std::is_polymorphic_v<CSecStr> && sizeof(CSecStr) == sizeof(void*));
static_assert(!std::is_polymorphic_v<CSecStrA> && sizeof(CSecStrA) == sizeof(void*));

// mingw's runtime keeps a handler of invalid arguments for each module: that of the program is not told of the
// library's reports.
#ifdef _WIN32
constexpr int kTold = 0;
#else
constexpr int kTold = 1;
#endif

template <class StringType>
class BothWidths : public SecureTextTest {
 protected:
  using Char = std::remove_reference_t<decltype(*std::declval<StringType>().GetBuffer())>;

  static std::basic_string<Char> t(std::string_view ascii) { return support::as<Char>(ascii); }
  static constexpr const Char* kNull = nullptr;
};
using Strings = testing::Types<CSecStr, CSecStrA>;
TYPED_TEST_SUITE(BothWidths, Strings);

TYPED_TEST(BothWidths, NewlyMadeStringsOwnNothingToWrite) {
  TypeParam made;
  const TypeParam ofNull(this->kNull), ofEmpty(this->t("").c_str()), counted(this->kNull, 0), copy(made);
  made.Empty();
  made.ReleaseBuffer(-1);
  made.GetBuffer(INT_MIN);
  EXPECT_EQ(outcomeOf([&] { made.ReleaseBuffer(1); }), kInvalid);
  for (const TypeParam* const string : {&std::as_const(made), &ofNull, &ofEmpty, &counted, &copy}) {
    EXPECT_EQ(textOf(*string), this->t(""));
    EXPECT_EQ(headerOf(string->GetString()).nAllocLength, 0);
  }
}

TYPED_TEST(BothWidths, GetBufferGrowsOverZeros) {
  TypeParam string(this->t("secret").c_str());
  const auto* const old = string.GetString();
  const int allocated = headerOf(old).nAllocLength;
  EXPECT_EQ(string.GetBuffer(allocated), old);
  EXPECT_EQ(textOf(string), this->t("secret"));

  std::vector<bool> oldWasZero;
  this->memory.onAllocate = [&] { oldWasZero.push_back(zeroFrom(old, 0)); };
  string.GetBuffer(allocated + 50);
  this->memory.onAllocate = nullptr;
  EXPECT_EQ(oldWasZero, (std::vector{false, true}));  // for the private copy, then for the larger block
  EXPECT_EQ(textOf(string), this->t("secret"));

  // No unwritten memory shows where the text has a NUL.
  string.GetBuffer()[2] = 0;
  string.GetBuffer(500);
  EXPECT_EQ(textOf(string), this->t("se\0\0\0\0"sv));
}

TYPED_TEST(BothWidths, CountedTexts) {
  static int reports;
  reports = 0;
  const auto former = _set_invalid_parameter_handler([](const wchar_t* expression, const wchar_t* function,
                                                        const wchar_t* file, unsigned line, std::uintptr_t more) {
    reports += expression == nullptr && function == nullptr && file == nullptr && line + more == 0 && errno == EINVAL;
  });
  TypeParam string(this->t("abc\0de"sv).c_str(), 6);
  string.Append(this->t("d\0e"sv).c_str(), 3);
  EXPECT_EQ(outcomeOf([&] { string.Append(this->t("no").c_str(), -1); }), kMemory);
  EXPECT_EQ(reports, 0);
  // The narrow twin has no early return for nothing at all.
  const bool early = std::is_same_v<TypeParam, CSecStr>;
  const auto* const buffer = string.GetString();
  for (const int length : {0, 3, -1}) {
    const bool nothing = early && length == 0;
    const int before = reports;
    errno = 0;
    EXPECT_EQ(outcomeOf([&] { string.Append(this->kNull, length); }), length == 0 ? kDone : kInvalid);
    EXPECT_EQ(errno, nothing ? 0 : EINVAL);
    EXPECT_EQ(reports, before + (nothing ? 0 : kTold));
  }
  _set_invalid_parameter_handler(former);
  EXPECT_EQ(string.GetString(), buffer);
  EXPECT_EQ(textOf(string), this->t("abcd"));
}

}  // namespace
}  // namespace securetext
