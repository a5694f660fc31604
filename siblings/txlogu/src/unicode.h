/// Code points out of the two kinds of text that come in: narrow UTF-8 and wide text of either character size.
#ifndef TXLOGU_UNICODE_H
#define TXLOGU_UNICODE_H

#include <vlplatform/utf8.h>

namespace txlogu {

constexpr bool isHighSurrogate(wchar_t unit) noexcept {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool isLowSurrogate(wchar_t unit) noexcept {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// Takes the first code point off [text, end), which must not be empty. What is no code point becomes U+FFFD.
constexpr char32_t takeCodePoint(const char*& text, const char* end) noexcept {
  const auto decoded = vlplatform::utf8::decode(text, end);
  text += decoded.length;
  return decoded.codePoint;
}

constexpr char32_t takeCodePoint(const wchar_t*& text, const wchar_t* end) noexcept {
  const wchar_t unit = *text++;
  if constexpr (sizeof(wchar_t) == 2) {
    if (isHighSurrogate(unit) && text != end && isLowSurrogate(*text)) {
      return 0x10000u + ((static_cast<char32_t>(unit) - 0xD800u) << 10) + (static_cast<char32_t>(*text++) - 0xDC00u);
    }
  }
  const auto codePoint = static_cast<char32_t>(unit);
  return vlplatform::utf8::isScalar(codePoint) ? codePoint : vlplatform::utf8::kReplacement;
}

}  // namespace txlogu

#endif
