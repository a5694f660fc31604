/// Case of names, without a locale.
#ifndef VLPLATFORM_SRC_REGISTRY_FOLDCASE_H
#define VLPLATFORM_SRC_REGISTRY_FOLDCASE_H

#include <string_view>

namespace vlplatform::registry {

/// The upper-case form, one character for one, of the Latin, Greek, Cyrillic, Armenian and full-width letters; other
/// characters are their own.
wchar_t upperCase(wchar_t c);

/// The order of names: by upper-case forms. 0 for names that are the same key or value.
int compareNames(std::wstring_view a, std::wstring_view b);

inline bool sameName(std::wstring_view a, std::wstring_view b) {
  return a.size() == b.size() && compareNames(a, b) == 0;
}

}  // namespace vlplatform::registry

#endif
