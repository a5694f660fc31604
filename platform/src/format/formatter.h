/// The one formatter behind the runtime's functions and the user library's.
#ifndef VLPLATFORM_SRC_FORMAT_FORMATTER_H
#define VLPLATFORM_SRC_FORMAT_FORMATTER_H

#include <cstdarg>

#include "format/output.h"

namespace vlplatform {

/// Whether "%s" and "%c" without a length are wide, as in wide functions, or narrow.
enum class OwnWidth { wide, narrow };

/// Puts the text to `output`. False at what is no format, with the text before it put.
bool formatText(Output& output, const wchar_t* format, std::va_list arguments, OwnWidth own = OwnWidth::wide);

}  // namespace vlplatform

#endif
