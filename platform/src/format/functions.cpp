// The functions that format: the runtime's bounded ones, and the user library's with their fixed bound.
#include <vlhostkit/wipe.h>

#include <cerrno>
#include <climits>

#include <vlplatform/crt.h>
#include <vlplatform/system.h>

#include "format/formatter.h"
#include "gate.h"
#include "invalidparameter.h"
#include "unicode.h"

namespace vlplatform {
namespace {

int refuseFormat(errno_t code) {
  refuse(code);
  return -1;
}

int store(DWORD planned, wchar_t* buffer, std::size_t size, const wchar_t* format, std::va_list arguments) {
  if (buffer == nullptr || size == 0) {
    return refuseFormat(EINVAL);
  }
  if (planned != ERROR_SUCCESS || format == nullptr) {
    *buffer = L'\0';
    return refuseFormat(EINVAL);
  }
  Output output(buffer, size);
  const bool valid = formatText(output, format, arguments);
  if (valid && output.size() < size && output.size() <= INT_MAX) {
    buffer[output.size()] = L'\0';
    return static_cast<int>(output.size());
  }
  VL::Framework::wipe(buffer, output.stored() * sizeof(wchar_t));
  *buffer = L'\0';
  return refuseFormat(valid ? ERANGE : EINVAL);
}

// Without a bound from the caller: what goes beyond this, or follows what is no format, is left out.
constexpr std::size_t kMostChars = 1023;

int storeUnbounded(wchar_t* buffer, const wchar_t* format, std::va_list arguments, OwnWidth own = OwnWidth::wide) {
  Output output(buffer, kMostChars);
  formatText(output, format, arguments, own);
  buffer[output.stored()] = L'\0';
  return static_cast<int>(output.stored());
}

int storeUnbounded(char* buffer, const char* format, std::va_list arguments) {
  const OwnAllocations ours;
  wchar_t text[kMostChars + 1];
  storeUnbounded(text, toWide(std::string_view(format)).c_str(), arguments, OwnWidth::narrow);
  const std::string stored = toUtf8(text).substr(0, kMostChars);
  copyTerminated<char>(stored, buffer);
  return static_cast<int>(stored.size());
}

}  // namespace
}  // namespace vlplatform

using namespace vlplatform;

int _vscwprintf(const wchar_t* format, std::va_list arguments) {
  if (gate("_vscwprintf") != ERROR_SUCCESS || format == nullptr) {
    return refuseFormat(EINVAL);
  }
  Output output(nullptr, 0);
  if (!formatText(output, format, arguments)) {
    return refuseFormat(EINVAL);
  }
  return output.size() <= INT_MAX ? static_cast<int>(output.size()) : refuseFormat(ERANGE);
}

int vswprintf_s(wchar_t* buffer, std::size_t size, const wchar_t* format, std::va_list arguments) {
  return store(gate("vswprintf_s"), buffer, size, format, arguments);
}

int swprintf_s(wchar_t* buffer, std::size_t size, const wchar_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const int result = store(gate("swprintf_s"), buffer, size, format, arguments);
  va_end(arguments);
  return result;
}

int wsprintfW(LPWSTR buffer, LPCWSTR format, ...) {
  gate("wsprintfW");
  std::va_list arguments;
  va_start(arguments, format);
  const int size = storeUnbounded(buffer, format, arguments);
  va_end(arguments);
  return size;
}

int wsprintfA(LPSTR buffer, LPCSTR format, ...) {
  gate("wsprintfA");
  std::va_list arguments;
  va_start(arguments, format);
  const int size = storeUnbounded(buffer, format, arguments);
  va_end(arguments);
  return size;
}
