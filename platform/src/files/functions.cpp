// Attributes and removal.
#include <vlplatform/files.h>

#include "../gate.h"
#include "content.h"

namespace vlplatform::files {
namespace {

struct Found {
  FullPath path;
  std::filesystem::path file;
  DWORD attributes = 0;

  bool is(DWORD attribute) const { return (attributes & attribute) != 0; }
};

DWORD lookUp(LPCWSTR path, Found* found) {
  const std::optional<FullPath> full = fullPath(path);
  if (!full) {
    return ERROR_PATH_NOT_FOUND;
  }
  found->path = *full;
  const DWORD code = find(*full, &found->file);
  if (code != ERROR_SUCCESS) {
    return code;
  }
  found->attributes = attributesOf(found->file);
  const bool file = !found->is(FILE_ATTRIBUTE_DIRECTORY);
  return file && full->endsInBackslash ? ERROR_INVALID_NAME : ERROR_SUCCESS;
}

DWORD whyFileStays(const Found& found) {
  if (found.is(FILE_ATTRIBUTE_DIRECTORY)) {
    return ERROR_ACCESS_DENIED;
  }
  if (machine().files().inUse(comparable(found.path))) {
    return ERROR_SHARING_VIOLATION;
  }
  return found.is(FILE_ATTRIBUTE_READONLY) ? ERROR_ACCESS_DENIED : ERROR_SUCCESS;
}

DWORD whyFolderStays(const Found& found) {
  if (!found.is(FILE_ATTRIBUTE_DIRECTORY)) {
    return ERROR_DIRECTORY;
  }
  if (found.path.names.empty()) {
    return ERROR_ACCESS_DENIED;
  }
  if (machine().files().inUse(comparable(found.path))) {
    return ERROR_SHARING_VIOLATION;
  }
  std::error_code ignored;
  const bool empty = found.is(FILE_ATTRIBUTE_REPARSE_POINT) || std::filesystem::is_empty(found.file, ignored);
  return empty ? ERROR_SUCCESS : ERROR_DIR_NOT_EMPTY;
}

BOOL remove(const char* function, LPCWSTR path, DWORD (*whyItStays)(const Found&)) {
  if (gateFails(function)) {
    return FALSE;
  }
  const OwnAllocations own;
  Found found;
  DWORD code = lookUp(path, &found);
  if (code == ERROR_SUCCESS) {
    code = whyItStays(found);
  }
  std::error_code failed;
  if (code == ERROR_SUCCESS && !std::filesystem::remove(found.file, failed)) {
    code = ERROR_ACCESS_DENIED;
  }
  return succeed(code);
}

}  // namespace
}  // namespace vlplatform::files

using namespace vlplatform;

DWORD GetFileAttributesW(LPCWSTR path) {
  if (gateFails("GetFileAttributesW")) {
    return INVALID_FILE_ATTRIBUTES;
  }
  const OwnAllocations own;
  files::Found found;
  if (!succeed(files::lookUp(path, &found))) {
    return INVALID_FILE_ATTRIBUTES;
  }
  return found.attributes != 0 ? found.attributes : FILE_ATTRIBUTE_NORMAL;
}

BOOL DeleteFileW(LPCWSTR path) {
  return files::remove("DeleteFileW", path, &files::whyFileStays);
}

BOOL RemoveDirectoryW(LPCWSTR path) {
  return files::remove("RemoveDirectoryW", path, &files::whyFolderStays);
}
