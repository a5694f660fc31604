/// UTF-8, one code point at a time. Header-only and free of state: no platform call, no allocation, no locale.
#ifndef VLPLATFORM_UTF8_H
#define VLPLATFORM_UTF8_H

namespace vlplatform::utf8 {

/// Stands for everything that is no text.
inline constexpr char32_t kReplacement = 0xFFFD;

/// The longest form of a code point in bytes.
inline constexpr int kMaxLength = 4;

/// Whether `codePoint` is a Unicode scalar value: no surrogate, nothing beyond U+10FFFF.
constexpr bool isScalar(char32_t codePoint) noexcept {
  return codePoint < 0xD800 || (codePoint > 0xDFFF && codePoint <= 0x10FFFF);
}

/// Whether a reader of a line of text would be misled: it ends the line, steers a terminal or reorders what is shown.
constexpr bool misleads(char32_t codePoint) noexcept {
  return codePoint < 0x20 || (codePoint >= 0x7F && codePoint <= 0x9F) || codePoint == 0x2028 || codePoint == 0x2029 ||
         (codePoint >= 0x202A && codePoint <= 0x202E) || (codePoint >= 0x2066 && codePoint <= 0x2069);
}

/// What decode found at the front of its bytes.
struct Decoded {
  char32_t codePoint;  ///< kReplacement where the bytes are no text
  int length;          ///< bytes used, 1 to kMaxLength
  bool valid;          ///< false where codePoint replaces ill-formed bytes
};

/// Decodes the first code point of [begin, end), which must not be empty. Of ill-formed bytes the longest part that
/// could begin a code point is replaced as one, at least one byte, as Unicode recommends: "E2 82 41" gives U+FFFD
/// and "A"; the surrogate "ED A0 80" gives three U+FFFD. No byte at or behind `end` is read.
constexpr Decoded decode(const char* begin, const char* end) noexcept {
  const auto lead = static_cast<unsigned char>(*begin);
  if (lead < 0x80) return {lead, 1, true};
  if (lead < 0xC2 || lead > 0xF4) return {kReplacement, 1, false};
  const int length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  // Only the second byte has narrower limits: they keep out overlong forms, surrogates and what lies beyond U+10FFFF.
  unsigned low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  unsigned high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  char32_t codePoint = lead & (0x7Fu >> length);
  for (int used = 1; used < length; ++used) {
    if (end - begin <= used) return {kReplacement, used, false};
    const auto next = static_cast<unsigned char>(begin[used]);
    if (next < low || next > high) return {kReplacement, used, false};
    codePoint = codePoint << 6 | (next & 0x3Fu);
    low = 0x80;
    high = 0xBF;
  }
  return {codePoint, length, true};
}

/// Writes `codePoint` to `bytes` and returns the number of bytes, 1 to kMaxLength. What is no scalar value is written
/// as U+FFFD. There is no terminator.
constexpr int encode(char32_t codePoint, char (&bytes)[kMaxLength]) noexcept {
  if (!isScalar(codePoint)) codePoint = kReplacement;
  if (codePoint < 0x80) {
    bytes[0] = static_cast<char>(codePoint);
    return 1;
  }
  const int length = codePoint < 0x800 ? 2 : codePoint < 0x10000 ? 3 : 4;
  for (int index = length - 1; index > 0; --index) {
    bytes[index] = static_cast<char>(0x80 | (codePoint & 0x3F));
    codePoint >>= 6;
  }
  bytes[0] = static_cast<char>((0xF00u >> length) | codePoint);
  return length;
}

}  // namespace vlplatform::utf8

#endif
