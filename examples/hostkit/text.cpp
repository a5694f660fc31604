#include "text.h"

#include <vlhostkit/types.h>

#include <stdexcept>

namespace {

int checked(int size) {
  if (size <= 0) {
    throw std::runtime_error("a text can't be converted");
  }
  return size;
}

bool isContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

void appendEscaped(std::string& text, unsigned char control) {
  constexpr char kDigits[] = "0123456789abcdef";
  text += "\\x";
  text += kDigits[control >> 4];
  text += kDigits[control & 0xF];
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
  for (std::size_t index = 0; index < text.size(); ++index) {
    if (index >= limit && !isContinuation(text[index])) {
      return line + "...";
    }
    const auto unit = static_cast<unsigned char>(text[index]);
    const auto next = static_cast<unsigned char>(index + 1 < text.size() ? text[index + 1] : '\0');
    if (unit < 0x20 || unit == 0x7F) {
      appendEscaped(line, unit);
    } else if (unit == 0xC2 && next < 0xA0) {
      // The control characters U+0080 to U+009F.
      appendEscaped(line, next);
      ++index;
    } else {
      line += text[index];
    }
  }
  return line;
}

std::string inQuotes(std::string_view text) {
  constexpr std::size_t kLongest = 100;
  return "'" + shown(text, kLongest) + "'";
}
