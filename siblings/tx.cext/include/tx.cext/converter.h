/// Narrow to wide text, for components that cannot convert by themselves.
#ifndef TX_CEXT_CONVERTER_H
#define TX_CEXT_CONVERTER_H

#include <vlhostkit/export.h>
#include <vlhostkit/secstring.h>

namespace VL::Framework {

/// The conversions; there are no objects of it.
class CConverter {
 public:
  /// Appends `length` bytes of `text`, in the process's ANSI code page (UTF-8 off Windows), to `out` as wide text.
  /// Bytes that are no text become replacement characters: U+FFFD in UTF-8, the code page's own otherwise. A null text
  /// or a length below 1 leaves `out` as it is. No other copy of the text is made. Throws std::bad_alloc out of
  /// memory, with `out` as it was. Any thread.
  TX_CEXT_API static void charToString(const char* text, int length, secstring& out);
};

}  // namespace VL::Framework

#endif
