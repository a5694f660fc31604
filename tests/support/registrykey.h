/// A registry key of the test's own, below HKEY_LOCAL_MACHINE, on both targets.
#ifndef SUPPORT_REGISTRYKEY_H
#define SUPPORT_REGISTRYKEY_H

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <vlhostkit/types.h>

namespace support {

/// The view that this program sees without asking for one, and the other.
inline constexpr DWORD kOwnView = sizeof(void*) == 4 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
inline constexpr DWORD kOtherView = sizeof(void*) == 4 ? KEY_WOW64_64KEY : KEY_WOW64_32KEY;

using Bytes = std::vector<BYTE>;

/// The bytes of a text, with the terminators that are written in it.
template <class Char>
Bytes bytesOf(std::basic_string_view<Char> text) {
  const auto* const first = reinterpret_cast<const BYTE*>(text.data());
  return Bytes(first, first + text.size() * sizeof(Char));
}

/// An open key; false where there is none.
class Key {
 public:
  /// Opens the key in the view of `view`, one of the KEY_WOW64 flags or 0.
  explicit Key(const std::wstring& path, DWORD view = 0) {
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_ALL_ACCESS | view, &key_) != ERROR_SUCCESS) {
      key_ = nullptr;
    }
  }
  /// Opens it, or makes it with what is missing of its path.
  static Key create(const std::wstring& path, DWORD view = 0, DWORD options = REG_OPTION_NON_VOLATILE) {
    HKEY key = nullptr;
    EXPECT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, options, KEY_ALL_ACCESS | view, nullptr,
                              &key, nullptr),
              static_cast<LSTATUS>(ERROR_SUCCESS));
    return Key(key);
  }
  ~Key() {
    if (key_ != nullptr) {
      RegCloseKey(key_);
    }
  }
  Key(Key&& other) noexcept : key_(std::exchange(other.key_, nullptr)) {}
  Key& operator=(Key&&) = delete;

  explicit operator bool() const { return key_ != nullptr; }
  HKEY get() const { return key_; }

  void set(const wchar_t* name, DWORD type, const Bytes& data) const {
    // Wine takes a zero behind the data for a terminator that was left out of the size.
    Bytes padded = data;
    padded.resize(data.size() + 8, 0x7f);
    ASSERT_EQ(RegSetValueExW(key_, name, 0, type, padded.data(), static_cast<DWORD>(data.size())),
              static_cast<LSTATUS>(ERROR_SUCCESS));
  }
  /// Type and bytes of a value, if there is one.
  std::optional<std::pair<DWORD, Bytes>> stored(const wchar_t* name) const {
    DWORD type = 0;
    DWORD size = 0;
    if (RegQueryValueExW(key_, name, nullptr, &type, nullptr, &size) != ERROR_SUCCESS) {
      return std::nullopt;
    }
    Bytes data(size);
    RegQueryValueExW(key_, name, nullptr, &type, data.data(), &size);
    return std::pair{type, data};
  }

 private:
  explicit Key(HKEY key) : key_(key) {}

  HKEY key_ = nullptr;
};

}  // namespace support

#endif
