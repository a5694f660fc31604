/// What a format text says of one argument.
#ifndef VLPLATFORM_SRC_FORMAT_CONVERSION_H
#define VLPLATFORM_SRC_FORMAT_CONVERSION_H

#include <cstdarg>
#include <cstddef>
#include <string_view>

#include "format/output.h"

namespace vlplatform {

/// The arguments of a call, one after the other.
class Arguments {
 public:
  explicit Arguments(std::va_list arguments) { va_copy(arguments_, arguments); }
  ~Arguments() { va_end(arguments_); }
  Arguments(const Arguments&) = delete;
  Arguments& operator=(const Arguments&) = delete;

  template <class T>
  T next() {
    return va_arg(arguments_, T);
  }

 private:
  std::va_list arguments_;
};

enum class Length { none, hh, h, l, w, bits32, bits64, longDouble };

/// Flags, width, precision, length and type: "-08.3lx".
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

/// Reads what stands behind a '%', stars with their arguments. False for a number beyond what an int holds.
bool parseConversion(const wchar_t*& next, Arguments& arguments, Conversion& conversion);

/// Padding around `prefix` (sign and base), zeros, and the `size` characters that `body` puts.
template <class Body>
void putField(Output& output, const Conversion& conversion, std::wstring_view prefix, std::size_t zeros,
              std::size_t size, Body body) {
  const std::size_t needed = prefix.size() + zeros + size;
  const std::size_t padding = conversion.width > needed ? conversion.width - needed : 0;
  if (!conversion.left && !conversion.zero) {
    output.fill(L' ', padding);
  }
  output.put(prefix);
  output.fill(L'0', zeros + (conversion.zero && !conversion.left ? padding : 0));
  body();
  if (conversion.left) {
    output.fill(L' ', padding);
  }
}

}  // namespace vlplatform

#endif
