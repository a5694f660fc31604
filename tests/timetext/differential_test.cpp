// Many texts, read twice: by the library and by the oracle.
#include <gtest/gtest.h>

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
  if (reading.strict && !kStrict) {
    return testing::AssertionSuccess();
  }
  const ToFields time(text.c_str());
  const ToTicks value(text.c_str());
  const bool same = time.result == (reading.fields ? ERROR_SUCCESS : kInvalid) &&
                    (!reading.fields || time.fields == *reading.fields) &&
                    value.result == (reading.ticks ? ERROR_SUCCESS : kInvalid) &&
                    value.ticks == reading.ticks.value_or(kUntouchedTicks);
  if (same) {
    return testing::AssertionSuccess();
  }
  return testing::AssertionFailure() << testing::PrintToString(text) << " gives " << time.result << " "
                                     << testing::PrintToString(time.fields) << " and " << value.result << " "
                                     << value.ticks << ", expected " << testing::PrintToString(reading.fields)
                                     << " and " << testing::PrintToString(reading.ticks);
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
  const auto dates = prefixes({L"2013-03-28-1", L"201303281122"});
  const auto times = prefixes({L"12:34:56:01:", L"123456010203"});
  const auto offsets = prefixes({L"01:30:00:00:", L"013000000000"});
  for (const std::wstring& date : dates) {
    ASSERT_TRUE(agrees(date, bias));
    for (const wchar_t* const separator : {L"T", L" ", L"t"}) {
      for (const std::wstring& time : times) {
        const std::wstring dateAndTime = date + separator + time;
        ASSERT_TRUE(agrees(dateAndTime, bias));
        for (const wchar_t* const marker : {L"+", L"-", L"Z", L"z"}) {
          // The longer ones differ from the shorter in nothing but the offset.
          const bool wellFormed = (date.size() == 8 || date.size() == 10) && time.size() == 5;
          for (std::size_t i = 0; i < (wellFormed ? offsets.size() : 6); ++i) {
            ASSERT_TRUE(agrees(dateAndTime + marker + offsets[i], bias));
          }
        }
      }
    }
  }
}

TEST(TimeTextDifferential, EveryOffset) {
  for (int hours = 0; hours <= 99; ++hours) {
    for (int minutes = 0; minutes < 100; minutes += hours < 15 ? 1 : 33) {
      for (const wchar_t* const format :
           {L"2013-01-01T00:00%lc%02d:%02d", L"20130101 0000%lc%02d%02d", L"20130101T00%lc%02d"}) {
        for (const wchar_t marker : {L'+', L'-', L'Z'}) {
          wchar_t text[64];
          std::swprintf(text, 64, format, static_cast<wint_t>(marker), hours, minutes);
          ASSERT_TRUE(agrees(text, 0));
        }
      }
    }
  }
}

TEST(TimeTextDifferential, MutatedTexts) {
  const std::vector<std::wstring> seeds = {L"2013-03-28T12:34:56Z",      L"20130328T123456Z", L"2013-03-28 12:34:56",
                                           L"2013-03-28T12:34:56+01:00", L"2013-03-28",       L"2012-02-29T1234-0530",
                                           L"9999-12-31T23:59:59-12:59", L"2013-03T12",       L"1601-01-01T00Z",
                                           L"2000-02-29T23:59+13"};
  constexpr std::wstring_view kCharacters = L"0123456789-:+TZ tz./\x0663\xff12\x0001";
  const int bias = oracle::presentBias();
  std::mt19937 random(20130328);
  const auto below = [&](std::size_t limit) { return random() % limit; };
  for (int i = 0; i < 150'000; ++i) {
    std::wstring text = seeds[below(seeds.size())];
    for (std::size_t changes = 1 + below(3); changes > 0; --changes) {
      const std::size_t position = below(text.size() + 1);
      // Mostly digits and punctuation in place, so that many texts stay well-formed.
      const wchar_t character = kCharacters[below(below(2) != 0 ? 12 : kCharacters.size())];
      switch (below(4)) {
        case 0:
          text.insert(position, 1, character);
          break;
        case 1:
          text.erase(position, 1);
          break;
        default:
          if (position < text.size()) {
            text[position] = character;
          }
      }
    }
    ASSERT_TRUE(agrees(text, bias));
  }
}

// The days around the turns of months and years, in all years that a text can name, and the way back from the tick
// count.
TEST(TimeTextDifferential, CalendarOfTexts) {
  for (unsigned year = 1599; year <= 9999; ++year) {
    for (const unsigned month : {1u, 2u, 3u, 4u, 12u}) {
      for (const unsigned day : {1u, 28u, 29u, 30u, 31u}) {
        wchar_t text[64];
        std::swprintf(text, 64, L"%04u-%02u-%02uT23:59:59Z", year, month, day);
        ASSERT_TRUE(agrees(text, 0));
        const oracle::Reading reading = oracle::read(text, 0);
        if (reading.ticks) {
          LARGE_INTEGER value;
          value.QuadPart = *reading.ticks;
          wchar_t buffer[21];
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
