// wsprintfW and wsprintfA: one formatter in two widths, smaller than the runtime's.
#include <algorithm>
#include <charconv>
#include <cstdarg>
#include <iterator>
#include <limits>
#include <string>
#include <type_traits>

#include <vlplatform/system.h>

#include "gate.h"
#include "unicode.h"

namespace vlplatform {
namespace {

constexpr std::size_t kMostChars = 1024;

template <class Char>
class SmallFormatter {
 public:
  using String = std::basic_string<Char>;

  SmallFormatter(const Char* format, std::va_list arguments) : next_(format) { va_copy(arguments_, arguments); }
  ~SmallFormatter() { va_end(arguments_); }
  SmallFormatter(const SmallFormatter&) = delete;
  SmallFormatter& operator=(const SmallFormatter&) = delete;

  int run(Char* buffer) {
    while (*next_ != Char{}) {
      const Char c = *next_++;
      if (c == Char{'%'}) {
        convert();
      } else {
        out_ += c;
      }
    }
    out_.resize(std::min(out_.size(), kMostChars));
    copyTerminated<Char>(out_, buffer);
    return static_cast<int>(out_.size());
  }

 private:
  enum class Length { none, h, l, bits64 };
  struct Conversion {
    bool left = false;
    bool alternate = false;
    bool zero = false;
    std::size_t width = 0;
    std::size_t precision = String::npos;  // none
    Length length = Length::none;
  };

  bool take(char c) {
    const bool taken = *next_ == static_cast<Char>(c);
    next_ += taken ? 1 : 0;
    return taken;
  }
  std::size_t takeNumber() {
    std::size_t number = 0;
    for (; *next_ >= Char{'0'} && *next_ <= Char{'9'}; ++next_) {
      number = std::min(number * 10 + static_cast<std::size_t>(*next_ - Char{'0'}), kMostChars);
    }
    return number;
  }

  void convert() {
    Conversion conversion;
    conversion.left = take('-');
    conversion.alternate = take('#');
    conversion.zero = take('0');
    conversion.width = takeNumber();
    if (take('.')) {
      conversion.precision = takeNumber();
    }
    if (take('h')) {
      conversion.length = Length::h;
    } else if (take('l') || take('w')) {
      conversion.length = Length::l;
    } else if (next_[0] == Char{'I'} && next_[1] == Char{'6'} && next_[2] == Char{'4'}) {
      next_ += 3;
      conversion.length = Length::bits64;
    }
    if (*next_ != Char{}) {
      put(conversion, *next_++);
    }
  }

  void put(const Conversion& conversion, Char type) {
    switch (type) {
      case Char{'c'}:
      case Char{'C'}:
        return field(conversion, character(isWide(conversion, type == Char{'c'})));
      case Char{'s'}:
      case Char{'S'}:
        return field(conversion, text(isWide(conversion, type == Char{'s'})).substr(0, conversion.precision));
      case Char{'d'}:
      case Char{'i'}: {
        const long long value = signedArgument(conversion.length);
        const auto magnitude = static_cast<unsigned long long>(value);
        return number(conversion, value < 0 ? "-" : "", value < 0 ? 0 - magnitude : magnitude, 10, false);
      }
      case Char{'u'}:
        return number(conversion, "", unsignedArgument(conversion.length), 10, false);
      case Char{'x'}:
        return number(conversion, conversion.alternate ? "0x" : "", unsignedArgument(conversion.length), 16, false);
      case Char{'X'}:
        return number(conversion, conversion.alternate ? "0X" : "", unsignedArgument(conversion.length), 16, true);
      case Char{'p'}: {
        Conversion pointer = conversion;
        pointer.precision = 2 * sizeof(void*);
        return number(pointer, "", unsignedArgument(Length::bits64), 16, true);
      }
      default:
        out_ += type;
    }
  }

  static bool isWide(const Conversion& conversion, bool ownWidth) {
    return conversion.length == Length::l ||
           (conversion.length != Length::h && ownWidth == std::is_same_v<Char, wchar_t>);
  }
  String character(bool wide) {
    const int value = va_arg(arguments_, int);
    const auto narrow = static_cast<char>(value);
    return wide ? inWidth<Char>(std::wstring(1, static_cast<wchar_t>(value))) : ofNarrow({&narrow, 1});
  }
  String text(bool wide) {
    if (wide) {
      const auto* const value = va_arg(arguments_, const wchar_t*);
      return inWidth<Char>(value != nullptr ? value : L"(null)");
    }
    const auto* const value = va_arg(arguments_, const char*);
    return ofNarrow(value != nullptr ? value : "(null)");
  }
  static String ofNarrow(std::string_view text) {
    if constexpr (std::is_same_v<Char, char>) {
      return std::string(text);
    } else {
      return toWide(text);
    }
  }

  long long signedArgument(Length length) {
    if (length == Length::bits64) {
      return va_arg(arguments_, long long);
    }
    const int value = va_arg(arguments_, int);
    return length == Length::h ? static_cast<short>(value) : value;
  }
  unsigned long long unsignedArgument(Length length) {
    if (length == Length::bits64) {
      return va_arg(arguments_, unsigned long long);
    }
    const unsigned value = va_arg(arguments_, unsigned);
    return length == Length::h ? static_cast<unsigned short>(value) : value;
  }

  void number(const Conversion& conversion, std::string_view prefix, unsigned long long value, int base, bool upper) {
    char text[std::numeric_limits<unsigned long long>::digits10 + 2];
    const char* const end = std::to_chars(std::begin(text), std::end(text), value, base).ptr;
    String digits(std::cbegin(text), end);
    if (upper) {
      for (Char& digit : digits) {
        digit = digit >= 'a' ? static_cast<Char>(digit - 'a' + 'A') : digit;
      }
    }
    std::size_t wanted = conversion.precision != String::npos ? conversion.precision : 1;
    if (conversion.precision == String::npos && conversion.zero && !conversion.left &&
        conversion.width > prefix.size()) {
      wanted = conversion.width - prefix.size();
    }
    if (digits.size() < wanted) {
      digits.insert(0, wanted - digits.size(), Char{'0'});
    }
    field(conversion, String(prefix.begin(), prefix.end()) + digits);
  }

  void field(const Conversion& conversion, const String& text) {
    const std::size_t padding = conversion.width > text.size() ? conversion.width - text.size() : 0;
    out_.append(conversion.left ? 0 : padding, Char{' '});
    out_ += text;
    out_.append(conversion.left ? padding : 0, Char{' '});
  }

  const Char* next_;
  std::va_list arguments_;
  String out_;
};

}  // namespace
}  // namespace vlplatform

int wsprintfW(LPWSTR buffer, LPCWSTR format, ...) {
  vlplatform::gate("wsprintfW");
  const vlplatform::OwnAllocations own;
  std::va_list arguments;
  va_start(arguments, format);
  const int size = vlplatform::SmallFormatter<wchar_t>(format, arguments).run(buffer);
  va_end(arguments);
  return size;
}

int wsprintfA(LPSTR buffer, LPCSTR format, ...) {
  vlplatform::gate("wsprintfA");
  const vlplatform::OwnAllocations own;
  std::va_list arguments;
  va_start(arguments, format);
  const int size = vlplatform::SmallFormatter<char>(format, arguments).run(buffer);
  va_end(arguments);
  return size;
}
