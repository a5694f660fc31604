/// Text of either width inside the stand-in, which keeps all text wide, and case.
#ifndef VLPLATFORM_SRC_UNICODE_H
#define VLPLATFORM_SRC_UNICODE_H

#include <string>
#include <string_view>
#include <type_traits>

#include <vlplatform/basetypes.h>
#include <vlplatform/utf8.h>

namespace vlplatform {

inline std::string toUtf8(std::wstring_view text) {
  std::string out;
  char bytes[utf8::kMaxLength];
  for (const wchar_t c : text) {
    out.append(bytes, static_cast<std::size_t>(utf8::encode(static_cast<char32_t>(c), bytes)));
  }
  return out;
}

inline std::wstring toWide(std::string_view text) {
  std::wstring out;
  for (const char *next = text.data(), *const end = next + text.size(); next != end;) {
    const utf8::Decoded decoded = utf8::decode(next, end);
    out += static_cast<wchar_t>(decoded.codePoint);
    next += decoded.length;
  }
  return out;
}
inline std::wstring toWide(std::wstring_view text) {
  return std::wstring(text);
}

/// `text` in the width of a function's form.
template <class Char>
std::basic_string<Char> inWidth(std::wstring_view text) {
  if constexpr (std::is_same_v<Char, char>) {
    return toUtf8(text);
  } else {
    return std::wstring(text);
  }
}

/// A caller's text, where null is an empty one.
template <class Char>
std::wstring wideOrEmpty(const Char* text) {
  return text != nullptr ? toWide(std::basic_string_view<Char>(text)) : std::wstring();
}

/// Copies a text and its terminator.
template <class Char>
void copyTerminated(std::basic_string_view<Char> text, Char* target) {
  target[text.copy(target, text.size())] = Char{};
}

/// The other case of a character beyond ASCII, itself if it has none there.
wchar_t otherUpperCase(wchar_t c);
wchar_t otherLowerCase(wchar_t c);

inline wchar_t upperCase(wchar_t c) {
  return c >= 0x80 ? otherUpperCase(c) : c >= L'a' && c <= L'z' ? c - L'a' + L'A' : c;
}
inline wchar_t lowerCase(wchar_t c) {
  return c >= 0x80 ? otherLowerCase(c) : c >= L'A' && c <= L'Z' ? c - L'A' + L'a' : c;
}
std::wstring upperCase(std::wstring_view text);
std::wstring lowerCase(std::wstring_view text);

/// The order of names: by upper-case forms.
int compareNames(std::wstring_view a, std::wstring_view b);
inline bool sameName(std::wstring_view a, std::wstring_view b) {
  return a.size() == b.size() && compareNames(a, b) == 0;
}

}  // namespace vlplatform

#endif
