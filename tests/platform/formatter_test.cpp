// The platform's wide formats.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <climits>
#include <cmath>
#include <cstdarg>
#include <cstring>
#include <cwchar>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <support/guardedbuffer.h>
#include <support/machinetest.h>

#include <vlplatform/windows.h>

#include "invalidparameters.h"

namespace {

int counted(const wchar_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const int result = _vscwprintf(format, arguments);
  va_end(arguments);
  return result;
}

int stored(wchar_t* buffer, std::size_t size, const wchar_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const int result = vswprintf_s(buffer, size, format, arguments);
  va_end(arguments);
  return result;
}

// The text, made in a buffer that is just large enough; "!" if it is no format.
template <class... Arguments>
std::wstring formatted(const wchar_t* format, Arguments... arguments) {
  const int size = counted(format, arguments...);
  if (size < 0) {
    return L"!";
  }
  const auto buffer = std::make_unique<wchar_t[]>(static_cast<std::size_t>(size) + 1);
  EXPECT_EQ(stored(buffer.get(), static_cast<std::size_t>(size) + 1, format, arguments...), size);
  EXPECT_EQ(buffer[static_cast<std::size_t>(size)], L'\0');
  return {buffer.get(), static_cast<std::size_t>(size)};
}

class Formatter : public support::MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
    faults().reset();  // many calls
  }
};

TEST_F(Formatter, TextsAndCharacters) {
  const wchar_t* const wide = L"w\x20ac\x1f600";
  const char* const narrow = "n\xE2\x82\xAC";
  EXPECT_EQ(formatted(L"100%%%s%%", L"a"), L"100%a%");
  for (const wchar_t* const format : {L"[%s]", L"[%ls]", L"[%ws]", L"[%lS]", L"[%wS]"}) {
    EXPECT_EQ(formatted(format, wide), L"[w\x20ac\x1f600]") << testing::PrintToString(format);
  }
  for (const wchar_t* const format : {L"[%S]", L"[%hs]", L"[%hS]", L"[%hhs]"}) {
    EXPECT_EQ(formatted(format, narrow), L"[n\x20ac]") << testing::PrintToString(format);
  }
  EXPECT_EQ(formatted(L"[%S]", "a\xFF\xE2\x82z\xC3"), L"[a\xFFFD\xFFFDz\xFFFD]");
  EXPECT_EQ(formatted(L"%6s|%-6s|%06s|%2s", wide, wide, wide, wide),
            L"   w\x20ac\x1f600|w\x20ac\x1f600   |000w\x20ac\x1f600|w\x20ac\x1f600");
  EXPECT_EQ(formatted(L"%4S|%-4S|%.1S|%.0S|", narrow, narrow, narrow, narrow), L"  n\x20ac|n\x20ac  |n||");
  EXPECT_EQ(formatted(L"%.2s|%5.1s|%.s|%.*s|%.*s", wide, wide, wide, 1, wide, -1, wide),
            L"w\x20ac|    w||w|w\x20ac\x1f600");
  EXPECT_EQ(formatted(L"%s %S %.3s %8hs", nullptr, nullptr, nullptr, nullptr), L"(null) (null) (nu   (null)");
  EXPECT_EQ(formatted(L"%c%lc%C%hc%3c%-3c|", L'\x20ac', L'b', 'c', 'd', L'e', L'f'),
            L"\x20ac"
            L"bcd  ef  |");
  EXPECT_EQ(formatted(L"a%cb%C", 0, 0xE9), std::wstring(L"a\0b\xFFFD", 4));
}

// Within its precision a text needs no terminator, and nothing behind is read.
TEST_F(Formatter, PrecisionBoundsWhatIsRead) {
  const auto wide = std::make_unique<wchar_t[]>(3);
  std::copy_n(L"abc", 3, wide.get());
  const auto narrow = std::make_unique<char[]>(4);
  std::copy_n("d\xE2\x82\xAC", 4, narrow.get());
  EXPECT_EQ(formatted(L"%.3s%.2S", wide.get(), narrow.get()), L"abcd\x20ac");
  const auto cut = std::make_unique<char[]>(2);
  cut[0] = '\xF0';  // the terminator comes within the character
  EXPECT_EQ(formatted(L"%S", cut.get()), L"\xFFFD");
}

TEST_F(Formatter, NumbersWithThePlatformsLengths) {
  constexpr long long big = 0x123456789abcdef0;
  EXPECT_EQ(formatted(L"%hhd %hd %d %ld %I32d", big, big, big, big, big),
            L"-16 -8464 -1698898192 -1698898192 -1698898192");
  EXPECT_EQ(formatted(L"%p|%20p|%-18p|", reinterpret_cast<void*>(0xabcdef), nullptr, nullptr),
            L"0000000000ABCDEF|    0000000000000000|0000000000000000  |");
  EXPECT_EQ(formatted(L"%a %.0A %Lf", 1.5, 1.0, 2.5L), L"0x1.8000000000000p+0 0X1P+0 2.500000");
}

TEST_F(Formatter, WhatIsNoFormatIsRefused) {
  InvalidParameters invalid;
  for (const wchar_t* const format : {L"%n", L"%y", L"%", L"a%5", L"%5%", L"%-", L"%.", L"%l", L"%1$d", L"%lllx",
                                      L"%wd", L"%Lx", L"%hlx", L"%Z", L"%99999999999d", L"%.99999999999d", L"%I6d"}) {
    support::GuardedBuffer<wchar_t> buffer(32);
    EXPECT_TRUE(invalid.after([&] { return counted(format, 1, 1); }, -1, EINVAL)) << testing::PrintToString(format);
    const std::wstring whole = std::wstring(L"some %s") + format;
    EXPECT_TRUE(invalid.after([&] { return stored(buffer.data(), 32, whole.c_str(), L"text", 1, 1); }, -1, EINVAL));
    EXPECT_TRUE(std::all_of(buffer.data(), buffer.data() + 9, [](wchar_t c) { return c == L'\0'; }));
    EXPECT_TRUE(buffer.guardsIntact());
  }
  wchar_t buffer[4] = L"abc";
  EXPECT_TRUE(invalid.after([&] { return counted(nullptr); }, -1, EINVAL));
  EXPECT_TRUE(invalid.after([&] { return stored(nullptr, 4, L"a"); }, -1, EINVAL));
  EXPECT_TRUE(invalid.after([&] { return stored(buffer, 0, L"a"); }, -1, EINVAL));
  EXPECT_STREQ(buffer, L"abc");
  EXPECT_TRUE(invalid.after([&] { return stored(buffer, 4, nullptr); }, -1, EINVAL));
  EXPECT_STREQ(buffer, L"");
  EXPECT_TRUE(invalid.after([&] { return counted(L"%2147483647d%5d", 1, 1); }, -1, ERANGE));
}

TEST_F(Formatter, ATextThatDoesNotFitLeavesNothing) {
  InvalidParameters invalid;
  constexpr std::size_t kNeeded = 16;  // "secret 12345 ab" and its terminator
  for (std::size_t size = 1; size <= kNeeded + 1; ++size) {
    support::GuardedBuffer<wchar_t> buffer(size);
    const bool fits = size >= kNeeded;
    EXPECT_TRUE(invalid.after([&] { return stored(buffer.data(), size, L"%s %d %S", L"secret", 12345, "ab"); },
                              fits ? 15 : -1, fits ? 0 : ERANGE))
        << size;
    if (fits) {
      EXPECT_STREQ(buffer.data(), L"secret 12345 ab");
      EXPECT_TRUE(buffer.untouched(kNeeded));
    } else {
      EXPECT_TRUE(std::all_of(buffer.data(), buffer.data() + size, [](wchar_t c) { return c == L'\0'; })) << size;
      EXPECT_TRUE(buffer.guardsIntact());
    }
  }
}

// A conversion by chance, as the platform and as the C library write it.
struct RandomConversion {
  std::wstring ours = L"<%";
  std::wstring theirs = L"<%";
  bool wide = false;  // 64 bits

  explicit RandomConversion(const wchar_t* format) : ours(format), theirs(format) {}
  template <class Random>
  RandomConversion(Random& random, std::wstring_view types, bool integer) {
    const auto below = [&](unsigned n) { return static_cast<unsigned>(random() % n); };
    const auto both = [&](const std::wstring& text) {
      ours += text;
      theirs += text;
    };
    for (const wchar_t flag : std::wstring_view(L"-+ 0#")) {
      if (below(3) == 0) {
        both({flag});
      }
    }
    if (below(2) == 0) {
      both(std::to_wstring(1 + below(40)));
    }
    const wchar_t type = types[below(static_cast<unsigned>(types.size()))];
    if (below(2) == 0) {
      both(L"." + (below(8) == 0 ? L"" : std::to_wstring(below(30))));
    } else if (type == L'a' || type == L'A') {
      theirs += L".13";
    }
    if (integer) {
      static constexpr const wchar_t* kLengths[][2] = {{L"", L""},     {L"l", L""},    {L"I32", L""},   {L"h", L"h"},
                                                       {L"hh", L"hh"}, {L"ll", L"ll"}, {L"I64", L"ll"}, {L"I", L"ll"},
                                                       {L"j", L"j"},   {L"z", L"z"},   {L"t", L"t"}};
      const unsigned length = below(11);
      ours += kLengths[length][0];
      theirs += kLengths[length][1];
      wide = length >= 5;
    }
    both({type, L'>'});
  }

  template <class Value>
  void compare(Value value) const {
    wchar_t expected[2048];
    ASSERT_GT(std::swprintf(expected, std::size(expected), theirs.c_str(), value), 0);
    ASSERT_EQ(formatted(ours.c_str(), value), expected) << testing::PrintToString(ours);
  }
};

TEST_F(Formatter, NumbersAreThoseOfTheCLibrary) {
  std::mt19937_64 random(20130328);
  const double special[] = {0.0, -0.0, 1.0, 0.5, 9.9999999, 1e100, HUGE_VAL, -HUGE_VAL, std::nan(""), 5e-324};
  for (int round = 0; round < 60000 && !HasFatalFailure(); ++round) {
    const RandomConversion integer(random, L"diuxXo", true);
    const std::uint64_t bits = random();
    const std::uint64_t small = bits >> random() % 64;
    const std::uint64_t value = random() % 8 == 0 ? 0 : random() % 2 == 0 ? small : 0 - small;
    integer.wide ? integer.compare(static_cast<long long>(value)) : integer.compare(static_cast<int>(value));

    const double numbers[] = {special[random() % std::size(special)], std::bit_cast<double>(bits),
                              static_cast<double>(static_cast<std::int64_t>(bits)) / 1e9};
    RandomConversion(random, L"eEfFgGaA", false).compare(numbers[random() % std::size(numbers)]);
  }
  // More digits than a number has.
  for (const wchar_t* const format : {L"%.1500f", L"%.1500e", L"%#.1500g", L"%.1500g", L"%.1500a", L"%01700.1500f"}) {
    for (const double value : {5e-324, 1.7976931348623157e308, -0.1, 0.0}) {
      RandomConversion(format).compare(value);
    }
  }
}

TEST_F(Formatter, TheUserLibrarysTextsEndWithTheirBuffer) {
  support::GuardedBuffer<wchar_t> wide(1024);
  support::GuardedBuffer<char> narrow(1024);
  EXPECT_EQ(wsprintfW(wide.data(), L"%s", std::wstring(2000, L'x').c_str()), 1023);
  EXPECT_EQ(wsprintfA(narrow.data(), "%s", std::string(2000, 'x').c_str()), 1023);
  EXPECT_TRUE(wide.guardsIntact() && narrow.guardsIntact());
}

// On the real stack: AddressSanitizer moves locals elsewhere, so that the search means most without it.
#define ON_REAL_STACK __attribute__((noinline, no_sanitize("address")))

// Whether ended calls have left the digits where their frames lay.
ON_REAL_STACK bool deadStackHolds(const std::wstring& digits) {
  wchar_t below[8192];
  __asm__ __volatile__("" : : "r"(below) : "memory");
  return memmem(below, sizeof below, digits.data(), digits.size() * sizeof(wchar_t)) != nullptr;
}

ON_REAL_STACK void leaveOnStack(const std::wstring& text) {
  wchar_t copy[1024];
  text.copy(copy, text.size());
  __asm__ __volatile__("" : : "r"(copy) : "memory");
}

TEST_F(Formatter, LeavesNoDigitsOnTheStack) {
  const std::uint64_t number = std::mt19937_64(std::random_device{}())() | 1ull << 63;
  const std::wstring digits = std::to_wstring(number);
  leaveOnStack(digits);
  ASSERT_TRUE(deadStackHolds(digits)) << "the search itself does not work";
  const auto buffer = std::make_unique<wchar_t[]>(64);
  leaveOnStack(std::wstring(1000, L'x'));
  ASSERT_GT(stored(buffer.get(), 64, L"%llu", number), 0);
  EXPECT_FALSE(deadStackHolds(digits));
  EXPECT_EQ(buffer.get(), digits);
}

}  // namespace
