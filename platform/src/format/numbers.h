/// Numbers in formatted text.
#ifndef VLPLATFORM_SRC_FORMAT_NUMBERS_H
#define VLPLATFORM_SRC_FORMAT_NUMBERS_H

#include "format/conversion.h"

namespace vlplatform {

/// A magnitude behind its sign or base, in the base that the conversion's type names.
void putInteger(Output& output, Conversion conversion, std::wstring_view prefix, unsigned long long value);

void putFloating(Output& output, Conversion conversion, double value);

}  // namespace vlplatform

#endif
