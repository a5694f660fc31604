/// What the log of the families under the tag "txhostkit" must be, and texts by width.
#ifndef SUPPORT_RECORDS_H
#define SUPPORT_RECORDS_H

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include <support/logcapture.h>

namespace support {

using Log = std::vector<LogRecord>;

inline LogRecord entered(std::wstring text) {
  return {L"txhostkit", TXLOG_ENTRY, std::move(text)};
}
inline LogRecord traced(std::wstring text) {
  return {L"txhostkit", TXLOG_TRACE, std::move(text)};
}
inline LogRecord failed(std::wstring text) {
  return {L"txhostkit", TXLOG_ERROR, std::move(text)};
}
inline LogRecord left(std::wstring text) {
  return {L"txhostkit", TXLOG_EXIT, std::move(text)};
}

inline Log operator+(Log first, const Log& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

/// ASCII text in the width of `Char`.
template <class Char>
std::basic_string<Char> as(std::string_view ascii) {
  return {ascii.begin(), ascii.end()};
}
template <class String>
std::wstring widened(const String& ascii) {
  return {ascii.begin(), ascii.end()};
}

/// A number in parentheses, and a pointer as the log shows it.
inline std::wstring inParentheses(int number) {
  return L" (" + std::to_wstring(number) + L")";
}
inline std::wstring pointer(const void* value) {
  wchar_t digits[24];
  std::swprintf(digits, 24, L"%0*llX", static_cast<int>(2 * sizeof value),
                static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(value)));
  return digits;
}

}  // namespace support

#endif
