/// Case and white space, character by character.
#ifndef VLAFX_SRC_CHARCLASS_H
#define VLAFX_SRC_CHARCLASS_H

#include <type_traits>

namespace vlafx {

/// By the platform's table, for characters beyond ASCII.
wchar_t platformUpper(wchar_t character) noexcept;
wchar_t platformLower(wchar_t character) noexcept;

constexpr char toUpper(char c) noexcept {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
constexpr char toLower(char c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
constexpr bool isAscii(wchar_t c) noexcept {
  return static_cast<std::make_unsigned_t<wchar_t>>(c) < 0x80;
}
inline wchar_t toUpper(wchar_t c) noexcept {
  return isAscii(c) ? static_cast<wchar_t>(toUpper(static_cast<char>(c))) : platformUpper(c);
}
inline wchar_t toLower(wchar_t c) noexcept {
  return isAscii(c) ? static_cast<wchar_t>(toLower(static_cast<char>(c))) : platformLower(c);
}

constexpr bool isBlank(char c) noexcept {
  return c == ' ' || (c >= '\t' && c <= '\r');
}
constexpr bool isBlank(wchar_t c) noexcept {
  if (isAscii(c)) {
    return isBlank(static_cast<char>(c));
  }
  return c == 0x85 || c == 0xa0 || c == 0x1680 || (c >= 0x2000 && c <= 0x200a) || c == 0x2028 || c == 0x2029 ||
         c == 0x202f || c == 0x205f || c == 0x3000;
}

}  // namespace vlafx

#endif
