/// Where formatted text goes.
#ifndef VLPLATFORM_SRC_FORMAT_OUTPUT_H
#define VLPLATFORM_SRC_FORMAT_OUTPUT_H

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace vlplatform {

/// Counts all text, and stores it while there is room.
class Output {
 public:
  Output(wchar_t* buffer, std::size_t capacity) : buffer_(buffer), capacity_(capacity) {}

  void put(std::wstring_view text) {
    std::copy_n(text.data(), std::min(text.size(), room()), buffer_ + stored());
    size_ += text.size();
  }
  void put(wchar_t character) { fill(character, 1); }
  void fill(wchar_t character, std::size_t count) {
    std::fill_n(buffer_ + stored(), std::min(count, room()), character);
    size_ += count;
  }
  std::size_t size() const { return size_; }
  std::size_t stored() const { return std::min(size_, capacity_); }

 private:
  std::size_t room() const { return capacity_ - stored(); }

  wchar_t* buffer_;
  std::size_t capacity_;
  std::size_t size_ = 0;
};

}  // namespace vlplatform

#endif
