#include "keys.h"

#include <algorithm>

#include <vlplatform/utf8.h>

#include "../unicode.h"

namespace vlplatform::registry {
namespace {

constexpr std::wstring_view k32BitKeys = L"Wow6432Node";

bool isText(std::wstring_view name) {
  return std::all_of(name.begin(), name.end(),
                     [](wchar_t c) { return c != L'\0' && utf8::isScalar(static_cast<char32_t>(c)); });
}

}  // namespace

bool isKeyName(std::wstring_view name) {
  return !name.empty() && name.size() <= kLongestKeyName && isText(name) &&
         name.find_first_of(L"\\\r\n") == std::wstring_view::npos;
}

bool isValueName(std::wstring_view name) {
  return name.size() <= kLongestValueName && isText(name);
}

std::vector<std::shared_ptr<Key>>::const_iterator Key::place(std::wstring_view childName) const {
  return std::lower_bound(
      children.begin(), children.end(), childName,
      [](const std::shared_ptr<Key>& key, std::wstring_view wanted) { return compareNames(key->name, wanted) < 0; });
}

Key* Key::child(std::wstring_view childName) const {
  const auto found = place(childName);
  return found != children.end() && sameName((*found)->name, childName) ? found->get() : nullptr;
}

Key& Key::addChild(std::wstring_view childName, bool isVolatileKey, std::uint64_t now) {
  lastWrite = now;
  return **children.insert(place(childName), std::make_shared<Key>(*this, childName, isVolatileKey, now));
}

void Key::detach(std::uint64_t now) {
  Key* const from = parent;
  markDeleted();
  from->lastWrite = now;
  from->children.erase(from->place(name));  // this key may end here
}

const Value* Key::value(std::wstring_view valueName) const {
  const auto found =
      std::find_if(values.begin(), values.end(), [&](const Value& known) { return sameName(known.name, valueName); });
  return found != values.end() ? &*found : nullptr;
}

void Key::setValue(std::wstring_view valueName, DWORD type, const BYTE* data, std::size_t size, std::uint64_t now) {
  lastWrite = now;
  if (auto* const known = const_cast<Value*>(value(valueName))) {
    known->type = type;
    known->data.assign(data, data + size);
  } else {
    values.push_back({std::wstring(valueName), type, std::vector<BYTE>(data, data + size)});
  }
}

bool Key::removeValue(std::wstring_view valueName, std::uint64_t now) {
  const Value* const known = value(valueName);
  if (known != nullptr) {
    values.erase(values.begin() + (known - values.data()));
    lastWrite = now;
  }
  return known != nullptr;
}

bool Key::holdsPermanent() const {
  return permanent || std::any_of(children.begin(), children.end(),
                                  [](const std::shared_ptr<Key>& key) { return key->holdsPermanent(); });
}

void Key::markDeleted() {
  deleted = true;
  parent = nullptr;
  for (const std::shared_ptr<Key>& key : children) {
    key->markDeleted();
  }
}

std::wstring_view takeName(std::wstring_view* path) {
  path->remove_prefix(std::min(path->find_first_not_of(L'\\'), path->size()));
  const std::wstring_view name = path->substr(0, path->find(L'\\'));
  path->remove_prefix(name.size());
  return name;
}

Key* walk(Key* from, std::wstring_view* path, bool in32BitView) {
  for (;;) {
    std::wstring_view rest = *path;
    const std::wstring_view name = takeName(&rest);
    if (in32BitView && from->hasViews && !sameName(name, k32BitKeys)) {
      from = from->child(k32BitKeys);
    }
    Key* const next = name.empty() ? nullptr : from->child(name);
    if (next == nullptr) {
      *path = name.empty() ? std::wstring_view() : *path;
      return from;
    }
    from = next;
    *path = rest;
  }
}

DWORD makeKeys(Key* at, std::wstring_view path, bool isVolatile, std::uint64_t now, Key** made) {
  unsigned depth = at->depth;
  std::wstring_view rest = path;
  for (std::wstring_view name = takeName(&rest); !name.empty(); name = takeName(&rest)) {
    if (!isKeyName(name) || ++depth > kMostKeysOfPath) {
      return ERROR_INVALID_PARAMETER;
    }
  }
  for (std::wstring_view name = takeName(&path); !name.empty(); name = takeName(&path)) {
    at = &at->addChild(name, isVolatile, now);
  }
  *made = at;
  return ERROR_SUCCESS;
}

Roots firstKeys(std::uint64_t now) {
  Roots roots;
  const auto add = [now](Key& parent, std::wstring_view name) -> Key& {
    Key& key = parent.addChild(name, false, now);
    key.permanent = true;
    return key;
  };
  for (std::size_t i = 0; i < roots.size(); ++i) {
    roots[i] = std::make_shared<Key>();
    roots[i]->permanent = true;
    roots[i]->lastWrite = now;
    if (kRoots[i].key == HKEY_LOCAL_MACHINE) {
      Key& software = add(*roots[i], L"SOFTWARE");
      software.hasViews = true;
      add(software, k32BitKeys);
      add(*roots[i], L"SYSTEM");
    } else if (kRoots[i].key == HKEY_CURRENT_USER) {
      add(*roots[i], L"Software");
    }
  }
  return roots;
}

}  // namespace vlplatform::registry
