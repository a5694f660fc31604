#include <algorithm>
#include <cstring>

#include <vlplatform/utf8.h>

#include "regfile.h"

namespace vlplatform::registry {
namespace {

constexpr std::size_t kWideChar = sizeof(wchar_t);

bool isHighSurrogate(char32_t c) {
  return c >= 0xD800 && c <= 0xDBFF;
}
bool isLowSurrogate(char32_t c) {
  return c >= 0xDC00 && c <= 0xDFFF;
}

char32_t characterAt(const std::vector<BYTE>& wideText, std::size_t index) {
  char32_t c;
  static_assert(sizeof c == kWideChar);
  std::memcpy(&c, wideText.data() + index * kWideChar, kWideChar);
  return c;
}

// Bytes of UTF-16LE.
template <class Bytes>
void put(Bytes& bytes, char32_t c) {
  const auto unit = [&](char32_t value) {
    bytes.push_back(static_cast<typename Bytes::value_type>(value & 0xFF));
    bytes.push_back(static_cast<typename Bytes::value_type>(value >> 8));
  };
  if (c < 0x10000) {
    unit(c);
  } else {
    unit(0xD800 + ((c - 0x10000) >> 10));
    unit(0xDC00 + ((c - 0x10000) & 0x3FF));
  }
}

class Writer {
 public:
  Writer() {
    text(L"\xFEFFWindows Registry Editor Version 5.00");
    endLine();
  }
  std::string take() { return std::move(out_); }

  // `path` is the key's own, and comes back as it was.
  void key(const Key& key, std::wstring& path) {
    if (key.isVolatile) {
      return;
    }
    if (key.depth != 0 || !key.values.empty()) {
      endLine();
      text(L"[");
      text(path);
      text(L"]");
      endLine();
      for (const Value& known : key.values) {
        value(known);
      }
    }
    for (const std::shared_ptr<Key>& child : key.children) {
      const std::size_t length = path.size();
      path.append(L"\\").append(child->name);
      this->key(*child, path);
      path.resize(length);
    }
  }

 private:
  // The platform's export breaks lines of numbers so that they stay within 80 columns.
  static constexpr std::size_t kLastColumn = 76;

  void text(std::wstring_view part) {
    for (const wchar_t c : part) {
      put(out_, static_cast<char32_t>(c));
    }
    column_ += part.size();
  }
  void endLine() {
    text(L"\r\n");
    column_ = 0;
  }
  void quoted(std::wstring_view part) {
    text(L"\"");
    for (const wchar_t c : part) {
      if (c == L'\\' || c == L'"') {
        text(L"\\");
      }
      text({&c, 1});
    }
    text(L"\"");
  }
  void number(DWORD value, int digits) {
    while (digits-- > 0) {
      text({&L"0123456789abcdef"[value >> (4 * digits) & 0xF], 1});
    }
  }

  // Text that fits between quotes: one terminator, at its end, and no line end.
  static std::optional<std::wstring> quotable(const Value& value) {
    if (value.type != REG_SZ || value.data.size() < kWideChar || value.data.size() % kWideChar != 0) {
      return std::nullopt;
    }
    const std::size_t length = value.data.size() / kWideChar - 1;
    std::wstring chars;
    for (std::size_t i = 0; i < length; ++i) {
      const char32_t c = characterAt(value.data, i);
      if (c == 0 || c == U'\r' || c == U'\n' || !utf8::isScalar(c)) {
        return std::nullopt;
      }
      chars.push_back(static_cast<wchar_t>(c));
    }
    return characterAt(value.data, length) == 0 ? std::optional(std::move(chars)) : std::nullopt;
  }

  void value(const Value& value) {
    std::optional<std::vector<BYTE>> utf16;
    const std::optional<std::wstring> chars = quotable(value);
    if (isTextType(value.type) && !chars) {
      utf16 = toUtf16(value.data);
      if (!utf16) {
        text(kWideTextComment);
        endLine();
      }
    }
    if (value.name.empty()) {
      text(L"@");
    } else {
      quoted(value.name);
    }
    text(L"=");
    if (chars) {
      quoted(*chars);
    } else if (value.type == REG_DWORD && value.data.size() == sizeof(DWORD)) {
      text(L"dword:");
      DWORD dword;
      std::memcpy(&dword, value.data.data(), sizeof dword);
      number(dword, 8);
    } else {
      hex(value.type, utf16 ? *utf16 : value.data);
    }
    endLine();
  }

  void hex(DWORD type, const std::vector<BYTE>& data) {
    text(L"hex");
    if (type != REG_BINARY) {
      int digits = 1;
      while (digits < 8 && type >> (4 * digits) != 0) {
        ++digits;
      }
      text(L"(");
      number(type, digits);
      text(L")");
    }
    text(L":");
    for (std::size_t i = 0; i < data.size(); ++i) {
      number(data[i], 2);
      if (i + 1 < data.size()) {
        text(L",");
        if (column_ >= kLastColumn) {
          text(L"\\");
          endLine();
          text(L"  ");
        }
      }
    }
  }

  std::string out_;
  std::size_t column_ = 0;
};

}  // namespace

std::optional<std::vector<BYTE>> toUtf16(const std::vector<BYTE>& wideText) {
  if (wideText.size() % kWideChar > 1) {
    return std::nullopt;
  }
  std::vector<BYTE> bytes;
  bytes.reserve(wideText.size() / 2 + 1);
  char32_t before = 0;
  for (std::size_t i = 0; i < wideText.size() / kWideChar; ++i) {
    const char32_t c = characterAt(wideText, i);
    if (c > 0x10FFFF || (isHighSurrogate(before) && isLowSurrogate(c))) {
      return std::nullopt;
    }
    put(bytes, c);
    before = c;
  }
  if (wideText.size() % kWideChar != 0) {
    bytes.push_back(wideText.back());
  }
  return bytes;
}

std::vector<BYTE> fromUtf16(const std::vector<BYTE>& bytes) {
  const auto unitAt = [&](std::size_t index) {
    return static_cast<char32_t>(bytes[2 * index] | bytes[2 * index + 1] << 8);
  };
  const std::size_t units = bytes.size() / 2;
  std::vector<BYTE> wideText;
  wideText.reserve(bytes.size() * 2);
  for (std::size_t i = 0; i < units; ++i) {
    char32_t c = unitAt(i);
    if (isHighSurrogate(c) && i + 1 < units && isLowSurrogate(unitAt(i + 1))) {
      c = 0x10000 + ((c - 0xD800) << 10) + (unitAt(++i) - 0xDC00);
    }
    const auto* const raw = reinterpret_cast<const BYTE*>(&c);
    wideText.insert(wideText.end(), raw, raw + kWideChar);
  }
  if (bytes.size() % 2 != 0) {
    wideText.push_back(bytes.back());
  }
  return wideText;
}

std::string writeRegistryText(const Roots& roots) {
  Writer writer;
  for (std::size_t i = 0; i < roots.size(); ++i) {
    std::wstring path(kRoots[i].name);
    writer.key(*roots[i], path);
  }
  return writer.take();
}

}  // namespace vlplatform::registry
