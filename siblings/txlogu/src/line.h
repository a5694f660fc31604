/// The line of a record.
#ifndef TXLOGU_LINE_H
#define TXLOGU_LINE_H

#include <cstddef>
#include <string_view>

#include <txlogu/txlogu.h>

#include "system.h"

namespace txlogu {

/// One line of UTF-8 in a buffer that holds the longest record.
class Line {
 public:
  // A character takes at most six bytes, as "\u2028"; a byte of data three. The rest are the fixed fields and remarks.
  static constexpr std::size_t kCapacity = 6 * (TXLOG_MAX_TEXT + TXLOG_MAX_TAG) + 3 * TXLOG_MAX_DATA + 256;

  /// Makes this the line of `record`.
  void write(const txlogRecord& record) noexcept;
  /// Makes this the line of a complaint of the channel itself: `what`, ": " and the escaped `subject`.
  void writeComplaint(std::string_view what, system::View subject) noexcept;

  /// Zeroes what it held.
  void clear() noexcept;

  std::string_view view() const noexcept { return {bytes_, length_}; }

 private:
  void append(char byte) noexcept;
  void append(std::string_view bytes) noexcept;
  void appendNumber(long long value, int width = 1) noexcept;
  void appendTime(long long milliseconds) noexcept;
  void appendLevel(int level) noexcept;
  void appendEscaped(char32_t codePoint) noexcept;
  void appendTag(const wchar_t* tag) noexcept;
  void appendData(const txlogRecord& record) noexcept;
  template <typename Char>
  void appendEscaped(const Char* text, const Char* end) noexcept;

  char bytes_[kCapacity]{};
  std::size_t length_ = 0;
};

}  // namespace txlogu

#endif
