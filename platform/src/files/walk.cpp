// The runtime's walk over names.
#include <vlplatform/files.h>

#include <algorithm>
#include <cerrno>
#include <memory>

#include <sys/stat.h>

#include "../gate.h"
#include "../handletable.h"
#include "../unicode.h"
#include "content.h"

namespace vlplatform::files {
namespace {

namespace fs = std::filesystem;

struct Walk {
  std::vector<_wfinddata64i32_t> entries;
  std::size_t next = 0;
};

// Shared, so that a step changes the record and not a copy of it.
HandleTable<std::shared_ptr<Walk>>& walks() {
  static auto& table = *new HandleTable<std::shared_ptr<Walk>>(Resource::findHandle);
  return table;
}

int fail(int code) {
  errno = code;
  return -1;
}

void addEntry(Walk* walk, const fs::path& file, const std::wstring& name) {
  struct stat status {};
  const DWORD attributes = attributesOf(file);
  if (attributes == INVALID_FILE_ATTRIBUTES || lstat(file.c_str(), &status) != 0) {
    return;
  }
  _wfinddata64i32_t& entry = walk->entries.emplace_back();
  entry.attrib = attributes;
  entry.time_create = status.st_ctime;
  entry.time_access = status.st_atime;
  entry.time_write = status.st_mtime;
  entry.size = fs::is_regular_file(file) ? static_cast<std::uint32_t>(status.st_size) : 0;
  copyTerminated(std::wstring_view(name).substr(0, std::size(entry.name) - 1), entry.name);
}

Walk begin(const wchar_t* pattern) {
  Walk walk;
  std::optional<FullPath> path = fullPath(pattern);
  if (!path || path->names.empty() || path->endsInBackslash) {
    return walk;
  }
  const std::wstring last = path->names.back();
  path->names.pop_back();
  fs::path folder;
  std::error_code ignored;
  if (find(*path, &folder) != ERROR_SUCCESS || !fs::is_directory(folder, ignored)) {
    return walk;
  }
  for (const wchar_t* const dots : {L".", L".."}) {
    if (!path->names.empty() && matches(dots, last)) {
      addEntry(&walk, folder, dots);
    }
  }
  std::vector<std::pair<std::wstring, fs::path>> found;
  for (fs::directory_iterator next(folder, ignored), end; next != end; next.increment(ignored)) {
    const std::wstring name = toWide(std::string_view(next->path().filename().native()));
    if (matches(name, last)) {
      found.emplace_back(name, next->path());
    }
  }
  std::sort(found.begin(), found.end(),
            [](const auto& a, const auto& b) { return lowerCase(a.first) < lowerCase(b.first); });
  for (const auto& [name, file] : found) {
    addEntry(&walk, file, name);
  }
  return walk;
}

int step(Walk* walk, _wfinddata64i32_t* entry) {
  if (walk->next == walk->entries.size()) {
    return fail(ENOENT);
  }
  *entry = walk->entries[walk->next++];
  return 0;
}

}  // namespace
}  // namespace vlplatform::files

using namespace vlplatform;

std::intptr_t _wfindfirst64i32(const wchar_t* pattern, _wfinddata64i32_t* entry) {
  if (gate("_wfindfirst64i32") != ERROR_SUCCESS) {
    return files::fail(ENOENT);
  }
  const OwnAllocations own;
  const auto walk = std::make_shared<files::Walk>(files::begin(pattern));
  return files::step(walk.get(), entry) == 0 ? reinterpret_cast<std::intptr_t>(files::walks().open(walk)) : -1;
}

int _wfindnext64i32(std::intptr_t handle, _wfinddata64i32_t* entry) {
  if (gate("_wfindnext64i32") != ERROR_SUCCESS) {
    return files::fail(ENOENT);
  }
  const OwnAllocations own;
  const auto walk = files::walks().find(reinterpret_cast<HANDLE>(handle));
  return walk ? files::step(walk->get(), entry) : files::fail(EINVAL);
}

// A planned fault shows in the result, but the handle goes, as with FreeLibrary.
int _findclose(std::intptr_t handle) {
  const bool planned = gate("_findclose") != ERROR_SUCCESS;
  const bool closed = files::walks().close(reinterpret_cast<HANDLE>(handle));
  return closed && !planned ? 0 : files::fail(EINVAL);
}
