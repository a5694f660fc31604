// Time text read a second way: by written-out forms and the standard library's calendar.
#ifndef VL_TESTS_TIMETEXT_ORACLE_H
#define VL_TESTS_TIMETEXT_ORACLE_H

#include <array>
#include <bit>
#include <cstdint>
#include <optional>
#include <string_view>

#include <vlhostkit/timetext.h>

namespace oracle {

// The eight members in the order of the structure, so that they can be compared and printed.
using Fields = std::array<WORD, 8>;

inline Fields fieldsOf(const SYSTEMTIME& time) {
  return std::bit_cast<Fields>(time);
}
inline SYSTEMTIME timeOf(const Fields& fields) {
  return std::bit_cast<SYSTEMTIME>(fields);
}

inline constexpr std::int64_t kTicksPerSecond = 10'000'000;
inline constexpr std::int64_t kTicksPerMinute = 60 * kTicksPerSecond;
inline constexpr std::int64_t kTicksPerDay = kTicksPerMinute * 60 * 24;

// Nothing for fields that the calendar does not have.
std::optional<std::int64_t> ticksOf(const Fields& fields);
// Nothing for a negative count.
std::optional<Fields> fieldsOfTicks(std::int64_t ticks);

struct Reading {
  // Nothing for a text that is refused.
  std::optional<Fields> fields;
  std::optional<std::int64_t> ticks;
  // Years and days that only this calendar keeps to its limits: Wine takes 29 February of any year, and years up to
  // the last tick count.
  bool strict = false;
};

// `localBias` is what turns the machine's local time into UTC, in minutes.
Reading read(std::wstring_view text, int localBias);

// The machine's present bias, as somebody else than the code under test knows it.
int presentBias();

}  // namespace oracle

#endif
