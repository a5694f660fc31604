#include "format/conversion.h"

#include <algorithm>
#include <climits>
#include <cstdlib>

namespace vlplatform {
namespace {

// The number at `next`, 0 if there is none. False beyond what an int holds.
bool parseNumber(const wchar_t*& next, int& number) {
  long long value = 0;
  for (; *next >= L'0' && *next <= L'9'; ++next) {
    value = value * 10 + (*next - L'0');
    if (value > INT_MAX) {
      return false;
    }
  }
  number = static_cast<int>(value);
  return true;
}

void parseFlags(const wchar_t*& next, Conversion& conversion) {
  for (;; ++next) {
    switch (*next) {
      case L'-':
        conversion.left = true;
        break;
      case L'+':
        conversion.plus = true;
        break;
      case L' ':
        conversion.space = true;
        break;
      case L'0':
        conversion.zero = true;
        break;
      case L'#':
        conversion.alternate = true;
        break;
      default:
        return;
    }
  }
}

struct LengthName {
  const wchar_t* name;
  Length length;
};

// A name stands behind those that begin with it.
constexpr LengthName kLengths[] = {
    {L"hh", Length::hh},    {L"h", Length::h},        {L"ll", Length::bits64},  {L"l", Length::l},
    {L"w", Length::w},      {L"I32", Length::bits32}, {L"I64", Length::bits64}, {L"I", Length::bits64},
    {L"j", Length::bits64}, {L"z", Length::bits64},   {L"t", Length::bits64},   {L"L", Length::longDouble},
};

Length parseLength(const wchar_t*& next) {
  for (const LengthName& known : kLengths) {
    const wchar_t* end = next;
    const wchar_t* name = known.name;
    for (; *name != L'\0' && *end == *name; ++name) {
      ++end;
    }
    if (*name == L'\0') {
      next = end;
      return known.length;
    }
  }
  return Length::none;
}

}  // namespace

bool parseConversion(const wchar_t*& next, Arguments& arguments, Conversion& conversion) {
  parseFlags(next, conversion);
  int width = 0;
  if (*next == L'*') {
    ++next;
    width = arguments.next<int>();
    conversion.left = conversion.left || width < 0;
  } else if (!parseNumber(next, width)) {
    return false;
  }
  conversion.width = static_cast<std::size_t>(std::abs(static_cast<long long>(width)));
  if (*next == L'.') {
    ++next;
    if (*next == L'*') {
      ++next;
      conversion.precision = std::max(arguments.next<int>(), -1);
    } else if (!parseNumber(next, conversion.precision)) {
      return false;
    }
  }
  conversion.length = parseLength(next);
  conversion.type = *next;
  next += *next != L'\0' ? 1 : 0;
  return true;
}

}  // namespace vlplatform
