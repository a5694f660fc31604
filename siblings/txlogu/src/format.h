/// Formatting by the platform's wide rules, without the C library and without allocation.
#ifndef TXLOGU_FORMAT_H
#define TXLOGU_FORMAT_H

#include <cstdarg>
#include <cstddef>

#include <txlogu/txlogu.h>

namespace txlogu {

/// A wide text of bounded length. What does not fit is cut, never within a surrogate pair.
class Text {
 public:
  /// Zeroes what it held: a record's text may be one that must not stay readable.
  void clear() noexcept;
  void append(wchar_t unit) noexcept;
  void append(const wchar_t* text) noexcept;
  void appendCodePoint(char32_t codePoint) noexcept;
  /// Ends the text with its NUL.
  void finish() noexcept;

  const wchar_t* data() const noexcept { return units_; }
  std::size_t length() const noexcept { return length_; }
  bool cut() const noexcept { return cut_; }

 private:
  wchar_t units_[TXLOG_MAX_TEXT + 1]{};
  std::size_t length_ = 0;
  bool cut_ = false;
};

/// Appends `format` with its arguments; txlogLog says what it knows. Stops where the text is full.
void appendFormatted(Text& text, const wchar_t* format, std::va_list* arguments) noexcept;

}  // namespace txlogu

#endif
