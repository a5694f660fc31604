#include <vlhostkit/wipe.h>

#include <cerrno>
#include <cstring>
#include <cwchar>
#include <string>

#include <vlplatform/utf8.h>

#include "gate.h"
#include "invalidparameter.h"

namespace vlplatform {
namespace {

template <class Char>
errno_t refuseAndEmpty(Char* target, errno_t code) {
  *target = Char{};
  return refuse(code);
}

std::size_t lengthWithin(const char* text, std::size_t most) {
  return strnlen(text, most);
}
std::size_t lengthWithin(const wchar_t* text, std::size_t most) {
  return wcsnlen(text, most);
}

// Measured before anything is copied: a target that is too small never holds a part of the text.
template <class Char>
errno_t copyText(const char* function, Char* target, rsize_t size, const Char* source) {
  const bool planned = gate(function) != ERROR_SUCCESS;
  if (target == nullptr || size == 0) {
    return refuse(EINVAL);
  }
  if (planned || source == nullptr) {
    return refuseAndEmpty(target, EINVAL);
  }
  const std::size_t length = lengthWithin(source, size);
  if (length == size) {
    return refuseAndEmpty(target, ERANGE);
  }
  std::char_traits<Char>::move(target, source, length + 1);
  return 0;
}

}  // namespace
}  // namespace vlplatform

using namespace vlplatform;

errno_t wcscpy_s(wchar_t* target, rsize_t size, const wchar_t* source) {
  return copyText("wcscpy_s", target, size, source);
}

errno_t strcpy_s(char* target, rsize_t size, const char* source) {
  return copyText("strcpy_s", target, size, source);
}

errno_t memcpy_s(void* target, rsize_t size, const void* source, rsize_t count) {
  const bool planned = gate("memcpy_s") != ERROR_SUCCESS;
  if (count == 0 && !planned) {
    return 0;
  }
  if (target == nullptr) {
    return refuse(EINVAL);
  }
  if (planned || source == nullptr || size < count) {
    VL::Framework::wipe(target, size);
    return refuse(planned || source == nullptr ? EINVAL : ERANGE);
  }
  std::memcpy(target, source, count);
  return 0;
}

errno_t memmove_s(void* target, rsize_t size, const void* source, rsize_t count) {
  const bool planned = gate("memmove_s") != ERROR_SUCCESS;
  if (count == 0 && !planned) {
    return 0;
  }
  if (planned || target == nullptr || source == nullptr) {
    return refuse(EINVAL);
  }
  if (size < count) {
    return refuse(ERANGE);
  }
  std::memmove(target, source, count);
  return 0;
}

errno_t wcstombs_s(std::size_t* converted, char* target, rsize_t size, const wchar_t* source, rsize_t count) {
  const bool planned = gate("wcstombs_s") != ERROR_SUCCESS;
  if ((target == nullptr) != (size == 0)) {
    return refuse(EINVAL);
  }
  if (target != nullptr) {
    *target = '\0';
  }
  if (converted != nullptr) {
    *converted = 0;
  }
  if (planned || source == nullptr) {
    return refuse(EINVAL);
  }
  std::size_t bytes = 0;
  errno_t result = 0;
  for (; *source != L'\0'; ++source) {
    const auto codePoint = static_cast<char32_t>(*source);
    char units[utf8::kMaxLength];
    const auto length = static_cast<std::size_t>(utf8::encode(codePoint, units));
    if (target != nullptr && count - bytes < length) {
      break;
    }
    if (!utf8::isScalar(codePoint)) {
      result = EILSEQ;
      break;
    }
    if (target != nullptr && size - 1 - bytes < length) {
      result = ERANGE;
      break;
    }
    if (target != nullptr) {
      std::memcpy(target + bytes, units, length);
    }
    bytes += length;
  }
  if (result != 0) {
    VL::Framework::wipe(target, target != nullptr ? bytes : 0);
    if (result == ERANGE) {
      return refuse(ERANGE);
    }
    errno = EILSEQ;
    return EILSEQ;
  }
  if (target != nullptr) {
    target[bytes] = '\0';
  }
  if (converted != nullptr) {
    *converted = bytes + 1;
  }
  return 0;
}
