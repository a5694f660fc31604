#include "secrettext.h"

#include <algorithm>
#include <cwchar>

#include <vlplatform/machine/allocations.h>

namespace vlplatform::windows {

void SecretText::assign(const wchar_t* text) {
  replace(0, size_, text, text != nullptr ? std::wcslen(text) : 0);
}

void SecretText::replace(std::size_t from, std::size_t to, const wchar_t* text, std::size_t count) {
  const OwnAllocations own;
  const std::size_t size = size_ - (to - from) + count;
  if (size > block_.size()) {
    block_.resize(std::max<std::size_t>({size, 2 * block_.size(), 32}));
  }
  wchar_t* const place = block_.data() + from;
  if (to != size_) {
    std::wmemmove(place + count, block_.data() + to, size_ - to);
  }
  if (count != 0) {
    std::wmemcpy(place, text, count);
  }
  if (size < size_) {
    VL::Framework::wipe(block_.data() + size, (size_ - size) * sizeof(wchar_t));
  }
  size_ = size;
}

std::size_t SecretText::copy(wchar_t* target, std::size_t chars) const {
  if (target == nullptr || chars == 0) {
    return 0;
  }
  const std::size_t copied = std::min(size_, chars - 1);
  std::copy_n(block_.data(), copied, target);
  target[copied] = L'\0';
  return copied;
}

}  // namespace vlplatform::windows
