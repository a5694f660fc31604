/// The two text widths. A body that exists for narrow and wide text takes one of these as its policy, and adds the
/// platform functions of its family in a policy of its own that derives from it.
#ifndef VL_FRAME_WIDTH_H
#define VL_FRAME_WIDTH_H

#include <algorithm>
#include <array>
#include <iterator>
#include <string>
#include <type_traits>

#include "frame/log.h"
#include "platform.h"

namespace vl {

struct Narrow {
  using Char = char;
  using String = std::string;
  /// The letter that ends the function's name, and the log conversions of its texts: the usual one, and the one with
  /// the size.
  static constexpr Text suffix{L"A"};
  static constexpr Text conversion{L"%S"};
  static constexpr Text longConversion{L"%S"};
};

struct Wide {
  using Char = wchar_t;
  using String = std::wstring;
  static constexpr Text suffix{L"W"};
  static constexpr Text conversion{L"%s"};
  static constexpr Text longConversion{L"%ls"};
};

template <Text Ascii>
inline constexpr auto kNarrowed = [] {
  std::array<char, std::size(Ascii.chars)> narrowed{};
  std::transform(std::begin(Ascii.chars), std::end(Ascii.chars), narrowed.begin(),
                 [](wchar_t c) { return static_cast<char>(c); });
  return narrowed;
}();

/// A text of ASCII in the width of a body: literal<Char, L"SystemDrive">().
template <class Char, Text Ascii>
constexpr const Char* literal() {
  if constexpr (std::is_same_v<Char, char>) {
    return kNarrowed<Ascii>.data();
  } else {
    return kText<Ascii>;
  }
}

}  // namespace vl

#endif
