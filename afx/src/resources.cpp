#include <vlafx/resources.h>

#include <algorithm>
#include <mutex>
#include <new>
#include <vector>

#include <vlafx/exceptions.h>

#include "forever.h"

namespace {

struct SearchedModules {
  std::mutex mutex;
  std::vector<HINSTANCE> modules;
};

bool hasString(HINSTANCE module, UINT id) {
  const wchar_t* text = nullptr;
  return LoadStringW(module, id, reinterpret_cast<LPWSTR>(&text), 0) > 0;
}

}  // namespace

HINSTANCE AfxFindStringResourceHandle(UINT id) {
  const HINSTANCE program = GetModuleHandleW(nullptr);
  if (hasString(program, id)) {
    return program;
  }
  auto& [mutex, modules] = vlafx::forever<SearchedModules>();
  const std::lock_guard lock(mutex);
  const auto found = std::find_if(modules.begin(), modules.end(), [id](HINSTANCE m) { return hasString(m, id); });
  return found != modules.end() ? *found : program;
}

void AfxAddResourceModule(HINSTANCE module) {
  auto& [mutex, modules] = vlafx::forever<SearchedModules>();
  const std::lock_guard lock(mutex);
  if (std::find(modules.begin(), modules.end(), module) == modules.end()) {
    try {
      modules.push_back(module);
    } catch (const std::bad_alloc&) {
      AfxThrowMemoryException();
    }
  }
}

void AfxRemoveResourceModule(HINSTANCE module) {
  auto& [mutex, modules] = vlafx::forever<SearchedModules>();
  const std::lock_guard lock(mutex);
  std::erase(modules, module);
}
