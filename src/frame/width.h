/// The two text widths. A body that exists for narrow and wide text takes one of these as its policy, and adds the
/// platform functions of its family in a policy of its own that derives from it.
#ifndef VL_FRAME_WIDTH_H
#define VL_FRAME_WIDTH_H

#include <string>

#include "frame/log.h"
#include "platform.h"

namespace vl {

struct Narrow {
  using Char = char;
  using String = std::string;
  /// The letter that ends the function's name, and the log conversion of its texts.
  static constexpr Text suffix{L"A"};
  static constexpr Text conversion{L"%S"};
};

struct Wide {
  using Char = wchar_t;
  using String = std::wstring;
  static constexpr Text suffix{L"W"};
  static constexpr Text conversion{L"%s"};
};

}  // namespace vl

#endif
