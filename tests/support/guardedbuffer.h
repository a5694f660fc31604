/// Buffers that show what was written to them.
#ifndef SUPPORT_GUARDEDBUFFER_H
#define SUPPORT_GUARDEDBUFFER_H

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <type_traits>
#include <vector>

namespace support {

/// A buffer of `size` elements between two guards, everything filled with the byte 0xbd.
template <class T>
class GuardedBuffer {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  explicit GuardedBuffer(std::size_t size) : elements_(size + 2 * kGuard) { refill(); }

  T* data() { return elements_.data() + kGuard; }
  const T* data() const { return elements_.data() + kGuard; }
  std::size_t size() const { return elements_.size() - 2 * kGuard; }

  /// Whether nothing was written before or behind the buffer.
  bool guardsIntact() const { return filled(0, kGuard) && filled(kGuard + size(), kGuard); }
  /// Whether in addition nothing was written to the buffer from element `first` on.
  bool untouched(std::size_t first = 0) const { return guardsIntact() && filled(kGuard + first, size() - first); }

  void refill() { std::memset(static_cast<void*>(elements_.data()), kFill, elements_.size() * sizeof(T)); }

 private:
  static constexpr std::size_t kGuard = 64;
  static constexpr unsigned char kFill = 0xbd;

  bool filled(std::size_t first, std::size_t count) const {
    const auto* const bytes = reinterpret_cast<const unsigned char*>(elements_.data() + first);
    return std::all_of(bytes, bytes + count * sizeof(T), [](unsigned char value) { return value == kFill; });
  }

  std::vector<T> elements_;
};

}  // namespace support

#endif
