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

// The program, then the added modules; the program if none has the resource.
template <class HasResource>
HINSTANCE findModule(HasResource hasResource) {
  const HINSTANCE program = GetModuleHandleW(nullptr);
  if (hasResource(program)) {
    return program;
  }
  auto& [mutex, modules] = vlafx::forever<SearchedModules>();
  const std::lock_guard lock(mutex);
  const auto found = std::find_if(modules.begin(), modules.end(), hasResource);
  return found != modules.end() ? *found : program;
}

}  // namespace

HINSTANCE AfxFindStringResourceHandle(UINT id) {
  return findModule([id](HINSTANCE module) { return hasString(module, id); });
}

HINSTANCE AfxFindDialogResourceHandle(const wchar_t* templateName) {
  return findModule([=](HINSTANCE module) { return FindResourceW(module, templateName, RT_DIALOG) != nullptr; });
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
