#include "format/numbers.h"

#include <vlhostkit/wipe.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <span>
#include <string_view>

namespace vlplatform {
namespace {

// Digits of a number that may be secret: gone when they have been used.
template <std::size_t Size>
class Digits : public std::array<char, Size> {
 public:
  Digits() {}  // NOLINT(modernize-use-equals-default): with a default one, Digits{} would fill it
  Digits(const Digits&) = delete;
  Digits& operator=(const Digits&) = delete;
  ~Digits() { VL::Framework::wipe(this->data(), used); }

  std::size_t used = Size;
};

void put(Output& output, std::string_view digits) {
  for (const char digit : digits) {
    output.put(static_cast<wchar_t>(digit));
  }
}

int baseOf(wchar_t type) {
  switch (type) {
    case L'x':
    case L'X':
      return 16;
    case L'o':
      return 8;
    default:
      return 10;
  }
}

}  // namespace

void putInteger(Output& output, Conversion conversion, std::wstring_view prefix, unsigned long long value) {
  Digits<22> digits;  // 64 bits in octal
  const int base = baseOf(conversion.type);
  // The digit 0 comes from the precision, which may ask for none.
  const char* const end = value != 0 ? std::to_chars(digits.begin(), digits.end(), value, base).ptr : digits.data();
  const std::string_view text(digits.data(), end);
  if (conversion.type == L'X') {
    for (char& digit : std::span(digits).first(text.size())) {
      digit = digit >= 'a' ? static_cast<char>(digit - 'a' + 'A') : digit;
    }
  }
  std::size_t wanted = 1;
  if (conversion.precision >= 0) {
    wanted = static_cast<std::size_t>(conversion.precision);
    conversion.zero = false;
  }
  std::size_t zeros = wanted > text.size() ? wanted - text.size() : 0;
  if (conversion.type == L'o' && conversion.alternate && zeros == 0) {
    zeros = 1;
  }
  putField(output, conversion, prefix, zeros, text.size(), [&] { put(output, text); });
}

void putFloating(Output& output, Conversion conversion, double value) {
  const auto type = static_cast<char>(conversion.type);
  const bool hexadecimal = type == 'a' || type == 'A';
  if (conversion.precision < 0) {
    conversion.precision = hexadecimal ? 13 : 6;
  }
  // No double has more digits than this behind its point: the rest is zeros.
  constexpr int kMostPrecision = 1080;
  const int precision = std::min(conversion.precision, kMostPrecision);
  char format[] = {'%', '#', '.', '*', type, '\0'};
  if (!conversion.alternate) {
    std::memmove(format + 1, format + 2, sizeof format - 2);
  }
  const bool negative = std::signbit(value);
  Digits<1536> digits;
  const int length = std::snprintf(digits.data(), digits.size(), format, precision, negative ? -value : value);
  std::string_view text(digits.data(), static_cast<std::size_t>(length));
  digits.used = text.size() + 1;

  wchar_t prefix[3];
  std::size_t prefixSize = 0;
  if (negative || conversion.plus || conversion.space) {
    prefix[prefixSize++] = negative ? L'-' : conversion.plus ? L'+' : L' ';
  }
  if (!std::isfinite(value)) {
    conversion.zero = false;
    return putField(output, conversion, {prefix, prefixSize}, 0, text.size(), [&] { put(output, text); });
  }
  if (hexadecimal) {
    prefix[prefixSize++] = static_cast<wchar_t>(text[0]);
    prefix[prefixSize++] = static_cast<wchar_t>(text[1]);
    text.remove_prefix(2);
  }
  const std::size_t exponent = std::min(text.find_first_of(hexadecimal ? "pP" : "eE"), text.size());
  const bool trimmed = (type == 'g' || type == 'G') && !conversion.alternate;
  const std::size_t zeros = trimmed ? 0 : static_cast<std::size_t>(conversion.precision - precision);
  putField(output, conversion, {prefix, prefixSize}, 0, text.size() + zeros, [&] {
    put(output, text.substr(0, exponent));
    output.fill(L'0', zeros);
    put(output, text.substr(exponent));
  });
}

}  // namespace vlplatform
