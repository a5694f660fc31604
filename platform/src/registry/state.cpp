#include "state.h"

#include <cstdio>
#include <cstdlib>

#include "regfile.h"
#include "safefile.h"

namespace vlplatform {
namespace registry {

HKEY Handles::add(Opened opened) {
  if (free_.empty()) {
    free_.push_back(slots_.size());
    slots_.emplace_back();
  }
  const std::size_t index = free_.back();
  free_.pop_back();
  Slot& slot = slots_[index];
  slot.opened = std::move(opened);
  machine().counters().opened(Resource::registryKey);
  // A multiple of four, as the platform's handles, and never null.
  return reinterpret_cast<HKEY>((slot.turn << kIndexBits | (index + 1)) << 2);
}

std::size_t Handles::indexOf(HKEY handle) const {
  const auto number = reinterpret_cast<std::uintptr_t>(handle);
  const std::size_t index = (number >> 2 & ((std::uintptr_t{1} << kIndexBits) - 1)) - 1;
  const bool open = number % 4 == 0 && index < slots_.size() && slots_[index].opened.key != nullptr &&
                    slots_[index].turn == number >> (kIndexBits + 2);
  return open ? index : slots_.size();
}

const Opened* Handles::find(HKEY handle) const {
  const std::size_t index = indexOf(handle);
  return index < slots_.size() ? &slots_[index].opened : nullptr;
}

bool Handles::remove(HKEY handle) {
  const std::size_t index = indexOf(handle);
  if (index == slots_.size()) {
    return false;
  }
  slots_[index].opened = {};
  ++slots_[index].turn;
  free_.push_back(index);
  machine().counters().closed(Resource::registryKey);
  return true;
}

REGSAM keyRights(REGSAM access, REGSAM denied) {
  REGSAM rights = access & KEY_ALL_ACCESS;
  rights |= (access & GENERIC_READ) != 0 ? KEY_READ : 0;
  rights |= (access & GENERIC_WRITE) != 0 ? KEY_WRITE : 0;
  rights |= (access & GENERIC_EXECUTE) != 0 ? KEY_EXECUTE : 0;
  rights |= (access & GENERIC_ALL) != 0 ? KEY_ALL_ACCESS : 0;
  rights |= (access & MAXIMUM_ALLOWED) != 0 ? KEY_ALL_ACCESS & ~denied : 0;
  return rights;
}

}  // namespace registry

using namespace registry;

void Registry::State::clear() {
  if (ready) {
    for (const std::shared_ptr<Key>& root : roots) {
      root->markDeleted();
    }
  }
  ready = false;
  file.clear();
  fileBroken = false;
  unsaved = false;
}

void Registry::State::prepare() {
  roots = firstKeys(machine().clock().ticks());
  for (std::size_t i = 0; i < roots.size(); ++i) {
    rootHandles[i] = {roots[i], KEY_ALL_ACCESS, 0};
  }
  ready = true;
  const char* const name = std::getenv("VLPLATFORM_REGISTRY");
  if (name == nullptr || *name == '\0') {
    return;
  }
  file = name;
  Result result;
  const std::optional<std::string> bytes = readFile(file, &result.message);
  if (bytes) {
    result = apply(*bytes);
    unsaved = false;
  }
  if (!result.ok()) {
    fileBroken = true;
    static_cast<void>(std::fprintf(stderr, "vlplatform: %s:%u: %s; registry calls fail until it is put right\n", name,
                                   result.line, result.message.c_str()));
  }
}

Registry::Result Registry::State::apply(std::string_view bytes) {
  const Reading reading = readRegistryText(bytes);
  if (!reading.result.ok()) {
    return reading.result;
  }
  // Whatever the changes do, what is permanent stays: so it can be asked before the first of them.
  for (const KeyChange& change : reading.changes) {
    std::wstring_view path = change.path;
    if (change.removed && walk(roots[change.root].get(), &path, false)->holdsPermanent() && path.empty()) {
      return {"the key can't be deleted", change.line};
    }
  }
  const std::uint64_t now = machine().clock().ticks();
  for (const KeyChange& change : reading.changes) {
    std::wstring_view path = change.path;
    Key* key = walk(roots[change.root].get(), &path, false);
    if (change.removed) {
      if (path.empty()) {
        key->detach(now);
      }
      continue;
    }
    makeKeys(key, path, key->isVolatile, now, &key);
    for (const ValueChange& value : change.values) {
      if (value.value) {
        key->setValue(value.name, value.value->type, value.value->data.data(), value.value->data.size(), now);
      } else {
        key->removeValue(value.name, now);
      }
    }
  }
  changed();
  return {};
}

DWORD Registry::State::saveChanges() {
  if (!unsaved || file.empty()) {
    return ERROR_SUCCESS;
  }
  const std::string error = replaceFile(file, writeRegistryText(roots));
  if (!error.empty()) {
    static_cast<void>(std::fprintf(stderr, "vlplatform: %s: %s\n", file.c_str(), error.c_str()));
    return ERROR_REGISTRY_IO_FAILED;
  }
  unsaved = false;
  return ERROR_SUCCESS;
}

DWORD Registry::State::find(HKEY handle, REGSAM rights, const Opened** opened) const {
  *opened = handles.find(handle);
  for (std::size_t i = 0; *opened == nullptr && i < kRoots.size(); ++i) {
    *opened = kRoots[i].key == handle ? &rootHandles[i] : nullptr;
  }
  if (*opened == nullptr) {
    return ERROR_INVALID_HANDLE;
  }
  if ((*opened)->key->deleted) {
    return ERROR_KEY_DELETED;
  }
  return (rights & ~(*opened)->rights) == 0 ? ERROR_SUCCESS : ERROR_ACCESS_DENIED;
}

DWORD Registry::State::open(Key& key, REGSAM access, REGSAM view, PHKEY result) {
  const REGSAM rights = keyRights(access, key.denied);
  if ((rights & key.denied) != 0) {
    return ERROR_ACCESS_DENIED;
  }
  *result = handles.add({key.shared_from_this(), rights, view});
  return ERROR_SUCCESS;
}

Registry::Registry() : state_(std::make_unique<State>()) {}
Registry::~Registry() = default;

void Registry::reset() {
  const OwnAllocations own;
  const std::unique_lock lock(state_->mutex);
  state_->clear();
}

Registry::Result Registry::load(const std::string& path) {
  const OwnAllocations own;
  Result result;
  const std::optional<std::string> bytes = readFile(path, &result.message);
  if (bytes) {
    return loadText(*bytes);
  }
  if (result.ok()) {
    result.message = "there is no such file";
  }
  return result;
}

Registry::Result Registry::loadText(std::string_view bytes) {
  const OwnAllocations own;
  Result result;
  const DWORD code = state_->locked<std::unique_lock<std::shared_mutex>>([&](State& state) {
    result = state.apply(bytes);
    return state.saveChanges();
  });
  if (result.ok() && code != ERROR_SUCCESS) {
    result.message = code == ERROR_BADDB ? "the file that VLPLATFORM_REGISTRY names is broken"
                                         : "the file that VLPLATFORM_REGISTRY names can't be saved";
  }
  return result;
}

std::string Registry::text() const {
  const OwnAllocations own;
  std::string bytes;
  state_->locked<std::shared_lock<std::shared_mutex>>([&](const State& state) {
    bytes = writeRegistryText(state.roots);
    return DWORD{ERROR_SUCCESS};
  });
  return bytes;
}

Registry::Result Registry::save(const std::string& path) const {
  const OwnAllocations own;
  const std::string bytes = text();
  return {bytes.empty() ? "the file that VLPLATFORM_REGISTRY names is broken" : replaceFile(path, bytes)};
}

DWORD Registry::deny(HKEY root, std::wstring_view path, REGSAM rights) {
  const OwnAllocations own;
  return state_->locked<std::unique_lock<std::shared_mutex>>([&](State& state) -> DWORD {
    const Opened* opened = nullptr;
    const DWORD code = state.find(root, 0, &opened);
    if (code != ERROR_SUCCESS) {
      return code;
    }
    Key* const key = walk(opened->key.get(), &path, false);
    if (!path.empty()) {
      return ERROR_FILE_NOT_FOUND;
    }
    key->denied = keyRights(rights);
    return ERROR_SUCCESS;
  });
}

}  // namespace vlplatform
