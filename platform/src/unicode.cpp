#include "unicode.h"

#include <locale.h>
#include <wctype.h>

#include <algorithm>

#include <vlplatform/machine/allocations.h>

namespace vlplatform {
namespace {

// One character for one. Nothing becomes ASCII, as a dotless i would.
wchar_t mapped(wchar_t c, wint_t (*map)(wint_t, locale_t)) {
  static const locale_t locale = [] {
    const OwnAllocations own;
    return newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);  // never freed
  }();
  if (locale == nullptr) {
    return c;
  }
  // NOLINTNEXTLINE(bugprone-signed-char-misuse,cert-str34-c): a wide character, not negative
  const auto other = static_cast<wchar_t>(map(static_cast<wint_t>(c), locale));
  return other < 0x80 ? c : other;
}

template <class Change>
std::wstring changed(std::wstring_view text, Change change) {
  std::wstring out(text);
  std::transform(out.begin(), out.end(), out.begin(), change);
  return out;
}

}  // namespace

wchar_t otherUpperCase(wchar_t c) {
  return mapped(c, &towupper_l);
}
wchar_t otherLowerCase(wchar_t c) {
  return mapped(c, &towlower_l);
}

std::wstring upperCase(std::wstring_view text) {
  return changed(text, [](wchar_t c) { return upperCase(c); });
}
std::wstring lowerCase(std::wstring_view text) {
  return changed(text, [](wchar_t c) { return lowerCase(c); });
}

int compareNames(std::wstring_view a, std::wstring_view b) {
  const std::size_t common = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < common; ++i) {
    if (a[i] != b[i]) {
      const wchar_t x = upperCase(a[i]);
      const wchar_t y = upperCase(b[i]);
      if (x != y) {
        return x < y ? -1 : 1;
      }
    }
  }
  return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

}  // namespace vlplatform
