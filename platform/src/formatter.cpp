#include <vlhostkit/wipe.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <string_view>

#include <vlplatform/utf8.h>

#include "gate.h"
#include "invalidparameter.h"

namespace vlplatform {
namespace {

// Where the text goes: counted always, stored while there is room.
class Output {
 public:
  Output(wchar_t* buffer, std::size_t capacity) : buffer_(buffer), capacity_(capacity) {}

  void put(const wchar_t* text, std::size_t count) {
    std::copy_n(text, std::min(count, room()), buffer_ + stored());
    size_ += count;
  }
  void put(wchar_t character) { fill(character, 1); }
  void fill(wchar_t character, std::size_t count) {
    std::fill_n(buffer_ + stored(), std::min(count, room()), character);
    size_ += count;
  }
  std::size_t size() const { return size_; }
  std::size_t stored() const { return std::min(size_, capacity_); }

 private:
  std::size_t room() const { return capacity_ - stored(); }

  wchar_t* buffer_;
  std::size_t capacity_;
  std::size_t size_ = 0;
};

// A buffer that is empty again when it goes.
template <class Char, std::size_t Size>
class Wiped : public std::array<Char, Size> {
 public:
  Wiped() {}  // NOLINT(modernize-use-equals-default): with a default one, Wiped{} would fill it
  Wiped(const Wiped&) = delete;
  Wiped& operator=(const Wiped&) = delete;
  ~Wiped() { VL::Framework::wipe(this->data(), used * sizeof(Char)); }

  std::size_t used = Size;
};

enum class Length { none, hh, h, l, w, bits32, bits64, longDouble };

struct Conversion {
  bool left = false;
  bool plus = false;
  bool space = false;
  bool zero = false;
  bool alternate = false;
  std::size_t width = 0;
  int precision = -1;  // none
  Length length = Length::none;
  wchar_t type = L'\0';
};

constexpr bool isDigit(wchar_t c) {
  return c >= L'0' && c <= L'9';
}

// The number at `next`, 0 if there is none. False beyond what an int holds.
bool parseNumber(const wchar_t*& next, int& number) {
  long long value = 0;
  for (; isDigit(*next); ++next) {
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

Length parseLength(const wchar_t*& next) {
  const auto doubled = [&](wchar_t c, Length one, Length two) {
    next += next[1] == c ? 2 : 1;
    return next[-2] == c && next[-1] == c ? two : one;
  };
  switch (*next) {
    case L'h':
      return doubled(L'h', Length::h, Length::hh);
    case L'l':
      return doubled(L'l', Length::l, Length::bits64);
    case L'w':
      ++next;
      return Length::w;
    case L'L':
      ++next;
      return Length::longDouble;
    case L'j':
    case L'z':
    case L't':
      ++next;
      return Length::bits64;
    case L'I':
      ++next;
      if (next[0] == L'3' && next[1] == L'2') {
        next += 2;
        return Length::bits32;
      }
      if (next[0] == L'6' && next[1] == L'4') {
        next += 2;
      }
      return Length::bits64;
    default:
      return Length::none;
  }
}

constexpr auto kAll = static_cast<std::size_t>(-1);

template <class Use>
void eachCharacter(const char* text, std::size_t most, Use use) {
  while (most-- != 0 && *text != '\0') {
    // A terminator continues no character, so that nothing is read behind it.
    const utf8::Decoded decoded = utf8::decode(text, text + utf8::kMaxLength);
    use(static_cast<wchar_t>(decoded.codePoint));
    text += decoded.length;
  }
}

class Formatter {
 public:
  Formatter(Output& output, std::va_list arguments) : output_(output) { va_copy(arguments_, arguments); }
  ~Formatter() { va_end(arguments_); }
  Formatter(const Formatter&) = delete;
  Formatter& operator=(const Formatter&) = delete;

  // False if it is no format.
  bool run(const wchar_t* next) {
    for (;;) {
      const wchar_t* const literal = next;
      while (*next != L'\0' && *next != L'%') {
        ++next;
      }
      output_.put(literal, static_cast<std::size_t>(next - literal));
      if (*next == L'\0') {
        return true;
      }
      ++next;
      if (*next == L'%') {
        output_.put(*next++);
        continue;
      }
      Conversion conversion;
      if (!parse(next, conversion) || !convert(conversion)) {
        return false;
      }
    }
  }

 private:
  bool parse(const wchar_t*& next, Conversion& conversion) {
    parseFlags(next, conversion);
    int width = 0;
    if (*next == L'*') {
      ++next;
      width = va_arg(arguments_, int);
      conversion.left = conversion.left || width < 0;
    } else if (!parseNumber(next, width)) {
      return false;
    }
    conversion.width = static_cast<std::size_t>(std::abs(static_cast<long long>(width)));
    if (*next == L'.') {
      ++next;
      if (*next == L'*') {
        ++next;
        conversion.precision = std::max(va_arg(arguments_, int), -1);
      } else if (!parseNumber(next, conversion.precision)) {
        return false;
      }
    }
    conversion.length = parseLength(next);
    conversion.type = *next;
    next += *next != L'\0' ? 1 : 0;
    return true;
  }

  bool convert(const Conversion& conversion) {
    switch (conversion.type) {
      case L's':
      case L'S':
        isWide(conversion) ? wideText(conversion) : narrowText(conversion);
        return true;
      case L'c':
      case L'C':
        character(conversion);
        return true;
      case L'd':
      case L'i':
        return signedInteger(conversion);
      case L'u':
      case L'x':
      case L'X':
      case L'o':
        return unsignedInteger(conversion);
      case L'p':
        pointer(conversion);
        return true;
      case L'e':
      case L'E':
      case L'f':
      case L'F':
      case L'g':
      case L'G':
      case L'a':
      case L'A':
        floating(conversion);
        return true;
      default:
        return false;
    }
  }

  // Padding around prefix (sign and base), zeros, and what `body` puts: `size` characters.
  template <class Body>
  void field(const Conversion& conversion, std::wstring_view prefix, std::size_t zeros, std::size_t size, Body body) {
    const std::size_t needed = prefix.size() + zeros + size;
    const std::size_t padding = conversion.width > needed ? conversion.width - needed : 0;
    if (!conversion.left && !conversion.zero) {
      output_.fill(L' ', padding);
    }
    output_.put(prefix.data(), prefix.size());
    output_.fill(L'0', zeros + (conversion.zero && !conversion.left ? padding : 0));
    body();
    if (conversion.left) {
      output_.fill(L' ', padding);
    }
  }

  static bool isWide(const Conversion& conversion) {
    switch (conversion.length) {
      case Length::h:
      case Length::hh:
        return false;
      case Length::l:
      case Length::w:
        return true;
      default:
        return conversion.type == L's' || conversion.type == L'c';
    }
  }

  static std::size_t most(const Conversion& conversion) {
    return conversion.precision < 0 ? kAll : static_cast<std::size_t>(conversion.precision);
  }

  void wideText(const Conversion& conversion) {
    const wchar_t* text = va_arg(arguments_, const wchar_t*);
    if (text == nullptr) {
      text = L"(null)";
    }
    const std::size_t size = conversion.precision < 0 ? std::wcslen(text) : wcsnlen(text, most(conversion));
    field(conversion, {}, 0, size, [&] { output_.put(text, size); });
  }

  void narrowText(const Conversion& conversion) {
    const char* text = va_arg(arguments_, const char*);
    if (text == nullptr) {
      text = "(null)";
    }
    std::size_t size = 0;
    eachCharacter(text, most(conversion), [&](wchar_t) { ++size; });
    field(conversion, {}, 0, size, [&] { eachCharacter(text, size, [&](wchar_t c) { output_.put(c); }); });
  }

  void character(const Conversion& conversion) {
    auto c = static_cast<wchar_t>(va_arg(arguments_, int));
    if (!isWide(conversion)) {
      // One byte is a character of its own, or none.
      c = static_cast<wchar_t>(static_cast<unsigned char>(c));
      c = c < 0x80 ? c : static_cast<wchar_t>(utf8::kReplacement);
    }
    field(conversion, {}, 0, 1, [&] { output_.put(c); });
  }

  bool signedInteger(const Conversion& conversion) {
    long long value = 0;
    switch (conversion.length) {
      case Length::hh:
        value = static_cast<signed char>(va_arg(arguments_, int));  // NOLINT(bugprone-signed-char-misuse,cert-str34-c)
        break;
      case Length::h:
        value = static_cast<short>(va_arg(arguments_, int));
        break;
      case Length::none:
      case Length::l:
      case Length::bits32:
        value = va_arg(arguments_, int);
        break;
      case Length::bits64:
        value = va_arg(arguments_, long long);
        break;
      default:
        return false;
    }
    const std::wstring_view sign = value < 0 ? L"-" : conversion.plus ? L"+" : conversion.space ? L" " : L"";
    const auto magnitude = static_cast<unsigned long long>(value);
    integer(conversion, sign, value < 0 ? 0 - magnitude : magnitude);
    return true;
  }

  bool unsignedInteger(const Conversion& conversion) {
    unsigned long long value = 0;
    switch (conversion.length) {
      case Length::hh:
        value = static_cast<unsigned char>(va_arg(arguments_, unsigned));
        break;
      case Length::h:
        value = static_cast<unsigned short>(va_arg(arguments_, unsigned));
        break;
      case Length::none:
      case Length::l:
      case Length::bits32:
        value = va_arg(arguments_, unsigned);
        break;
      case Length::bits64:
        value = va_arg(arguments_, unsigned long long);
        break;
      default:
        return false;
    }
    integer(conversion, basePrefix(conversion, value), value);
    return true;
  }

  void pointer(Conversion conversion) {
    conversion.precision = 2 * sizeof(void*);
    conversion.type = L'X';
    const auto value = reinterpret_cast<std::uintptr_t>(va_arg(arguments_, void*));
    integer(conversion, basePrefix(conversion, value), value);
  }

  static std::wstring_view basePrefix(const Conversion& conversion, unsigned long long value) {
    if (!conversion.alternate || value == 0) {
      return {};
    }
    return conversion.type == L'x' ? L"0x" : conversion.type == L'X' ? L"0X" : L"";
  }

  void integer(Conversion conversion, std::wstring_view prefix, unsigned long long value) {
    Wiped<wchar_t, 22> digits;  // 64 bits in octal
    const wchar_t* const end = digits.data() + digits.size();
    wchar_t* first = digits.data() + digits.size();
    const auto makeDigits = [&]<unsigned Base>(const wchar_t* names) {
      for (unsigned long long rest = value; rest != 0; rest /= Base) {
        *--first = names[rest % Base];
      }
    };
    switch (conversion.type) {
      case L'x':
        makeDigits.template operator()<16>(L"0123456789abcdef");
        break;
      case L'X':
        makeDigits.template operator()<16>(L"0123456789ABCDEF");
        break;
      case L'o':
        makeDigits.template operator()<8>(L"01234567");
        break;
      default:
        makeDigits.template operator()<10>(L"0123456789");
        break;
    }
    const auto size = static_cast<std::size_t>(end - first);
    std::size_t wanted = 1;
    if (conversion.precision >= 0) {
      wanted = static_cast<std::size_t>(conversion.precision);
      conversion.zero = false;
    }
    std::size_t zeros = wanted > size ? wanted - size : 0;
    if (conversion.type == L'o' && conversion.alternate && zeros == 0) {
      zeros = 1;
    }
    field(conversion, prefix, zeros, size, [&] { output_.put(first, size); });
  }

  void floating(Conversion conversion) {
    // The platform's long double is a double.
    const double value = conversion.length == Length::longDouble ? static_cast<double>(va_arg(arguments_, long double))
                                                                 : va_arg(arguments_, double);
    const auto type = static_cast<char>(conversion.type);
    const bool hexadecimal = type == 'a' || type == 'A';
    if (conversion.precision < 0) {
      conversion.precision = hexadecimal ? 13 : 6;
    }
    // No double has more digits than this behind its point: the rest is zeros.
    constexpr int kMostPrecision = 1080;
    const int precision = std::min(conversion.precision, kMostPrecision);
    const std::string_view start = conversion.alternate ? "%#.*" : "%.*";
    char format[8] = {};
    format[start.copy(format, start.size())] = type;
    const bool negative = std::signbit(value);
    Wiped<char, 1536> text;
    const int bytes = std::snprintf(text.data(), text.size(), format, precision, negative ? -value : value);
    text.used = static_cast<std::size_t>(bytes) + 1;

    wchar_t prefix[3];
    std::size_t prefixSize = 0;
    if (negative || conversion.plus || conversion.space) {
      prefix[prefixSize++] = negative ? L'-' : conversion.plus ? L'+' : L' ';
    }
    const char* digits = text.data();
    const bool finite = std::isfinite(value);
    conversion.zero = conversion.zero && finite;
    if (finite && hexadecimal) {
      prefix[prefixSize++] = static_cast<wchar_t>(*digits++);
      prefix[prefixSize++] = static_cast<wchar_t>(*digits++);
    }
    std::size_t size = 0;
    eachCharacter(digits, kAll, [&](wchar_t) { ++size; });
    const char* const exponent = finite ? std::strpbrk(digits, hexadecimal ? "pP" : "eE") : nullptr;
    const std::size_t beforeExponent = size - (exponent != nullptr ? std::strlen(exponent) : 0);
    const bool trimmed = (type == 'g' || type == 'G') && !conversion.alternate;
    const std::size_t zeros = finite && !trimmed ? static_cast<std::size_t>(conversion.precision - precision) : 0;
    field(conversion, {prefix, prefixSize}, 0, size + zeros, [&] {
      std::size_t index = 0;
      eachCharacter(digits, kAll, [&](wchar_t c) {
        if (index++ == beforeExponent) {
          output_.fill(L'0', zeros);
        }
        output_.put(c);
      });
      if (exponent == nullptr) {
        output_.fill(L'0', zeros);
      }
    });
  }

  Output& output_;
  std::va_list arguments_;
};

int refuseFormat(errno_t code) {
  refuse(code);
  return -1;
}

int store(DWORD planned, wchar_t* buffer, std::size_t size, const wchar_t* format, std::va_list arguments) {
  if (buffer == nullptr || size == 0) {
    return refuseFormat(EINVAL);
  }
  if (planned != ERROR_SUCCESS || format == nullptr) {
    *buffer = L'\0';
    return refuseFormat(EINVAL);
  }
  Output output(buffer, size);
  const bool valid = Formatter(output, arguments).run(format);
  if (valid && output.size() < size && output.size() <= INT_MAX) {
    buffer[output.size()] = L'\0';
    return static_cast<int>(output.size());
  }
  VL::Framework::wipe(buffer, output.stored() * sizeof(wchar_t));
  *buffer = L'\0';
  return refuseFormat(valid ? ERANGE : EINVAL);
}

}  // namespace
}  // namespace vlplatform

using namespace vlplatform;

int _vscwprintf(const wchar_t* format, std::va_list arguments) {
  if (gate("_vscwprintf") != ERROR_SUCCESS || format == nullptr) {
    return refuseFormat(EINVAL);
  }
  Output output(nullptr, 0);
  if (!Formatter(output, arguments).run(format)) {
    return refuseFormat(EINVAL);
  }
  return output.size() <= INT_MAX ? static_cast<int>(output.size()) : refuseFormat(ERANGE);
}

int vswprintf_s(wchar_t* buffer, std::size_t size, const wchar_t* format, std::va_list arguments) {
  return store(gate("vswprintf_s"), buffer, size, format, arguments);
}

int swprintf_s(wchar_t* buffer, std::size_t size, const wchar_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const int result = store(gate("swprintf_s"), buffer, size, format, arguments);
  va_end(arguments);
  return result;
}
