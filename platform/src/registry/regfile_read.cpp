#include <algorithm>
#include <cstring>

#include <vlplatform/utf8.h>

#include "../unicode.h"
#include "regfile.h"

namespace vlplatform::registry {
namespace {

struct Broken {
  unsigned line;
  const char* message;
};

// UTF-8 as characters; none where it is ill-formed, with the line breaks before that place in `*line`.
std::optional<std::wstring> decodeUtf8(std::string_view bytes, unsigned* line) {
  std::wstring chars;
  chars.reserve(bytes.size());
  const char* const end = bytes.data() + bytes.size();
  for (const char* at = bytes.data(); at != end;) {
    const utf8::Decoded decoded = utf8::decode(at, end);
    if (!decoded.valid) {
      return std::nullopt;
    }
    *line += decoded.codePoint == U'\n';
    chars.push_back(static_cast<wchar_t>(decoded.codePoint));
    at += decoded.length;
  }
  return chars;
}

std::vector<BYTE> bytesOf(std::wstring_view chars) {
  const auto* const raw = reinterpret_cast<const BYTE*>(chars.data());
  return {raw, raw + chars.size() * sizeof(wchar_t)};
}

std::wstring decodeFile(std::string_view bytes) {
  constexpr std::string_view kUtf16Mark = "\xFF\xFE";
  constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
  if (bytes.starts_with(kUtf16Mark)) {
    bytes.remove_prefix(kUtf16Mark.size());
    const std::vector<BYTE> wide = fromUtf16({bytes.begin(), bytes.end()});
    std::wstring chars(wide.size() / sizeof(wchar_t), L'\0');
    if (!chars.empty()) {
      std::memcpy(chars.data(), wide.data(), chars.size() * sizeof(wchar_t));
    }
    if (bytes.size() % 2 != 0) {
      throw Broken{1 + static_cast<unsigned>(std::count(chars.begin(), chars.end(), L'\n')),
                   "the file ends within a character"};
    }
    return chars;
  }
  if (bytes.starts_with(kUtf8Mark)) {
    bytes.remove_prefix(kUtf8Mark.size());
  }
  unsigned line = 1;
  std::optional<std::wstring> chars = decodeUtf8(bytes, &line);
  if (!chars) {
    throw Broken{line, "neither UTF-8, nor UTF-16 with a byte order mark"};
  }
  return std::move(*chars);
}

int hexDigit(wchar_t c) {
  const wchar_t upper = upperCase(c);
  return c >= L'0' && c <= L'9' ? c - L'0' : (upper >= L'A' && upper <= L'F' ? upper - L'A' + 10 : -1);
}

class Reader {
 public:
  explicit Reader(std::wstring_view text) : text_(text) {}

  std::vector<KeyChange> read() {
    header();
    while (at_ < text_.size()) {
      line();
    }
    return std::move(changes_);
  }

 private:
  [[noreturn]] void fail(const char* message) const { throw Broken{line_, message}; }

  // The next character; 0 at the end.
  wchar_t peek() const { return at_ < text_.size() ? text_[at_] : L'\0'; }
  bool atLineEnd() const {
    return at_ >= text_.size() || text_[at_] == L'\n' || text_.substr(at_).starts_with(L"\r\n");
  }
  void skipBlanks() {
    while (peek() == L' ' || peek() == L'\t') {
      ++at_;
    }
  }
  bool skip(std::wstring_view part) {
    const bool there = text_.substr(at_).starts_with(part);
    at_ += there ? part.size() : 0;
    return there;
  }
  std::wstring_view restOfLine() {
    std::wstring_view rest = text_.substr(at_, text_.find(L'\n', at_) - at_);
    at_ += rest.size();
    if (at_ < text_.size() && rest.ends_with(L'\r')) {
      rest.remove_suffix(1);
    }
    return rest;
  }
  void nextLine() {
    skip(L"\r");
    if (skip(L"\n")) {
      ++line_;
    }
  }
  void endOfLine(const char* message) {
    skipBlanks();
    if (peek() == L';') {
      restOfLine();
    }
    if (!atLineEnd()) {
      fail(message);
    }
    nextLine();
  }

  void header() {
    std::wstring_view first = restOfLine();
    first = first.substr(0, first.find_last_not_of(L" \t") + 1);
    narrow_ = first == L"REGEDIT4";
    if (!narrow_ && first != L"Windows Registry Editor Version 5.00") {
      fail("the first line is not that of registry text");
    }
    nextLine();
  }

  void line() {
    skipBlanks();
    if (atLineEnd()) {
      nextLine();
    } else if (peek() == L';') {
      wideText_ = restOfLine() == kWideTextComment;
      nextLine();
    } else if (skip(L"[")) {
      key();
    } else if (peek() == L'"' || peek() == L'@') {
      value();
    } else {
      fail("neither a key, nor a value, nor a comment");
    }
  }

  void key() {
    const bool removed = skip(L"-");
    std::wstring_view name = restOfLine();
    const std::size_t end = name.rfind(L']');
    if (end == std::wstring_view::npos) {
      fail("the key has no closing bracket");
    }
    const std::wstring_view behind = name.substr(end + 1);
    const std::size_t word = behind.find_first_not_of(L" \t");
    if (word != std::wstring_view::npos && behind[word] != L';') {
      fail("unexpected text behind the key");
    }
    name = name.substr(0, end);
    const std::wstring_view rootName = name.substr(0, name.find(L'\\'));
    const auto* const root = std::find_if(kRoots.begin(), kRoots.end(),
                                          [&](const RootName& known) { return sameName(known.name, rootName); });
    if (root == kRoots.end()) {
      fail("there is no such root key");
    }
    std::wstring_view path = name.substr(rootName.size());
    unsigned depth = 0;
    for (std::wstring_view rest = path, part = takeName(&rest); !part.empty(); part = takeName(&rest)) {
      if (!isKeyName(part)) {
        fail("a key's name is too long or has a character that none can have");
      }
      ++depth;
    }
    if (depth > kMostKeysOfPath) {
      fail("too many keys in one path");
    }
    changes_.push_back({line_, removed, static_cast<std::size_t>(root - kRoots.begin()), std::wstring(path)});
    wideText_ = false;
    nextLine();
  }

  // Text in quotes may go on over line ends, which are part of it. Line feeds, carriage returns and the terminator
  // also stand there as Wine's export writes them.
  std::wstring quoted() {
    const unsigned firstLine = line_;
    std::wstring chars;
    for (++at_; at_ < text_.size(); ++at_) {
      wchar_t c = text_[at_];
      if (c == L'"') {
        ++at_;
        return chars;
      }
      if (c == L'\\') {
        c = escaped();
      } else if (c == L'\n') {
        ++line_;
      }
      if (c == L'\0') {
        fail("a null character in text");
      }
      chars.push_back(c);
    }
    throw Broken{firstLine, "the text has no closing quote"};
  }
  wchar_t escaped() {
    ++at_;
    switch (peek()) {
      case L'\\':
      case L'"':
        return text_[at_];
      case L'n':
        return L'\n';
      case L'r':
        return L'\r';
      default:
        fail("an unknown character behind a backslash");
    }
  }

  void value() {
    if (changes_.empty()) {
      fail("a value before the first key");
    }
    if (changes_.back().removed) {
      fail("a value in a key that is deleted");
    }
    ValueChange change;
    if (!skip(L"@")) {
      change.name = quoted();
      if (!isValueName(change.name)) {
        fail("the value's name is too long or has a character that none can have");
      }
    }
    skipBlanks();
    if (!skip(L"=")) {
      fail("no equals sign behind the value's name");
    }
    skipBlanks();
    const unsigned firstLine = line_;
    if (!skip(L"-")) {
      change.value = data();
      change.value->name = change.name;
    }
    wideText_ = false;
    const unsigned lastLine = line_;
    try {
      endOfLine("unexpected text behind the value");
    } catch (const Broken& broken) {
      throw Broken{firstLine == lastLine ? broken.line : firstLine, broken.message};
    }
    changes_.back().values.push_back(std::move(change));
  }

  Value data() {
    if (peek() == L'"') {
      std::wstring chars = quoted();
      chars.push_back(L'\0');
      return {{}, REG_SZ, bytesOf(chars)};
    }
    if (skip(L"dword:")) {
      skipBlanks();
      const DWORD dword = number("the number must have one to eight digits");
      const auto* const raw = reinterpret_cast<const BYTE*>(&dword);
      return {{}, REG_DWORD, {raw, raw + sizeof dword}};
    }
    if (!skip(L"hex")) {
      fail("the data is of no known form");
    }
    DWORD type = REG_BINARY;
    if (skip(L"(")) {
      type = number("the type must have one to eight digits");
      if (!skip(L")")) {
        fail("the type has no closing parenthesis");
      }
    }
    if (!skip(L":")) {
      fail("no colon before the bytes");
    }
    std::vector<BYTE> bytes = byteList();
    return {{}, type, isTextType(type) && !wideText_ ? fromFileText(bytes) : std::move(bytes)};
  }

  // One to eight hexadecimal digits.
  DWORD number(const char* message) {
    DWORD value = 0;
    int digits = 0;
    for (int digit = hexDigit(peek()); digit >= 0; digit = hexDigit(peek())) {
      value = value << 4 | static_cast<DWORD>(digit);
      ++at_;
      if (++digits > 8) {
        fail(message);
      }
    }
    if (digits == 0) {
      fail(message);
    }
    return value;
  }

  // Goes on behind line ends that have a backslash before them.
  void skipContinuation() {
    skipBlanks();
    while (skip(L"\\")) {
      skipBlanks();
      if (!atLineEnd()) {
        fail("unexpected text behind the backslash");
      }
      if (at_ >= text_.size()) {
        fail("the file ends where the bytes should go on");
      }
      nextLine();
      skipBlanks();
    }
  }

  std::vector<BYTE> byteList() {
    std::vector<BYTE> bytes;
    skipContinuation();
    while (hexDigit(peek()) >= 0 || !bytes.empty()) {
      const DWORD byte = number("a byte is missing or is no number");
      if (byte > 0xFF) {
        fail("a byte has more than two digits");
      }
      bytes.push_back(static_cast<BYTE>(byte));
      skipBlanks();
      if (!skip(L",")) {
        break;
      }
      skipContinuation();
    }
    return bytes;
  }

  std::vector<BYTE> fromFileText(const std::vector<BYTE>& bytes) const {
    if (!narrow_) {
      return fromUtf16(bytes);
    }
    unsigned ignoredLine = 0;
    const std::optional<std::wstring> chars =
        decodeUtf8({reinterpret_cast<const char*>(bytes.data()), bytes.size()}, &ignoredLine);
    if (!chars) {
      fail("the bytes are no UTF-8 text");
    }
    return bytesOf(*chars);
  }

  std::wstring_view text_;
  std::size_t at_ = 0;
  unsigned line_ = 1;
  bool narrow_ = false;    // text in lists of bytes is narrow
  bool wideText_ = false;  // the last line was kWideTextComment
  std::vector<KeyChange> changes_;
};

}  // namespace

Reading readRegistryText(std::string_view bytes) {
  try {
    const std::wstring text = decodeFile(bytes);
    return {{}, Reader(text).read()};
  } catch (const Broken& broken) {
    return {{broken.message, broken.line}, {}};
  }
}

}  // namespace vlplatform::registry
