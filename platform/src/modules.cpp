#include <vlplatform/machine/modules.h>

#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <mutex>
#include <string>
#include <vector>

#include <vlplatform/lsa.h>
#include <vlplatform/msi.h>
#include <vlplatform/network.h>
#include <vlplatform/registry.h>
#include <vlplatform/time.h>
#include <vlplatform/version.h>

#include "gate.h"
#include "unicode.h"

// A module handle points to its record.
struct HINSTANCE__ {
  explicit HINSTANCE__(std::wstring_view moduleName) : name(moduleName) {}

  std::wstring name;
  std::vector<vlplatform::Modules::EntryPoint> entryPoints;
  enum class Kind { none, table, sibling, removed };
  std::atomic<Kind> kind{Kind::none};
  void* library = nullptr;  // a sibling's, of dlopen
  std::atomic<long> references{0};

  // In every process, whoever holds a reference.
  bool resident() const {
    return kind == Kind::table &&
           (vlplatform::sameName(name, L"kernel32.dll") || vlplatform::sameName(name, L"ntdll.dll"));
  }
};

namespace vlplatform {
namespace {

template <class Function>
FARPROC entry(Function* function) {
  return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function));
}

std::string folderOfProgram() {
  std::array<char, 4096> path{};
  const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
  const std::string_view view(path.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
  return std::string(view.substr(0, view.rfind('/') + 1));
}

// "tx.some.dll" is the file libtx.some.so; only plain names are looked up, never paths.
void* openSibling(std::wstring_view name) {
  constexpr std::wstring_view kEnding = L".dll";
  if (name.size() <= kEnding.size() || !sameName(name.substr(name.size() - kEnding.size()), kEnding) ||
      name.find_first_of(L"/\\") != std::wstring_view::npos) {
    return nullptr;
  }
  const std::string file = "lib" + toUtf8(name.substr(0, name.size() - kEnding.size())) + ".so";
  if (void* const beside = dlopen((folderOfProgram() + file).c_str(), RTLD_NOW | RTLD_LOCAL)) {
    return beside;
  }
  return dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
}

}  // namespace

// Records are only ever added and never destroyed: modules of the table are found without a lock, and a stale handle
// is refused and not followed. The mutex is for changes, and for siblings, which come and go.
struct Modules::State {
  static constexpr std::size_t kMostModules = 256;

  std::mutex mutex;
  std::array<std::atomic<HINSTANCE__*>, kMostModules> modules{};
  std::atomic<std::size_t> count{0};

  template <class Predicate>
  HINSTANCE__* findIf(Predicate predicate) const {
    const std::size_t known = count.load(std::memory_order_acquire);
    for (std::size_t i = 0; i < known; ++i) {
      HINSTANCE__* const module = modules[i].load(std::memory_order_relaxed);
      if (predicate(*module)) {
        return module;
      }
    }
    return nullptr;
  }
  HINSTANCE__* byName(std::wstring_view name) const {
    return findIf([&](const HINSTANCE__& module) { return sameName(module.name, name); });
  }
  HINSTANCE__* byHandle(HMODULE handle) const {
    return findIf([&](const HINSTANCE__& module) {
      return &module == handle && (module.references.load(std::memory_order_relaxed) > 0 || module.resident());
    });
  }
  // Under the mutex. Null if the table is full.
  HINSTANCE__* record(std::wstring_view name) {
    HINSTANCE__* module = byName(name);
    const std::size_t index = count.load(std::memory_order_relaxed);
    if (module == nullptr && index < kMostModules) {
      module = new HINSTANCE__(name);
      modules[index].store(module, std::memory_order_relaxed);
      count.store(index + 1, std::memory_order_release);
    }
    return module;
  }
};

Modules::Modules() : state_(std::make_unique<State>()) {
  reset();
}
Modules::~Modules() = default;

void Modules::reset() {
  {
    const std::lock_guard lock(state_->mutex);
    state_->findIf([](HINSTANCE__& module) {
      module.entryPoints.clear();
      module.kind = module.library != nullptr ? HINSTANCE__::Kind::sibling : HINSTANCE__::Kind::none;
      return false;
    });
  }
  // Of the registry's functions, as on the platform, without the names that lack the width letter.
  add(L"advapi32.dll", {{"LsaLookupNames2", entry(&::LsaLookupNames2)},
                        {"RegDeleteKeyExW", entry(&::RegDeleteKeyExW)},
                        {"RegDeleteTreeW", entry(&::RegDeleteTreeW)}});
  add(L"kernel32.dll", {{"TzSpecificLocalTimeToSystemTime", entry(&::TzSpecificLocalTimeToSystemTime)},
                        {"VerifyVersionInfoA", entry(&::VerifyVersionInfoA)}});
  add(L"msi.dll", {{"MsiGetPropertyW", entry(&::MsiGetPropertyW)}, {"MsiSetPropertyW", entry(&::MsiSetPropertyW)}});
  add(L"ntdll.dll", {{"VerSetConditionMask", entry(&::VerSetConditionMask)}});
  add(L"secur32.dll", {
                          {"TranslateNameW", entry(&::TranslateNameW)},
                          {"TranslateNameA", entry(&::TranslateNameA)},
                      });
}

void Modules::add(std::wstring_view module, std::initializer_list<EntryPoint> entryPoints) {
  const std::lock_guard lock(state_->mutex);
  if (HINSTANCE__* const record = state_->record(module)) {
    record->entryPoints = entryPoints;
    record->kind = HINSTANCE__::Kind::table;
  }
}

void Modules::remove(std::wstring_view module) {
  const std::lock_guard lock(state_->mutex);
  if (HINSTANCE__* const record = state_->record(module)) {
    record->kind = HINSTANCE__::Kind::removed;
  }
}

void Modules::addEntryPoint(std::wstring_view module, const char* entryPoint, FARPROC address) {
  removeEntryPoint(module, entryPoint);
  const std::lock_guard lock(state_->mutex);
  HINSTANCE__* const record = state_->byName(module);
  if (record != nullptr && record->kind == HINSTANCE__::Kind::table) {
    record->entryPoints.emplace_back(entryPoint, address);
  }
}

void Modules::removeEntryPoint(std::wstring_view module, std::string_view entryPoint) {
  const std::lock_guard lock(state_->mutex);
  if (HINSTANCE__* const record = state_->byName(module)) {
    std::erase_if(record->entryPoints, [&](const EntryPoint& known) { return known.first == entryPoint; });
  }
}

long Modules::references(std::wstring_view module) const {
  const HINSTANCE__* const record = state_->byName(module);
  return record != nullptr ? record->references.load() : 0;
}

HMODULE Modules::program() {
  static HINSTANCE__* const record = [] {
    const OwnAllocations own;
    return new HINSTANCE__({});
  }();
  return record;
}

HMODULE Modules::handle(std::wstring_view name) const {
  HINSTANCE__* const record = state_->byName(name);
  const bool known = record != nullptr && (record->kind == HINSTANCE__::Kind::table ||
                                           (record->kind == HINSTANCE__::Kind::sibling && record->references > 0));
  return known ? record : nullptr;
}

DWORD Modules::load(std::wstring_view name, HMODULE* module) {
  using Kind = HINSTANCE__::Kind;
  const auto take = [&](HINSTANCE__& record) {
    record.references.fetch_add(1, std::memory_order_relaxed);
    machine().counters().opened(Resource::moduleReference);
    *module = &record;
    return ERROR_SUCCESS;
  };
  HINSTANCE__* record = state_->byName(name);
  if (record != nullptr && record->kind == Kind::table) {
    return take(*record);
  }
  const std::lock_guard lock(state_->mutex);
  record = state_->byName(name);
  if (record == nullptr || record->kind == Kind::none) {
    void* const library = openSibling(name);
    record = library != nullptr ? state_->record(name) : nullptr;
    if (record == nullptr) {
      return ERROR_MOD_NOT_FOUND;
    }
    record->library = library;
    record->kind = Kind::sibling;
  }
  return record->kind == Kind::removed ? ERROR_MOD_NOT_FOUND : take(*record);
}

DWORD Modules::find(HMODULE module, std::string_view entryPoint, FARPROC* address) {
  const HINSTANCE__* const record = state_->byHandle(module);
  if (record == nullptr) {
    return ERROR_MOD_NOT_FOUND;
  }
  for (const EntryPoint& known : record->entryPoints) {
    if (known.first == entryPoint) {
      *address = known.second;
      return ERROR_SUCCESS;
    }
  }
  // The caller's reference keeps the library open.
  void* const symbol = record->library != nullptr ? dlsym(record->library, std::string(entryPoint).c_str()) : nullptr;
  *address = reinterpret_cast<FARPROC>(symbol);
  return symbol != nullptr ? ERROR_SUCCESS : ERROR_PROC_NOT_FOUND;
}

DWORD Modules::free(HMODULE module) {
  HINSTANCE__* const record = state_->byHandle(module);
  if (record == nullptr || record->references <= 0) {
    return ERROR_MOD_NOT_FOUND;
  }
  machine().counters().closed(Resource::moduleReference);
  if (record->kind == HINSTANCE__::Kind::table) {
    record->references.fetch_sub(1, std::memory_order_relaxed);
    return ERROR_SUCCESS;
  }
  const std::lock_guard lock(state_->mutex);
  if (record->references.fetch_sub(1, std::memory_order_relaxed) == 1 && record->library != nullptr) {
    dlclose(record->library);
    record->library = nullptr;
    if (record->kind == HINSTANCE__::Kind::sibling) {
      record->kind = HINSTANCE__::Kind::none;
    }
  }
  return ERROR_SUCCESS;
}

}  // namespace vlplatform

HMODULE LoadLibraryW(LPCWSTR name) {
  if (vlplatform::gateFails("LoadLibraryW")) {
    return nullptr;
  }
  if (name == nullptr) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return nullptr;
  }
  const vlplatform::OwnAllocations own;
  HMODULE module = nullptr;
  return vlplatform::succeed(vlplatform::machine().modules().load(name, &module)) ? module : nullptr;
}

FARPROC GetProcAddress(HMODULE module, LPCSTR name) {
  if (vlplatform::gateFails("GetProcAddress")) {
    return nullptr;
  }
  const vlplatform::OwnAllocations own;
  FARPROC address = nullptr;
  return vlplatform::succeed(vlplatform::machine().modules().find(module, name, &address)) ? address : nullptr;
}

// A planned fault shows in the result and the last-error value, but the reference goes: nobody can do more about a
// release than call it once.
BOOL FreeLibrary(HMODULE module) {
  const DWORD planned = vlplatform::gate("FreeLibrary");
  const DWORD code = module == nullptr ? ERROR_INVALID_HANDLE : vlplatform::machine().modules().free(module);
  return vlplatform::succeed(planned != ERROR_SUCCESS ? planned : code);
}

HMODULE GetModuleHandleW(LPCWSTR name) {
  if (vlplatform::gateFails("GetModuleHandleW")) {
    return nullptr;
  }
  if (name == nullptr) {
    return vlplatform::Modules::program();
  }
  const HMODULE module = vlplatform::machine().modules().handle(name);
  if (module == nullptr) {
    SetLastError(ERROR_MOD_NOT_FOUND);
  }
  return module;
}
