// The actions that clear away the product's resource files.
#include <vlhostkit/installer.h>

#include "frame/handle.h"
#include "installer/path.h"
#include "installer/removal.h"

namespace {

using ReadProperty = UINT(WINAPI*)(MSIHANDLE, LPCWSTR, LPWSTR, LPDWORD);
using Buffer = wchar_t[vl::Path::kCapacity];

constexpr const wchar_t* kProductMerged = L"%sResources\\Merged\\";
constexpr const wchar_t* kSharedMerged = L"%s\\Velorin\\Resources\\Merged\\";

// What all actions begin and end with; `work` gets the property's text.
template <class Work>
DWORD withProperty(MSIHANDLE install, Work work) {
  const vl::Module library(LoadLibraryW(L"msi.dll"));
  if (!library) {
    return GetLastError();
  }
  const auto read = vl::entryPoint<ReadProperty>(library, "MsiGetPropertyW");
  if (read == nullptr) {
    return GetLastError();
  }
  Buffer property = {};
  DWORD length = vl::Path::kCapacity;
  if (read(install, L"CustomActionData", property, &length) != ERROR_SUCCESS) {
    return ERROR_FILE_NOT_FOUND;
  }
  return work(property);
}

// Left out are a path that does not fit, and one without a text: it would lie in the installer's own current folder.
void apply(void (*remove)(const wchar_t*), const wchar_t* format, const wchar_t* text) {
  vl::Path path;
  if (*text != L'\0' && path.print(format, text)) {
    remove(path.get());
  }
}

// False if it is unset, or too long for `value`.
bool readShared(Buffer& value) {
  const DWORD length = GetEnvironmentVariableW(L"CommonProgramFiles", value, vl::Path::kCapacity);
  return length != 0 && length < vl::Path::kCapacity;
}

DWORD deleteResourceFiles(const wchar_t* property) {
  apply(&vl::removeTree, kProductMerged, property);
  Buffer shared = {};
  if (!readShared(shared)) {
    return ERROR_INVALID_FUNCTION;
  }
  apply(&vl::removeTree, kSharedMerged, shared);
  // From the inner folders to the outer: the restart goes by this order.
  apply(&vl::markForRestart, L"%sResources\\", property);
  apply(&vl::markForRestart, L"%s", property);
  apply(&vl::markForRestart, L"%s\\..\\", property);
  apply(&vl::markForRestart, L"%s\\Velorin\\Resources\\", shared);
  apply(&vl::markForRestart, L"%s\\Velorin\\", shared);
  return ERROR_SUCCESS;
}

DWORD deleteFile(const wchar_t* property) {
  apply(&vl::removeEntry, L"%s", property);
  return ERROR_SUCCESS;
}

DWORD cleanMergedFolders(const wchar_t* property) {
  apply(&vl::emptyTree, kProductMerged, property);
  Buffer shared = {};
  if (!readShared(shared)) {
    return ERROR_INVALID_FUNCTION;
  }
  apply(&vl::emptyTree, kSharedMerged, shared);
  return ERROR_SUCCESS;
}

}  // namespace

DWORD WINAPI MSIDeleteResourceFiles(MSIHANDLE install) {
  return withProperty(install, &deleteResourceFiles);
}

DWORD WINAPI MSIDeleteFile(MSIHANDLE install) {
  return withProperty(install, &deleteFile);
}

DWORD WINAPI MSICleanMergedFolders(MSIHANDLE install) {
  return withProperty(install, &cleanMergedFolders);
}
