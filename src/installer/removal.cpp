#include "installer/removal.h"

#include <string_view>

#include "frame/handle.h"
#include "installer/path.h"

namespace {

using FindHandle = vl::Handle<std::intptr_t, &_findclose, -1>;
using Entry = _wfinddata64i32_t;

// What lies behind a link is not the product's, whoever made the link; what can't be asked is not walked either.
bool mayWalk(const wchar_t* folder) {
  vl::Path path;
  if (!path.print(L"%s", folder)) {
    return false;
  }
  path.dropBackslashes();
  const DWORD attributes = GetFileAttributesW(path.get());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0;
}

// The first entry of `folder`; nothing if there is none.
FindHandle findFirst(const wchar_t* folder, Entry& entry) {
  vl::Path pattern;
  return pattern.print(L"%s*", folder) ? FindHandle(_wfindfirst64i32(pattern.get(), &entry)) : FindHandle();
}

// With a path of its own, which is gone by the time that the entry itself is removed.
void removeSubtree(const wchar_t* entryPath) {
  vl::Path folder;
  if (folder.print(L"%s\\", entryPath)) {
    vl::removeTree(folder.get());
  }
}

void removeFound(const wchar_t* folder, const Entry& entry) {
  const std::wstring_view name = entry.name;
  vl::Path path;
  if (name == L"." || name == L".." || !path.print(L"%s%s", folder, entry.name)) {
    return;
  }
  if ((entry.attrib & FILE_ATTRIBUTE_DIRECTORY) != 0) {
    removeSubtree(path.get());
  }
  vl::removeEntry(path.get());
}

}  // namespace

void vl::markForRestart(const wchar_t* path) {
  MoveFileExW(path, nullptr, MOVEFILE_DELAY_UNTIL_REBOOT);
}

void vl::removeEntry(const wchar_t* path) {
  if (!DeleteFileW(path)) {
    markForRestart(path);
  }
}

void vl::emptyTree(const wchar_t* folder) {
  if (!mayWalk(folder)) {
    return;
  }
  Entry entry{};
  const FindHandle walk = findFirst(folder, entry);
  if (!walk) {
    return;
  }
  do {
    removeFound(folder, entry);
  } while (_wfindnext64i32(walk.get(), &entry) == 0);
}

void vl::removeTree(const wchar_t* folder) {
  emptyTree(folder);
  if (!RemoveDirectoryW(folder)) {
    markForRestart(folder);
  }
}
