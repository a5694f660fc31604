/// Text of the narrow functions.
#ifndef VLPLATFORM_SRC_REGISTRY_NARROWTEXT_H
#define VLPLATFORM_SRC_REGISTRY_NARROWTEXT_H

#include <array>
#include <cstring>
#include <string>

#include <vlplatform/basetypes.h>
#include <vlplatform/utf8.h>

namespace vlplatform::registry {

/// UTF-8 as wide characters, one `put` each; what is no text as U+FFFD.
template <class Put>
void widen(const char* text, std::size_t size, Put put) {
  for (const char* const end = text + size; text != end;) {
    const utf8::Decoded decoded = utf8::decode(text, end);
    put(static_cast<wchar_t>(decoded.codePoint));
    text += decoded.length;
  }
}

/// A name or path as wide text, on the stack if it is of usual length. Null stays null.
class WideName {
 public:
  explicit WideName(const char* text) : null_(text == nullptr) {
    if (text != nullptr) {
      const std::size_t size = std::strlen(text);
      wchar_t* out = short_.data();
      if (size >= short_.size()) {
        long_.resize(size);
        out = long_.data();
      }
      widen(text, size, [&](wchar_t c) { *out++ = c; });
      *out = L'\0';
    }
  }
  WideName(const WideName&) = delete;
  WideName& operator=(const WideName&) = delete;

  const wchar_t* get() const { return null_ ? nullptr : (long_.empty() ? short_.data() : long_.c_str()); }

 private:
  bool null_;
  std::array<wchar_t, 256> short_;
  std::wstring long_;
};

/// The bytes of wide text as UTF-8, one `put` for each character's bytes and count; incomplete characters at the end
/// are left out.
template <class Put>
void narrow(const BYTE* wideText, std::size_t size, Put put) {
  for (std::size_t i = 0; i + sizeof(wchar_t) <= size; i += sizeof(wchar_t)) {
    char32_t c;
    std::memcpy(&c, wideText + i, sizeof c);
    char bytes[utf8::kMaxLength];
    put(bytes, static_cast<std::size_t>(utf8::encode(c, bytes)));
  }
}

}  // namespace vlplatform::registry

#endif
