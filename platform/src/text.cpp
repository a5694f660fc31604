#include <vlplatform/text.h>

#include <cerrno>
#include <cstring>
#include <cwchar>

#include <vlplatform/utf8.h>

#include "gate.h"
#include "unicode.h"

namespace vlplatform {
namespace {

// Where a conversion puts its output: counted always, stored while there is room, and only if the caller gave a
// buffer. The text goes from buffer to buffer, without a copy elsewhere: it may be secret.
template <class Char>
class Output {
 public:
  Output(Char* buffer, int capacity) : buffer_(buffer), capacity_(static_cast<std::size_t>(capacity)) {}

  void put(const Char* units, std::size_t count) {
    if (capacity_ != 0) {
      for (std::size_t i = 0; i < count && size_ + i < capacity_; ++i) {
        buffer_[size_ + i] = units[i];
      }
    }
    size_ += count;
  }
  int finish() const {
    if (capacity_ != 0 && size_ > capacity_) {
      SetLastError(ERROR_INSUFFICIENT_BUFFER);
      return 0;
    }
    return static_cast<int>(size_);
  }

 private:
  Char* buffer_;
  std::size_t capacity_;
  std::size_t size_ = 0;
};

bool validArguments(UINT codePage, const void* text, int units, const void* buffer, int capacity) {
  const bool valid = (codePage == CP_ACP || codePage == CP_UTF8) && text != nullptr && units != 0 && units >= -1 &&
                     capacity >= 0 && (buffer != nullptr || capacity == 0);
  if (!valid) {
    SetLastError(ERROR_INVALID_PARAMETER);
  }
  return valid;
}

// Numbers up to the last character are characters: no memory lies there.
template <class Change>
LPWSTR changed(LPWSTR character, Change change) {
  constexpr std::uintptr_t kLastCharacter = 0x10FFFF;
  const auto number = reinterpret_cast<std::uintptr_t>(character);
  const auto unit = static_cast<wchar_t>(number);
  return number <= kLastCharacter ? reinterpret_cast<LPWSTR>(static_cast<std::uintptr_t>(change(unit))) : character;
}

int noTranslation() {
  SetLastError(ERROR_NO_UNICODE_TRANSLATION);
  return 0;
}

}  // namespace
}  // namespace vlplatform

using namespace vlplatform;

UINT GetACP() {
  gate("GetACP");
  return CP_UTF8;
}

int MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR text, int bytes, LPWSTR buffer, int chars) {
  if (gateFails("MultiByteToWideChar") || !validArguments(codePage, text, bytes, buffer, chars)) {
    return 0;
  }
  Output<wchar_t> output(buffer, chars);
  const char* const end = text + (bytes == -1 ? std::strlen(text) + 1 : static_cast<std::size_t>(bytes));
  while (text != end) {
    const utf8::Decoded decoded = utf8::decode(text, end);
    text += decoded.length;
    if (!decoded.valid && (flags & MB_ERR_INVALID_CHARS) != 0) {
      return noTranslation();
    }
    const auto unit = static_cast<wchar_t>(decoded.codePoint);
    output.put(&unit, 1);
  }
  return output.finish();
}

int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR text, int chars, LPSTR buffer, int bytes,
                        LPCSTR /*defaultChar*/, BOOL* usedDefaultChar) {
  if (gateFails("WideCharToMultiByte") || !validArguments(codePage, text, chars, buffer, bytes)) {
    return 0;
  }
  if (usedDefaultChar != nullptr) {
    *usedDefaultChar = FALSE;  // UTF-8 has every character
  }
  Output<char> output(buffer, bytes);
  const wchar_t* const end = text + (chars == -1 ? std::wcslen(text) + 1 : static_cast<std::size_t>(chars));
  while (text != end) {
    const auto codePoint = static_cast<char32_t>(*text++);
    if (!utf8::isScalar(codePoint) && (flags & WC_ERR_INVALID_CHARS) != 0) {
      return noTranslation();
    }
    char units[utf8::kMaxLength];
    output.put(units, static_cast<std::size_t>(utf8::encode(codePoint, units)));
  }
  return output.finish();
}

LPWSTR CharUpperW(LPWSTR character) {
  gate("CharUpperW");
  return changed(character, [](wchar_t c) { return upperCase(c); });
}

LPWSTR CharLowerW(LPWSTR character) {
  gate("CharLowerW");
  return changed(character, [](wchar_t c) { return lowerCase(c); });
}
