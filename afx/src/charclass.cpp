#include "charclass.h"

#include <vlhostkit/types.h>

#include <cstdint>

namespace vlafx {
namespace {

// The platform takes a single character in the place of a pointer to text.
LPWSTR asPointer(wchar_t character) noexcept {
  return reinterpret_cast<LPWSTR>(static_cast<std::uintptr_t>(character));
}
wchar_t asCharacter(LPWSTR pointer) noexcept {
  return static_cast<wchar_t>(reinterpret_cast<std::uintptr_t>(pointer));
}

}  // namespace

wchar_t platformUpper(wchar_t character) noexcept {
  return asCharacter(CharUpperW(asPointer(character)));
}

wchar_t platformLower(wchar_t character) noexcept {
  return asCharacter(CharLowerW(asPointer(character)));
}

}  // namespace vlafx
