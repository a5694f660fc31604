// The platform's wide formats.
#include <gtest/gtest.h>

#include <pthread.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdarg>
#include <cstring>
#include <cwchar>
#include <functional>
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
  return std::wstring(buffer.get(), static_cast<std::size_t>(size));
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
  EXPECT_EQ(formatted(L""), L"");
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
  EXPECT_EQ(formatted(L"%*s|%*s", 3, L"a", -3, L"b"), L"  a|b  ");
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
  EXPECT_EQ(formatted(L"%s-%d", L"a", -7), L"a--7");
  EXPECT_EQ(formatted(L"%hhd %hd %d %ld %I32d", big, big, big, big, big),
            L"-16 -8464 -1698898192 -1698898192 -1698898192");
  for (const wchar_t* const format : {L"%lld", L"%I64d", L"%Id", L"%jd", L"%zd", L"%td", L"%lli"}) {
    EXPECT_EQ(formatted(format, big), L"1311768467463790320") << testing::PrintToString(format);
  }
  EXPECT_EQ(formatted(L"%llu %I64x %#llo", ~0ull, ~0ull, ~0ull),
            L"18446744073709551615 ffffffffffffffff 01777777777777777777777");
  EXPECT_EQ(formatted(L"%lld %d", LLONG_MIN, INT_MIN), L"-9223372036854775808 -2147483648");
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

TEST_F(Formatter, PlannedFaults) {
  InvalidParameters invalid;
  faults().watch();
  wchar_t buffer[4] = L"abc";
  faults().fail("_vscwprintf");
  EXPECT_TRUE(invalid.after([&] { return counted(L"a"); }, -1, EINVAL));
  faults().fail("vswprintf_s");
  EXPECT_TRUE(invalid.after([&] { return stored(buffer, 4, L"a"); }, -1, EINVAL));
  EXPECT_STREQ(buffer, L"");
}

// A conversion by chance, as the platform and as the C library write it.
struct RandomConversion {
  std::wstring ours = L"<%";
  std::wstring theirs = L"<%";
  bool wide = false;  // 64 bits

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
    wchar_t expected[512];
    ASSERT_GT(std::swprintf(expected, 512, theirs.c_str(), value), 0);
    ASSERT_EQ(formatted(ours.c_str(), value), expected) << testing::PrintToString(ours);
  }
};

TEST_F(Formatter, IntegersAreThoseOfTheCLibrary) {
  std::mt19937_64 random(20130328);
  for (int round = 0; round < 60000 && !HasFatalFailure(); ++round) {
    const RandomConversion conversion(random, L"diuxXo", true);
    const std::uint64_t value = random() >> random() % 64;
    const std::uint64_t picked = random() % 8 == 0 ? 0 : random() % 2 == 0 ? value : 0 - value;
    conversion.wide ? conversion.compare(static_cast<long long>(picked)) : conversion.compare(static_cast<int>(picked));
  }
}

TEST_F(Formatter, FloatingNumbersAreThoseOfTheCLibrary) {
  std::mt19937_64 random(20130328);
  const double special[] = {0.0, -0.0, 1.0, 0.5, 9.9999999, 1e100, HUGE_VAL, -HUGE_VAL, std::nan(""), 5e-324};
  for (int round = 0; round < 60000 && !HasFatalFailure(); ++round) {
    const RandomConversion conversion(random, L"eEfFgGaA", false);
    const std::uint64_t bits = random();
    double value;
    std::memcpy(&value, &bits, sizeof value);
    switch (random() % 3) {
      case 0:
        value = special[random() % std::size(special)];
        break;
      case 1:
        value = static_cast<double>(static_cast<std::int64_t>(bits)) / 1e9;
        break;
      default:
        break;
    }
    conversion.compare(value);
  }
  // More digits than a number has.
  for (const wchar_t* const format : {L"%.1500f", L"%.1500e", L"%#.1500g", L"%.1500g", L"%.1500a", L"%01700.1500f"}) {
    for (const double value : {5e-324, 1.7976931348623157e308, -0.1, 0.0}) {
      wchar_t expected[2048];
      ASSERT_GT(std::swprintf(expected, 2048, format, value), 0);
      EXPECT_EQ(formatted(format, value), expected) << testing::PrintToString(format) << " " << value;
    }
  }
}

// On the real stack: AddressSanitizer moves locals elsewhere, so that the search means most without it.
#define ON_REAL_STACK __attribute__((noinline, no_sanitize("address")))

// Calls deep in the stack, where the end of the thread writes no more.
ON_REAL_STACK void callDeep(const std::function<void()>& task) {
  volatile char above[16384];
  above[0] = 0;
  task();
  above[sizeof above - 1] = 0;
}

// A thread whose stack can be looked at when it has ended.
class OwnStack {
 public:
  void run(std::function<void()> task) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstack(&attributes, stack_.data(), stack_.size()), 0);
    const auto entry = [](void* call) -> void* {
      callDeep(*static_cast<std::function<void()>*>(call));
      return nullptr;
    };
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, &attributes, entry, &task), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
  }
  template <class Char>
  bool holds(const std::basic_string<Char>& text) const {
    return memmem(stack_.data(), stack_.size(), text.data(), text.size() * sizeof(Char)) != nullptr;
  }

 private:
  std::vector<char> stack_ = std::vector<char>(std::size_t{1} << 20);
};

ON_REAL_STACK void leaveOnStack(const wchar_t* text, std::size_t size) {
  wchar_t copy[16];
  for (std::size_t i = 0; i < size; ++i) {
    static_cast<volatile wchar_t*>(copy)[i] = text[i];
  }
}

TEST_F(Formatter, LeavesNoCopyOnTheStack) {
  std::mt19937_64 random(std::random_device{}());
  const std::uint64_t number = random() | 1ull << 63;
  const std::wstring digits = std::to_wstring(number);
  std::wstring wide(12, L'\0');
  std::string narrow(12, '\0');
  std::generate(wide.begin(), wide.end(), [&] { return static_cast<wchar_t>(L'a' + random() % 26); });
  std::generate(narrow.begin(), narrow.end(), [&] { return static_cast<char>('a' + random() % 26); });
  std::vector<wchar_t> buffer(128);

  OwnStack left;
  left.run([&] { leaveOnStack(wide.data(), wide.size()); });
  ASSERT_TRUE(left.holds(wide)) << "the search itself does not work";

  OwnStack stack;
  int result = 0;
  stack.run(
      [&] { result = stored(buffer.data(), buffer.size(), L"%20s %-20S %llu", wide.c_str(), narrow.c_str(), number); });
  ASSERT_GT(result, 0);
  const std::wstring text(buffer.data());
  EXPECT_NE(text.find(digits), std::wstring::npos);
  EXPECT_FALSE(stack.holds(wide) || stack.holds(std::string(wide.begin(), wide.end())));
  EXPECT_FALSE(stack.holds(narrow) || stack.holds(std::wstring(narrow.begin(), narrow.end())));
  EXPECT_FALSE(stack.holds(digits) || stack.holds(std::string(digits.begin(), digits.end())));
}

}  // namespace
