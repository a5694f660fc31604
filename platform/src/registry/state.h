/// What is behind the registry's functions: keys, handles, the lock and the named file.
#ifndef VLPLATFORM_SRC_REGISTRY_STATE_H
#define VLPLATFORM_SRC_REGISTRY_STATE_H

#include <mutex>
#include <shared_mutex>

#include <vlplatform/machine/allocations.h>

#include "../gate.h"
#include "keys.h"

namespace vlplatform {

namespace registry {

struct Opened {
  std::shared_ptr<Key> key{};
  REGSAM rights = 0;
  REGSAM view = 0;  ///< KEY_WOW64_..., 0 for none
};

/// Handles are numbers and are looked up, never followed.
class Handles {
 public:
  HKEY add(Opened opened);
  const Opened* find(HKEY handle) const;
  bool remove(HKEY handle);

 private:
  struct Slot {
    Opened opened{};
    std::uintptr_t turn = 0;  // of use of the slot, so that a stale handle is not taken for a new one
  };
  static constexpr unsigned kIndexBits = 24;

  std::size_t indexOf(HKEY handle) const;

  std::vector<Slot> slots_;
  std::vector<std::size_t> free_;
};

/// Generic rights as rights of keys, MAXIMUM_ALLOWED as all that is not denied.
REGSAM keyRights(REGSAM access, REGSAM denied = 0);

}  // namespace registry

struct Registry::State {
  using Key = registry::Key;

  mutable std::shared_mutex mutex;
  bool ready = false;  // the first keys are there, and the named file was loaded if there is one
  registry::Roots roots;
  std::array<registry::Opened, registry::kRoots.size()> rootHandles;
  registry::Handles handles;
  std::string file;  // the named file, empty if there is none
  bool fileBroken = false;
  bool unsaved = false;

  // All of these but locked() are called under the lock.

  /// Back to where nothing is ready.
  void clear();
  void prepare();
  Result apply(std::string_view bytes);
  /// Writes the named file if something changed.
  DWORD saveChanges();
  void changed() { unsaved = true; }

  /// The handle's key, if the handle is open and has `rights` and the key is still there.
  DWORD find(HKEY handle, REGSAM rights, const registry::Opened** opened) const;
  /// Opens a handle on `key` with what `access` asks for.
  DWORD open(Key& key, REGSAM access, REGSAM view, PHKEY result);

  /// Runs `body` with the lock taken by `Lock`.
  template <class Lock, class Body>
  DWORD locked(Body body) {
    for (;;) {
      {
        const Lock lock(mutex);
        if (ready) [[likely]] {
          return fileBroken ? DWORD{ERROR_BADDB} : body(*this);
        }
      }
      const std::unique_lock lock(mutex);
      if (!ready) {
        prepare();
      }
    }
  }
};

namespace registry {

using State = Registry::State;

template <class Lock, class Body>
LSTATUS withLock(const char* function, Body body) {
  DWORD code = gate(function);
  if (code == ERROR_SUCCESS) [[likely]] {
    const OwnAllocations own;
    code = machine().registry().state().locked<Lock>(body);
  }
  return static_cast<LSTATUS>(code);
}

/// The frame of a function that leaves keys, values and handles as they are: others read at the same time.
template <class Body>
LSTATUS reading(const char* function, Body body) {
  return withLock<std::shared_lock<std::shared_mutex>>(function, body);
}

/// The frame of a function that opens a handle.
template <class Body>
LSTATUS opening(const char* function, Body body) {
  return withLock<std::unique_lock<std::shared_mutex>>(function, body);
}

/// The frame of a function that changes keys or values. What it changed before it failed is saved too.
template <class Body>
LSTATUS changing(const char* function, Body body) {
  return opening(function, [&](State& state) {
    const DWORD result = body(state);
    const DWORD saved = state.saveChanges();
    return result != ERROR_SUCCESS ? result : saved;
  });
}

}  // namespace registry
}  // namespace vlplatform

#endif
