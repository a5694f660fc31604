#include <algorithm>
#include <cwchar>

#include "../calendar.h"
#include "../unicode.h"
#include "state.h"

namespace vlplatform::registry {
namespace {

constexpr REGSAM kViews = KEY_WOW64_64KEY | KEY_WOW64_32KEY;

std::uint64_t now() {
  return machine().clock().ticks();
}

std::wstring_view viewOf(LPCWSTR text) {
  return text != nullptr ? std::wstring_view(text) : std::wstring_view();
}

// Where a path leads from an open handle.
struct Way {
  Key* key = nullptr;
  std::wstring_view missing{};
  REGSAM view = 0;
};

DWORD go(const State& state, HKEY from, LPCWSTR path, REGSAM access, Way* way) {
  if ((access & kViews) == kViews) {
    return ERROR_INVALID_PARAMETER;
  }
  const Opened* opened = nullptr;
  const DWORD code = state.find(from, 0, &opened);
  if (code != ERROR_SUCCESS) {
    return code;
  }
  way->missing = viewOf(path);
  if (way->missing.starts_with(L'\\')) {
    return ERROR_BAD_PATHNAME;
  }
  way->view = (access & kViews) != 0 ? access & kViews : opened->view;
  way->key = walk(opened->key.get(), &way->missing, way->view == KEY_WOW64_32KEY);
  return ERROR_SUCCESS;
}

// The same for a key that must be there.
DWORD goToKey(const State& state, HKEY from, LPCWSTR path, REGSAM access, Way* way) {
  const DWORD code = go(state, from, path, access, way);
  return code == ERROR_SUCCESS && !way->missing.empty() ? DWORD{ERROR_FILE_NOT_FOUND} : code;
}

LSTATUS openKey(const char* function, HKEY key, LPCWSTR path, REGSAM access, PHKEY result) {
  return opening(function, [&](State& state) -> DWORD {
    if (result == nullptr) {
      return ERROR_INVALID_PARAMETER;
    }
    *result = nullptr;
    Way way;
    const DWORD code = goToKey(state, key, path, access, &way);
    return code != ERROR_SUCCESS ? code : state.open(*way.key, access, way.view, result);
  });
}

DWORD make(State& state, const Way& way, DWORD options, Key** made) {
  const bool isVolatile = (options & REG_OPTION_VOLATILE) != 0;
  if ((way.key->denied & KEY_CREATE_SUB_KEY) != 0) {
    return ERROR_ACCESS_DENIED;
  }
  if (way.key->isVolatile && !isVolatile) {
    return ERROR_CHILD_MUST_BE_VOLATILE;
  }
  const DWORD code = makeKeys(way.key, way.missing, isVolatile, now(), made);
  if (code == ERROR_SUCCESS) {
    state.changed();
  }
  return code;
}

LSTATUS createKey(const char* function, HKEY key, LPCWSTR path, DWORD reserved, DWORD options, REGSAM access,
                  PHKEY result, LPDWORD disposition) {
  return changing(function, [&](State& state) -> DWORD {
    if (result == nullptr || reserved != 0) {
      return ERROR_INVALID_PARAMETER;
    }
    *result = nullptr;
    Way way;
    DWORD code = go(state, key, path, access, &way);
    const bool exists = way.missing.empty();
    if (code == ERROR_SUCCESS && !exists) {
      code = make(state, way, options, &way.key);
    }
    if (code == ERROR_SUCCESS) {
      code = state.open(*way.key, access, way.view, result);
    }
    if (code == ERROR_SUCCESS && disposition != nullptr) {
      *disposition = exists ? REG_OPENED_EXISTING_KEY : REG_CREATED_NEW_KEY;
    }
    return code;
  });
}

DWORD remove(State& state, Key& key) {
  if (key.permanent || !key.children.empty() || (key.denied & DELETE) != 0) {
    return ERROR_ACCESS_DENIED;
  }
  key.detach(now());
  state.changed();
  return ERROR_SUCCESS;
}

LSTATUS deleteKey(const char* function, HKEY key, LPCWSTR path, REGSAM view, DWORD reserved) {
  return changing(function, [&](State& state) -> DWORD {
    if (path == nullptr || reserved != 0) {
      return ERROR_INVALID_PARAMETER;
    }
    Way way;
    const DWORD code = goToKey(state, key, path, view, &way);
    return code != ERROR_SUCCESS ? code : remove(state, *way.key);
  });
}

// Children first, in their order, up to the first that can't be deleted.
DWORD removeChildren(State& state, Key& key) {
  if ((key.denied & (KEY_ENUMERATE_SUB_KEYS | KEY_QUERY_VALUE)) != 0) {
    return ERROR_ACCESS_DENIED;
  }
  while (!key.children.empty()) {
    Key& child = *key.children.front();
    DWORD code = removeChildren(state, child);
    if (code == ERROR_SUCCESS) {
      code = remove(state, child);
    }
    if (code != ERROR_SUCCESS) {
      return code;
    }
  }
  return ERROR_SUCCESS;
}

}  // namespace
}  // namespace vlplatform::registry

using namespace vlplatform;
using namespace vlplatform::registry;

LSTATUS RegOpenKeyExW(HKEY key, LPCWSTR path, DWORD /*options*/, REGSAM access, PHKEY result) {
  return openKey("RegOpenKeyExW", key, path, access, result);
}

LSTATUS RegOpenKeyExA(HKEY key, LPCSTR path, DWORD /*options*/, REGSAM access, PHKEY result) {
  const OwnAllocations own;
  return openKey("RegOpenKeyExA", key, wideOrEmpty(path).c_str(), access, result);
}

LSTATUS RegOpenKeyW(HKEY key, LPCWSTR path, PHKEY result) {
  return openKey("RegOpenKeyW", key, path, MAXIMUM_ALLOWED, result);
}

LSTATUS RegCreateKeyExW(HKEY key, LPCWSTR path, DWORD reserved, LPWSTR /*className*/, DWORD options, REGSAM access,
                        const SECURITY_ATTRIBUTES* /*security*/, PHKEY result, LPDWORD disposition) {
  return createKey("RegCreateKeyExW", key, path, reserved, options, access, result, disposition);
}

// A planned fault shows in the result, but the handle goes: nobody can do more about a release than call it once.
LSTATUS RegCloseKey(HKEY key) {
  const DWORD planned = gate("RegCloseKey");
  const OwnAllocations own;
  State& state = machine().registry().state();
  const std::unique_lock lock(state.mutex);
  const bool closed = state.handles.remove(key) ||
                      std::any_of(kRoots.begin(), kRoots.end(), [&](const RootName& root) { return root.key == key; });
  const DWORD code = closed ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
  return static_cast<LSTATUS>(planned != ERROR_SUCCESS ? planned : code);
}

LSTATUS RegDeleteKeyW(HKEY key, LPCWSTR path) {
  return deleteKey("RegDeleteKeyW", key, path, 0, 0);
}

LSTATUS RegDeleteKeyExW(HKEY key, LPCWSTR path, REGSAM access, DWORD reserved) {
  return deleteKey("RegDeleteKeyExW", key, path, access & kViews, reserved);
}

LSTATUS RegDeleteTreeW(HKEY key, LPCWSTR path) {
  return changing("RegDeleteTreeW", [&](State& state) -> DWORD {
    const bool whole = !viewOf(path).empty();
    constexpr REGSAM kNeeded = KEY_ENUMERATE_SUB_KEYS | KEY_QUERY_VALUE | KEY_SET_VALUE;
    Way way;
    DWORD code = goToKey(state, key, path, 0, &way);
    const Opened* opened = nullptr;
    if (code == ERROR_SUCCESS && !whole) {
      code = state.find(key, kNeeded, &opened);
    }
    if (code == ERROR_SUCCESS) {
      code = removeChildren(state, *way.key);
    }
    if (code != ERROR_SUCCESS) {
      return code;
    }
    if (whole) {
      return remove(state, *way.key);
    }
    way.key->values.clear();
    way.key->lastWrite = now();
    state.changed();
    return ERROR_SUCCESS;
  });
}

// NOLINTNEXTLINE(readability-non-const-parameter): the platform's signature
LSTATUS RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, LPDWORD nameChars, LPDWORD reserved, LPWSTR className,
                      LPDWORD classChars, FILETIME* lastWrite) {
  return reading("RegEnumKeyExW", [&](const State& state) -> DWORD {
    if (name == nullptr || nameChars == nullptr || reserved != nullptr ||
        (className != nullptr && (classChars == nullptr || *classChars == 0))) {
      return ERROR_INVALID_PARAMETER;
    }
    const Opened* opened = nullptr;
    const DWORD code = state.find(key, KEY_ENUMERATE_SUB_KEYS, &opened);
    if (code != ERROR_SUCCESS) {
      return code;
    }
    if (index >= opened->key->children.size()) {
      return ERROR_NO_MORE_ITEMS;
    }
    const Key& child = *opened->key->children[index];
    if (child.name.size() >= *nameChars) {
      return ERROR_MORE_DATA;
    }
    std::wmemcpy(name, child.name.c_str(), child.name.size() + 1);
    *nameChars = static_cast<DWORD>(child.name.size());
    if (className != nullptr) {
      *className = L'\0';
    }
    if (classChars != nullptr) {
      *classChars = 0;
    }
    if (lastWrite != nullptr) {
      *lastWrite = fileTimeOf(static_cast<std::int64_t>(child.lastWrite));
    }
    return ERROR_SUCCESS;
  });
}
