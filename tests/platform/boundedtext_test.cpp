// The runtime's bounded copies, fills and conversions.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include <support/guardedbuffer.h>
#include <support/machinetest.h>

#include <vlplatform/windows.h>

#include "invalidparameters.h"

namespace {

class BoundedText : public support::MachineTest {
 protected:
  InvalidParameters invalid_;
};

errno_t copy(char* target, rsize_t size, const char* source) {
  return strcpy_s(target, size, source);
}
errno_t copy(wchar_t* target, rsize_t size, const wchar_t* source) {
  return wcscpy_s(target, size, source);
}

template <class Char>
class BoundedCopy : public BoundedText {};
using Widths = testing::Types<char, wchar_t>;
TYPED_TEST_SUITE(BoundedCopy, Widths);

TYPED_TEST(BoundedCopy, CopiesAllOrNothing) {
  const TypeParam text[] = {'a', 'b', 'c', 0};
  for (std::size_t size = 1; size <= 6; ++size) {
    support::GuardedBuffer<TypeParam> buffer(size);
    const errno_t result = size < 4 ? ERANGE : 0;
    EXPECT_TRUE(this->invalid_.after([&] { return copy(buffer.data(), size, text); }, result, result)) << size;
    EXPECT_EQ(std::basic_string<TypeParam>(buffer.data()), std::basic_string<TypeParam>(text, size < 4 ? 0 : 3));
    EXPECT_TRUE(buffer.untouched(size < 4 ? 1 : 4)) << size;  // no part of a text that does not fit
  }
}

TYPED_TEST(BoundedCopy, RefusesWhatIsInvalid) {
  const TypeParam text[] = {'a', 0};
  TypeParam buffer[] = {'x', 'y', 0};
  TypeParam* const none = nullptr;
  EXPECT_TRUE(this->invalid_.after([&] { return copy(none, 3, text); }, EINVAL, EINVAL));
  EXPECT_TRUE(this->invalid_.after([&] { return copy(buffer, 0, text); }, EINVAL, EINVAL));
  EXPECT_EQ(buffer[0], TypeParam{'x'});
  EXPECT_TRUE(this->invalid_.after([&] { return copy(buffer, 3, none); }, EINVAL, EINVAL));
  EXPECT_EQ(buffer[0], TypeParam{});
}

TEST_F(BoundedText, MemoryCopies) {
  const auto expectCopy = [this](const char* source, rsize_t count, errno_t result, const std::string& copied,
                                 const std::string& moved) {
    std::string buffer = "wxyz";
    EXPECT_TRUE(invalid_.after([&] { return memcpy_s(buffer.data(), 4, source, count); }, result, result)) << count;
    EXPECT_EQ(buffer, copied) << count;
    buffer = "wxyz";
    EXPECT_TRUE(invalid_.after([&] { return memmove_s(buffer.data(), 4, source, count); }, result, result)) << count;
    EXPECT_EQ(buffer, moved) << count;
  };
  const std::string zeros(4, '\0');
  expectCopy("abcd", 4, 0, "abcd", "abcd");
  expectCopy("abcd", 2, 0, "abyz", "abyz");
  expectCopy(nullptr, 0, 0, "wxyz", "wxyz");
  expectCopy(nullptr, 1, EINVAL, zeros, "wxyz");
  expectCopy("abcdef", 5, ERANGE, zeros, "wxyz");
  EXPECT_TRUE(invalid_.after([] { return memcpy_s(nullptr, 4, "a", 1); }, EINVAL, EINVAL));
  EXPECT_TRUE(invalid_.after([] { return memmove_s(nullptr, 4, "a", 1); }, EINVAL, EINVAL));
  char overlapping[] = "abcdef";
  EXPECT_EQ(memmove_s(overlapping + 1, 5, overlapping, 4), 0);
  EXPECT_STREQ(overlapping, "aabcdf");
}

TEST_F(BoundedText, ConversionToBytes) {
  const struct {
    std::wstring source;
    rsize_t size;  // 0: no buffer, its size is asked for
    rsize_t count;
    errno_t result;
    std::size_t converted;
    std::string bytes;
  } rows[] = {
      {L"abc", 4, 9, 0, 4, "abc"},
      {L"abc", 4, 2, 0, 3, "ab"},
      {L"abc", 4, 0, 0, 1, ""},
      {L"abc", 3, 3, ERANGE, 0, ""},
      {L"a\x20ac!", 6, 9, 0, 6, "a\xE2\x82\xAC!"},
      // Never within a character.
      {L"a\x20ac!", 6, 3, 0, 2, "a"},
      {L"\x1f600", 5, 4, 0, 5, "\xF0\x9F\x98\x80"},
      {L"ab\xd800", 9, 9, EILSEQ, 0, ""},
      {{L'a', wchar_t{0xDC00}}, 0, 0, EILSEQ, 0, ""},
      {L"a\x20ac!", 0, 0, 0, 6, ""},
  };
  for (const auto& row : rows) {
    support::GuardedBuffer<char> buffer(row.size);
    std::size_t converted = 99;
    char* const target = row.size == 0 ? nullptr : buffer.data();
    EXPECT_TRUE(invalid_.after([&] { return wcstombs_s(&converted, target, row.size, row.source.c_str(), row.count); },
                               row.result, row.result))
        << row.size << " " << row.count;
    EXPECT_EQ(converted, row.converted) << row.size << " " << row.count;
    EXPECT_TRUE(buffer.guardsIntact());
    if (target != nullptr) {
      EXPECT_STREQ(buffer.data(), row.bytes.c_str());
      EXPECT_TRUE(row.result == 0 || std::memchr(buffer.data(), 'a', row.size) == nullptr)
          << "a part of the text is left";
    }
  }
}

TEST_F(BoundedText, ConversionRefusesWhatIsInvalid) {
  char buffer[4] = "abc";
  std::size_t converted = 99;
  EXPECT_TRUE(invalid_.after([&] { return wcstombs_s(&converted, nullptr, 4, L"a", 1); }, EINVAL, EINVAL));
  EXPECT_TRUE(invalid_.after([&] { return wcstombs_s(&converted, buffer, 0, L"a", 1); }, EINVAL, EINVAL));
  EXPECT_STREQ(buffer, "abc");
  EXPECT_TRUE(invalid_.after([&] { return wcstombs_s(&converted, buffer, 4, nullptr, 1); }, EINVAL, EINVAL));
  EXPECT_STREQ(buffer, "");
  EXPECT_EQ(converted, 0u);
}

}  // namespace
