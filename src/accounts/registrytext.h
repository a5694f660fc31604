/// Text as the registry gives it: perhaps without terminator, perhaps of odd length.
#ifndef VL_ACCOUNTS_REGISTRYTEXT_H
#define VL_ACCOUNTS_REGISTRYTEXT_H

#include <cstddef>
#include <string_view>

#include "platform.h"

namespace vl {

/// The capacity in bytes of the reads into fixed buffers: 255, which is 126 wide characters and a terminator, whatever
/// a wide character takes.
template <class Char>
inline constexpr DWORD kShortReadBytes = sizeof(Char) == 1 ? 255 : 255 * sizeof(Char) / 2;

/// Characters of the buffer for such a read; one more than the read can fill.
inline constexpr std::size_t kShortReadChars = 256;

/// The text in `bytes` bytes at `data`: up to its terminator, or all whole characters if there is none.
template <class Char>
std::basic_string_view<Char> registryText(const Char* data, DWORD bytes) {
  const std::basic_string_view<Char> all(data, bytes / sizeof(Char));
  return all.substr(0, all.find(Char{}));
}

}  // namespace vl

#endif
