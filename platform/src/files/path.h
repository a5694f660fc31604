/// A path of the platform, taken apart.
#ifndef VLPLATFORM_SRC_FILES_PATH_H
#define VLPLATFORM_SRC_FILES_PATH_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vlplatform::files {

struct FullPath {
  wchar_t drive = L'C';
  std::vector<std::wstring> names;
  bool endsInBackslash = false;

  /// With drive and backslashes.
  std::wstring text() const;
};

/// Nothing for a null, an empty and a too long path.
std::optional<FullPath> fullPath(const wchar_t* path);

/// Whether a name matches a pattern with "*" and "?", in any case.
bool matches(std::wstring_view name, std::wstring_view pattern);

}  // namespace vlplatform::files

#endif
