#include "format/formatter.h"

#include <cstdint>
#include <cwchar>
#include <string_view>

#include <vlplatform/utf8.h>

#include "format/numbers.h"

namespace vlplatform {
namespace {

constexpr auto kAll = static_cast<std::size_t>(-1);

std::size_t most(const Conversion& conversion) {
  return conversion.precision < 0 ? kAll : static_cast<std::size_t>(conversion.precision);
}

bool isWide(const Conversion& conversion, OwnWidth own) {
  switch (conversion.length) {
    case Length::h:
    case Length::hh:
      return false;
    case Length::l:
    case Length::w:
      return true;
    default:
      return (conversion.type == L's' || conversion.type == L'c') == (own == OwnWidth::wide);
  }
}

template <class Use>
void eachCharacter(const char* text, std::size_t most, Use use) {
  while (most-- != 0 && *text != '\0') {
    // A terminator continues no character, so that nothing is read behind it.
    const utf8::Decoded decoded = utf8::decode(text, text + utf8::kMaxLength);
    use(static_cast<wchar_t>(decoded.codePoint));
    text += decoded.length;
  }
}

void putText(Output& output, const Conversion& conversion, const wchar_t* text) {
  if (text == nullptr) {
    text = L"(null)";
  }
  // With a precision the text needs no terminator.
  const std::size_t size = conversion.precision < 0 ? std::wcslen(text) : wcsnlen(text, most(conversion));
  putField(output, conversion, {}, 0, size, [&] { output.put({text, size}); });
}

void putText(Output& output, const Conversion& conversion, const char* text) {
  if (text == nullptr) {
    text = "(null)";
  }
  std::size_t size = 0;
  eachCharacter(text, most(conversion), [&](wchar_t) { ++size; });
  putField(output, conversion, {}, 0, size, [&] { eachCharacter(text, size, [&](wchar_t c) { output.put(c); }); });
}

void putCharacter(Output& output, const Conversion& conversion, int number, bool wide) {
  auto c = static_cast<wchar_t>(number);
  if (!wide) {
    // One byte is a character of its own, or none.
    c = static_cast<wchar_t>(static_cast<unsigned char>(c));
    c = c < 0x80 ? c : static_cast<wchar_t>(utf8::kReplacement);
  }
  putField(output, conversion, {}, 0, 1, [&] { output.put(c); });
}

// The next argument, by its length. False for one that integers don't have.
template <class Byte, class Short, class Int, class Long>
bool takeInteger(Arguments& arguments, Length length, Long& value) {
  switch (length) {
    case Length::hh:
      value = static_cast<Byte>(arguments.next<Int>());  // NOLINT(bugprone-signed-char-misuse,cert-str34-c)
      return true;
    case Length::h:
      value = static_cast<Short>(arguments.next<Int>());
      return true;
    case Length::none:
    case Length::l:
    case Length::bits32:
      value = arguments.next<Int>();
      return true;
    case Length::bits64:
      value = arguments.next<Long>();
      return true;
    default:
      return false;
  }
}

bool putSigned(Output& output, const Conversion& conversion, Arguments& arguments) {
  long long value = 0;
  if (!takeInteger<signed char, short, int>(arguments, conversion.length, value)) {
    return false;
  }
  const auto magnitude = static_cast<unsigned long long>(value);
  putInteger(output, conversion,
             value < 0          ? L"-"
             : conversion.plus  ? L"+"
             : conversion.space ? L" "
                                : L"",
             value < 0 ? 0 - magnitude : magnitude);
  return true;
}

void putMagnitude(Output& output, const Conversion& conversion, unsigned long long value) {
  const bool shown = conversion.alternate && value != 0;
  putInteger(output, conversion,
             shown && conversion.type == L'x'   ? L"0x"
             : shown && conversion.type == L'X' ? L"0X"
                                                : L"",
             value);
}

bool putUnsigned(Output& output, const Conversion& conversion, Arguments& arguments) {
  unsigned long long value = 0;
  if (!takeInteger<unsigned char, unsigned short, unsigned>(arguments, conversion.length, value)) {
    return false;
  }
  putMagnitude(output, conversion, value);
  return true;
}

void putPointer(Output& output, Conversion conversion, const void* pointer) {
  conversion.precision = 2 * sizeof(void*);
  conversion.type = L'X';
  putMagnitude(output, conversion, reinterpret_cast<std::uintptr_t>(pointer));
}

bool convert(Output& output, const Conversion& conversion, Arguments& arguments, OwnWidth own) {
  switch (conversion.type) {
    case L's':
    case L'S':
      isWide(conversion, own) ? putText(output, conversion, arguments.next<const wchar_t*>())
                              : putText(output, conversion, arguments.next<const char*>());
      return true;
    case L'c':
    case L'C':
      putCharacter(output, conversion, arguments.next<int>(), isWide(conversion, own));
      return true;
    case L'd':
    case L'i':
      return putSigned(output, conversion, arguments);
    case L'u':
    case L'x':
    case L'X':
    case L'o':
      return putUnsigned(output, conversion, arguments);
    case L'p':
      putPointer(output, conversion, arguments.next<void*>());
      return true;
    case L'e':
    case L'E':
    case L'f':
    case L'F':
    case L'g':
    case L'G':
    case L'a':
    case L'A':
      // The platform's long double is a double.
      putFloating(output, conversion,
                  conversion.length == Length::longDouble ? static_cast<double>(arguments.next<long double>())
                                                          : arguments.next<double>());
      return true;
    default:
      return false;
  }
}

}  // namespace

bool formatText(Output& output, const wchar_t* format, std::va_list arguments, OwnWidth own) {
  Arguments rest(arguments);
  for (const wchar_t* next = format;;) {
    const wchar_t* const literal = next;
    while (*next != L'\0' && *next != L'%') {
      ++next;
    }
    output.put({literal, next});
    if (*next == L'\0') {
      return true;
    }
    ++next;
    if (*next == L'%') {
      output.put(*next++);
      continue;
    }
    Conversion conversion;
    if (!parseConversion(next, rest, conversion) || !convert(output, conversion, rest, own)) {
      return false;
    }
  }
}

}  // namespace vlplatform
