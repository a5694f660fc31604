// The one place where the two targets have different tables.
#include "charclass.h"

#ifdef _WIN32
#include <windows.h>

#include <cstdint>
#else
#include <locale.h>
#include <wctype.h>
#endif

namespace vlafx {

#ifdef _WIN32

// The platform takes a single character in the place of a pointer to text.
wchar_t platformUpper(wchar_t character) noexcept {
  const auto argument = reinterpret_cast<LPWSTR>(static_cast<std::uintptr_t>(character));
  return static_cast<wchar_t>(reinterpret_cast<std::uintptr_t>(CharUpperW(argument)));
}

wchar_t platformLower(wchar_t character) noexcept {
  const auto argument = reinterpret_cast<LPWSTR>(static_cast<std::uintptr_t>(character));
  return static_cast<wchar_t>(reinterpret_cast<std::uintptr_t>(CharLowerW(argument)));
}

#else

namespace {

// Null where the C library has no such locale: then the program's own counts. Never freed.
locale_t unicodeLocale() noexcept {
  static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return locale;
}

}  // namespace

wchar_t platformUpper(wchar_t character) noexcept {
  // NOLINTNEXTLINE(bugprone-signed-char-misuse,cert-str34-c): a wide character, signed here
  const auto argument = static_cast<wint_t>(character);
  const locale_t locale = unicodeLocale();
  return static_cast<wchar_t>(locale != nullptr ? towupper_l(argument, locale) : towupper(argument));
}

wchar_t platformLower(wchar_t character) noexcept {
  // NOLINTNEXTLINE(bugprone-signed-char-misuse,cert-str34-c): a wide character, signed here
  const auto argument = static_cast<wint_t>(character);
  const locale_t locale = unicodeLocale();
  return static_cast<wchar_t>(locale != nullptr ? towlower_l(argument, locale) : towlower(argument));
}

#endif

}  // namespace vlafx
