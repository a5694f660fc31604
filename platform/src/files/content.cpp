#include "content.h"

#include <vlplatform/machine.h>

#include "../unicode.h"

namespace vlplatform {

void Files::setInUse(std::wstring_view path, bool inUse) {
  const auto full = files::fullPath(std::wstring(path).c_str());
  if (!full) {
    return;
  }
  facts_.with([&](Facts& facts) {
    const std::wstring comparable = files::comparable(*full);
    inUse ? void(facts.inUse.insert(comparable)) : void(facts.inUse.erase(comparable));
  });
}

namespace files {
namespace {

namespace fs = std::filesystem;

// The entry `name` of `folder` in whatever case; the very name first.
bool child(const fs::path& folder, const std::wstring& name, fs::path* found) {
  std::error_code ignored;
  const fs::path exact = folder / toUtf8(name);
  if (fs::exists(fs::symlink_status(exact, ignored))) {
    *found = exact;
    return true;
  }
  for (fs::directory_iterator next(folder, ignored), end; next != end; next.increment(ignored)) {
    if (sameName(toWide(std::string_view(next->path().filename().native())), name)) {
      *found = next->path();
      return true;
    }
  }
  return false;
}

}  // namespace

DWORD find(const FullPath& path, fs::path* found) {
  const fs::path root = machine().files().root();
  if (root.empty() || lowerCase(path.drive) != L'c') {
    return ERROR_PATH_NOT_FOUND;
  }
  *found = root;
  for (std::size_t i = 0; i < path.names.size(); ++i) {
    std::error_code ignored;
    if (!fs::is_directory(*found, ignored)) {
      return ERROR_PATH_NOT_FOUND;
    }
    if (!child(*found, path.names[i], found)) {
      return i + 1 == path.names.size() ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND;
    }
  }
  return ERROR_SUCCESS;
}

DWORD attributesOf(const fs::path& file) {
  std::error_code ignored;
  const fs::file_status status = fs::symlink_status(file, ignored);
  if (!fs::exists(status)) {
    return INVALID_FILE_ATTRIBUTES;
  }
  const bool link = fs::is_symlink(status);
  const bool folder = fs::is_directory(file, ignored);
  const bool readOnly = !link && !folder && (status.permissions() & fs::perms::owner_write) == fs::perms::none;
  return (link ? FILE_ATTRIBUTE_REPARSE_POINT : 0) | (folder ? FILE_ATTRIBUTE_DIRECTORY : 0) |
         (readOnly ? FILE_ATTRIBUTE_READONLY : 0);
}

std::wstring comparable(FullPath path) {
  path.endsInBackslash = false;
  return lowerCase(path.text());
}

}  // namespace files
}  // namespace vlplatform
