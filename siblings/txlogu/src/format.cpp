#include "format.h"

#include <vlhostkit/wipe.h>

#include <cstdint>

#include "system.h"
#include "unicode.h"

namespace txlogu {
namespace {

constexpr wchar_t kNull[] = L"(null)";

void appendDecimal(Text& text, int value) noexcept {
  wchar_t digits[3 * sizeof(int)];
  int count = 0;
  auto rest = static_cast<unsigned>(value);
  if (value < 0) {
    text.append(L'-');
    rest = 0u - rest;
  }
  do {
    digits[count++] = static_cast<wchar_t>(L'0' + rest % 10);
    rest /= 10;
  } while (rest != 0);
  while (count > 0) text.append(digits[--count]);
}

void appendHex(Text& text, std::uintptr_t value, int minimumDigits, const wchar_t* digitSet) noexcept {
  constexpr int kAllDigits = 2 * sizeof(value);
  bool started = false;
  for (int position = kAllDigits - 1; position >= 0; --position) {
    const auto digit = value >> (4 * position) & 0xF;
    started = started || digit != 0 || position < minimumDigits;
    if (started) text.append(digitSet[digit]);
  }
}

void appendNarrow(Text& text, const char* narrow) noexcept {
  if (narrow == nullptr) return text.append(kNull);
  while (*narrow != '\0' && !text.cut()) text.appendCodePoint(system::takeNarrow(narrow));
}

}  // namespace

void Text::clear() noexcept {
  VL::Framework::wipe(units_, length_ * sizeof(wchar_t));
  length_ = 0;
  cut_ = false;
}

void Text::append(wchar_t unit) noexcept {
  if (cut_) return;
  if (length_ < TXLOG_MAX_TEXT) {
    units_[length_++] = unit;
    return;
  }
  cut_ = true;
  if constexpr (sizeof(wchar_t) == 2) {
    if (isLowSurrogate(unit) && isHighSurrogate(units_[length_ - 1])) --length_;
  }
}

void Text::append(const wchar_t* text) noexcept {
  if (text == nullptr) text = kNull;
  while (*text != L'\0' && !cut_) append(*text++);
}

void Text::appendCodePoint(char32_t codePoint) noexcept {
  if (sizeof(wchar_t) == 2 && codePoint > 0xFFFF) {
    append(static_cast<wchar_t>(0xD800 + ((codePoint - 0x10000) >> 10)));
    append(static_cast<wchar_t>(0xDC00 + (codePoint & 0x3FF)));
  } else {
    append(static_cast<wchar_t>(codePoint));
  }
}

void Text::finish() noexcept {
  units_[length_] = L'\0';
}

void appendFormatted(Text& text, const wchar_t* format, std::va_list* arguments) noexcept {
  if (format == nullptr) return text.append(kNull);
  for (; *format != L'\0' && !text.cut(); ++format) {
    if (*format != L'%') {
      text.append(*format);
      continue;
    }
    const wchar_t* const percent = format++;
    if (*format == L'l' && format[1] == L's') ++format;
    switch (*format) {
      case L'%':
        text.append(L'%');
        break;
      case L'd':
        appendDecimal(text, va_arg(*arguments, int));
        break;
      case L'x':
        appendHex(text, va_arg(*arguments, unsigned), 1, L"0123456789abcdef");
        break;
      case L'p':
        appendHex(text, reinterpret_cast<std::uintptr_t>(va_arg(*arguments, const void*)), 2 * sizeof(void*),
                  L"0123456789ABCDEF");
        break;
      case L's':
        text.append(va_arg(*arguments, const wchar_t*));
        break;
      case L'S':
        appendNarrow(text, va_arg(*arguments, const char*));
        break;
      default:
        return text.append(percent);
    }
  }
}

}  // namespace txlogu
