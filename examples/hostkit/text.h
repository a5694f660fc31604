/// Text between the program, which is UTF-8 throughout, and the library, which is wide.
#ifndef HOSTKIT_TEXT_H
#define HOSTKIT_TEXT_H

#include <cstddef>
#include <string>
#include <string_view>

/// Ill-formed text becomes U+FFFD in both directions.
std::wstring toWide(std::string_view text);
std::string toUtf8(std::wstring_view text);

/// `text` as one line that a terminal shows and does not obey: control characters are written "\x1b". With a `limit`
/// the end of a longer text is left out and "..." put in its place.
std::string shown(std::string_view text, std::size_t limit = std::string_view::npos);

/// shown(), between single quotes and cut to a length that suits a message.
std::string inQuotes(std::string_view text);

#endif
