// Removal at the next restart.
#include <vlplatform/files.h>

#include "../registry/state.h"
#include "path.h"

namespace vlplatform::files {
namespace {

constexpr std::wstring_view kKey = L"SYSTEM\\CurrentControlSet\\Control\\Session Manager";
constexpr std::wstring_view kValue = L"PendingFileRenameOperations";

// The list with one more pair of texts, where the second one is empty. The list's own end is another terminator.
std::vector<BYTE> withRemoval(const registry::Value* list, const std::wstring& path) {
  std::vector<BYTE> data = list != nullptr ? list->data : std::vector<BYTE>();
  data.resize(data.size() - std::min(data.size(), sizeof(wchar_t)));
  const std::wstring added = L"\\??\\" + path + std::wstring(3, L'\0');
  const auto* const bytes = reinterpret_cast<const BYTE*>(added.data());
  data.insert(data.end(), bytes, bytes + added.size() * sizeof(wchar_t));
  return data;
}

DWORD note(registry::State& state, const std::wstring& path) {
  const std::uint64_t now = machine().clock().ticks();
  std::wstring_view missing = kKey;
  registry::Key* key = nullptr;
  for (std::size_t i = 0; i < registry::kRoots.size(); ++i) {
    if (registry::kRoots[i].key == HKEY_LOCAL_MACHINE) {
      key = registry::walk(state.roots[i].get(), &missing, false);
    }
  }
  const DWORD code = registry::makeKeys(key, missing, false, now, &key);
  if (code != ERROR_SUCCESS) {
    return code;
  }
  const registry::Value* const list = key->value(kValue);
  if ((list != nullptr && list->type != REG_MULTI_SZ) || (key->denied & KEY_SET_VALUE) != 0) {
    return ERROR_ACCESS_DENIED;
  }
  const std::vector<BYTE> data = withRemoval(list, path);
  key->setValue(kValue, REG_MULTI_SZ, data.data(), data.size(), now);
  state.changed();
  return state.saveChanges();
}

}  // namespace
}  // namespace vlplatform::files

using namespace vlplatform;

BOOL MoveFileExW(LPCWSTR path, LPCWSTR target, DWORD flags) {
  if (gateFails("MoveFileExW")) {
    return FALSE;
  }
  const OwnAllocations own;
  if (target != nullptr || flags != MOVEFILE_DELAY_UNTIL_REBOOT) {
    return succeed(ERROR_NOT_SUPPORTED);
  }
  const std::optional<files::FullPath> full = files::fullPath(path);
  if (!full) {
    return succeed(ERROR_PATH_NOT_FOUND);
  }
  return succeed(machine().registry().state().locked<std::unique_lock<std::shared_mutex>>(
      [&](registry::State& state) { return files::note(state, full->text()); }));
}
