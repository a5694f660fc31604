/// The length of a text that may be null.
#ifndef VLAFX_SRC_TEXTLENGTH_H
#define VLAFX_SRC_TEXTLENGTH_H

#include <cstddef>
#include <limits>
#include <string>

#include <vlafx/exceptions.h>

namespace vlafx {

/// One too long for a core can't be stored anywhere.
template <class Char>
int lengthOf(const Char* text) {
  const std::size_t length = text != nullptr ? std::char_traits<Char>::length(text) : 0;
  if (length > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
    AfxThrowMemoryException();
  }
  return static_cast<int>(length);
}

}  // namespace vlafx

#endif
