// Many texts, read twice: by the library and by the oracle. Run under several zones by TZ.
#include <cstdlib>
#include <cwchar>
#include <random>

#include "conversion.h"

namespace timetext {
namespace {

// Wine's calendar is wider than the platform's: what it takes beyond is compared on the native target only.
#ifdef _WIN32
constexpr bool kStrict = false;
#else
constexpr bool kStrict = true;
#endif

testing::AssertionResult agrees(const std::wstring& text, int localBias) {
  const oracle::Reading reading = oracle::read(text, localBias);
  const auto time = toFields(text.c_str());
  const auto ticks = toTicks(text.c_str());
  const bool same = time.result == (reading.fields ? ERROR_SUCCESS : kInvalid) &&
                    (!reading.fields || time.value == *reading.fields) &&
                    ticks.result == (reading.ticks ? ERROR_SUCCESS : kInvalid) &&
                    ticks.value == reading.ticks.value_or(kUntouchedTicks);
  if (same || (reading.strict && !kStrict)) {
    return testing::AssertionSuccess();
  }
  return testing::AssertionFailure() << testing::PrintToString(text) << " gives " << time.result << " "
                                     << testing::PrintToString(time.value) << " and " << ticks.result << " "
                                     << ticks.value << ", expected " << testing::PrintToString(reading.fields)
                                     << " and " << testing::PrintToString(reading.ticks);
}

// A run under another zone that tests nothing but UTC again would go unnoticed.
TEST(TimeTextDifferential, ZoneOfTheEnvironmentIsTheMachines) {
  const char* const variable = std::getenv("TZ");
  const std::string zone = variable != nullptr ? variable : "";
  const int bias = oracle::presentBias();
  EXPECT_TRUE(zone != "Europe/Berlin" || bias == -60 || bias == -120) << bias;
  EXPECT_TRUE(zone != "Australia/Sydney" || bias == -600 || bias == -660) << bias;
}

// Sections of all lengths, with and without punctuation, joined by all separators and markers.
TEST(TimeTextDifferential, SectionsOfEveryLength) {
  const int bias = oracle::presentBias();
  const auto prefixes = [](std::initializer_list<std::wstring> texts) {
    std::vector<std::wstring> all;
    for (const std::wstring& text : texts) {
      for (std::size_t length = 0; length <= 12; ++length) {
        all.push_back(text.substr(0, length));
      }
    }
    return all;
  };
  const auto times = prefixes({L"12:34:56:01:", L"123456010203"});
  const auto offsets = prefixes({L"01:30:00:00:", L"013000000000"});
  for (const std::wstring& date : prefixes({L"2013-03-28-1", L"201303281122"})) {
    ASSERT_TRUE(agrees(date, bias));
    for (const wchar_t* const separator : {L"T", L" ", L"t"}) {
      for (const std::wstring& time : times) {
        const std::wstring dateAndTime = date + separator + time;
        ASSERT_TRUE(agrees(dateAndTime, bias));
        // The longer ones differ from the shorter in nothing but the offset.
        const bool wellFormed = (date.size() == 8 || date.size() == 10) && time.size() == 5;
        for (std::size_t i = 0; i < (wellFormed ? offsets.size() : 6); ++i) {
          for (const wchar_t* const marker : {L"+", L"-", L"Z", L"z"}) {
            ASSERT_TRUE(agrees(dateAndTime + marker + offsets[i], bias));
          }
        }
      }
    }
  }
}

TEST(TimeTextDifferential, MutatedTexts) {
  const std::wstring seeds[] = {L"2013-03-28T12:34:56Z",      L"20130328T123456Z", L"2013-03-28 12:34:56",
                                L"2013-03-28T12:34:56+01:00", L"2013-03-28",       L"2012-02-29T1234-0530",
                                L"9999-12-31T23:59:59-12:59", L"2013-03T12",       L"1601-01-01T00Z",
                                L"2000-02-29T23:59+13"};
  constexpr std::wstring_view kCharacters = L"0123456789-:+TZ tz./\x0663\xff12\x0001";
  const int bias = oracle::presentBias();
  std::mt19937 random(20130328);
  const auto below = [&](std::size_t limit) { return random() % limit; };
  for (int i = 0; i < 150'000; ++i) {
    std::wstring text = seeds[below(std::size(seeds))];
    for (std::size_t changes = 1 + below(3); changes > 0; --changes) {
      // Mostly digits and punctuation in place, so that many texts stay well-formed.
      const wchar_t character = kCharacters[below(below(2) != 0 ? 12 : kCharacters.size())];
      const std::size_t removed = below(4) != 0, added = below(4) != 0;
      text.replace(below(text.size() + 1), removed, added, character);
    }
    ASSERT_TRUE(agrees(text, bias));
  }
}

// The days around the turns of months and years, in all years that a text can name, and the way back from the tick
// count.
TEST(TimeTextDifferential, CalendarOfTexts) {
  for (int year = 1599; year <= 9999; ++year) {
    for (const int month : {1, 2, 3, 4, 12}) {
      for (const int day : {1, 28, 29, 30, 31}) {
        wchar_t text[64], buffer[21];
        std::swprintf(text, 64, L"%04d-%02d-%02dT23:59:59Z", year, month, day);
        ASSERT_TRUE(agrees(text, 0));
        if (const auto ticks = oracle::read(text, 0).ticks) {
          LARGE_INTEGER value;
          value.QuadPart = *ticks;
          DWORD chars = 21;
          ASSERT_EQ(vlSysLargeIntegerToISO8601(&value, buffer, &chars), DWORD{ERROR_SUCCESS});
          ASSERT_STREQ(buffer, text);
        }
      }
    }
  }
}

}  // namespace
}  // namespace timetext
