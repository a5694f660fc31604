/// What the fuzzers share: a check that ends the program, a machine that is the same in every run, the input in pieces,
/// and blocks of exact size.
#ifndef FUZZ_FUZZ_H
#define FUZZ_FUZZ_H

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include <vlplatform/machine.h>

#define CHECK(condition)                                                                  \
  do {                                                                                    \
    if (!(condition)) {                                                                   \
      std::fprintf(stderr, "%s:%d: does not hold: %s\n", __FILE__, __LINE__, #condition); \
      std::abort();                                                                       \
    }                                                                                     \
  } while (false)

namespace fuzz {

/// The stand-in's machine with the user CORP\alice, on a summer day in a zone two hours east of UTC with daylight
/// time.
inline vlplatform::Machine& machine() {
  static vlplatform::Machine& machine = []() -> vlplatform::Machine& {
    TIME_ZONE_INFORMATION zone{};
    zone.Bias = -60;
    zone.DaylightBias = -60;
    zone.DaylightDate = {0, 3, 0, 5, 2, 0, 0, 0};
    zone.StandardDate = {0, 10, 0, 5, 3, 0, 0, 0};
    vlplatform::machine().clock().setZone(zone);
    vlplatform::machine().clock().setTicks(130'200'000'000'000'000);  // August 2013
    vlplatform::machine().network().addPrincipal(L"alice@corp.example", L"CORP\\alice");
    vlplatform::Accounts& accounts = vlplatform::machine().accounts();
    accounts.forgetSystemUsers();
    CHECK(accounts.addDomain(L"CORP", L"S-1-5-21-1-2-3") && accounts.addUser(L"CORP", L"alice", 7));
    return vlplatform::machine();
  }();
  return machine;
}

/// Stores a value below HKEY_LOCAL_MACHINE, as far as that is possible.
inline void setValue(const wchar_t* path, const wchar_t* name, DWORD type, const void* data, std::size_t size) {
  HKEY key = nullptr;
  CHECK(RegCreateKeyExW(HKEY_LOCAL_MACHINE, path, 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr) == 0);
  RegSetValueExW(key, name, 0, type, static_cast<const BYTE*>(data), static_cast<DWORD>(size));
  RegCloseKey(key);
}

using Bytes = std::span<const std::uint8_t>;

/// The input from front to back. At its end there are only zeros and empty texts.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : rest_(data, size) {}

  bool empty() const { return rest_.empty(); }
  std::uint8_t byte() { return rest_.empty() ? std::uint8_t{0} : take(1)[0]; }
  /// As many as the next byte says.
  Bytes bytes() { return take(byte()); }
  /// Up to the next line end, which is skipped.
  Bytes line() {
    const auto end = std::find(rest_.begin(), rest_.end(), std::uint8_t{'\n'});
    const Bytes line = take(static_cast<std::size_t>(end - rest_.begin()));
    take(1);
    return line;
  }
  Bytes rest() { return take(rest_.size()); }

 private:
  Bytes take(std::size_t count) {
    const Bytes taken = rest_.first(std::min(count, rest_.size()));
    rest_ = rest_.subspan(taken.size());
    return taken;
  }

  Bytes rest_;
};

/// Text up to its first NUL: wide, a byte is a character of its own, and the byte 0x1B and the four behind it are one
/// character of any value; narrow, the bytes as they are.
template <class Char>
std::basic_string<Char> text(Bytes bytes) {
  std::basic_string<Char> text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    std::uint32_t unit = bytes[i];
    if (sizeof(Char) != 1 && unit == 0x1B && bytes.size() - i > 4) {
      unit = std::uint32_t{bytes[i + 1]} << 24 | bytes[i + 2] << 16 | bytes[i + 3] << 8 | bytes[i + 4];
      i += 4;
    }
    text.push_back(static_cast<Char>(unit));
  }
  return text.substr(0, text.find(Char{}));
}

/// A block on the heap of just that many elements, so that a sanitizer sees what is read or written beside it.
template <class T>
class Block {
 public:
  explicit Block(std::size_t size) : size_(size), elements_(new T[size]) {
    std::memset(elements_.get(), 0xbd, bytes());
  }
  /// The text with its terminator.
  explicit Block(const std::basic_string<T>& text) : Block(text.size() + 1) {
    std::copy_n(text.c_str(), text.size() + 1, data());
  }

  T* data() const { return elements_.get(); }
  std::size_t size() const { return size_; }
  std::size_t bytes() const { return size_ * sizeof(T); }
  /// Whether nothing was written from element `first` on.
  bool untouched(std::size_t first = 0) const {
    const auto* const begin = reinterpret_cast<const std::uint8_t*>(data());
    return std::all_of(begin + first * sizeof(T), begin + bytes(), [](std::uint8_t byte) { return byte == 0xbd; });
  }
  /// Whether it holds a text of that length, terminator not counted.
  bool holdsText(std::size_t length) const {
    return length < size_ && std::find(data(), data() + size_, T{}) == data() + length;
  }

 private:
  std::size_t size_;
  std::unique_ptr<T[]> elements_;
};

}  // namespace fuzz

#endif
