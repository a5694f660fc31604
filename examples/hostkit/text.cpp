#include "text.h"

#include <vlhostkit/types.h>
#include <vlplatform/utf8.h>

#include <stdexcept>

namespace utf8 = vlplatform::utf8;

namespace {

int checked(int size) {
  if (size <= 0) {
    throw std::runtime_error("a text can't be converted");
  }
  return size;
}

// "\x1b", and "\u202e" beyond two digits.
void appendEscaped(std::string& text, char32_t codePoint) {
  constexpr char kDigits[] = "0123456789abcdef";
  text += codePoint <= 0xFF ? "\\x" : "\\u";
  for (int shift = codePoint <= 0xFF ? 4 : 12; shift >= 0; shift -= 4) {
    text += kDigits[codePoint >> shift & 0xF];
  }
}

}  // namespace

std::wstring toWide(std::string_view text) {
  if (text.empty()) {
    return {};
  }
  const int bytes = static_cast<int>(text.size());
  std::wstring wide(checked(MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, nullptr, 0)), L'\0');
  checked(MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, wide.data(), static_cast<int>(wide.size())));
  return wide;
}

std::string toUtf8(std::wstring_view text) {
  if (text.empty()) {
    return {};
  }
  const int chars = static_cast<int>(text.size());
  std::string bytes(checked(WideCharToMultiByte(CP_UTF8, 0, text.data(), chars, nullptr, 0, nullptr, nullptr)), '\0');
  checked(WideCharToMultiByte(CP_UTF8, 0, text.data(), chars, bytes.data(), static_cast<int>(bytes.size()), nullptr,
                              nullptr));
  return bytes;
}

std::string shown(std::string_view text, std::size_t limit) {
  std::string line;
  for (const char *next = text.data(), *const end = next + text.size(); next != end;) {
    if (static_cast<std::size_t>(next - text.data()) >= limit) {
      return line + "...";
    }
    const utf8::Decoded decoded = utf8::decode(next, end);
    if (decoded.valid && utf8::misleads(decoded.codePoint)) {
      appendEscaped(line, decoded.codePoint);
    } else {
      line.append(next, static_cast<std::size_t>(decoded.length));
    }
    next += decoded.length;
  }
  return line;
}

std::string inQuotes(std::string_view text) {
  constexpr std::size_t kLongest = 100;
  return "'" + shown(text, kLongest) + "'";
}
