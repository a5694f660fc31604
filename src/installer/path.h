/// A path of the installer's actions: text in a bounded buffer.
#ifndef VL_INSTALLER_PATH_H
#define VL_INSTALLER_PATH_H

#include <cstddef>
#include <cwchar>

#include "platform.h"

namespace vl {

class Path {
 public:
  static constexpr std::size_t kCapacity = 260;

  /// Prints `format`, whose conversions are one %s for each of `texts`. False, with nothing printed, if the buffer has
  /// no room for it: the platform's own test of that may end the process.
  template <class... Texts>
  bool print(const wchar_t* format, const Texts*... texts) {
    const std::size_t length = std::wcslen(format) - 2 * sizeof...(texts) + (std::wcslen(texts) + ...);
    return length < kCapacity && swprintf_s(text_, kCapacity, format, texts...) >= 0;
  }
  const wchar_t* get() const { return text_; }

  /// Takes away the backslashes at the end.
  void dropBackslashes() {
    for (std::size_t length = std::wcslen(text_); length > 0 && text_[length - 1] == L'\\'; --length) {
      text_[length - 1] = L'\0';
    }
  }

 private:
  wchar_t text_[kCapacity] = {};
};

}  // namespace vl

#endif
