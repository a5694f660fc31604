#include "registrykey.h"

#include <algorithm>
#include <cstddef>

#include "results.h"
#include "text.h"

namespace {

struct Root {
  std::string_view shortName;
  std::string_view longName;
  HKEY key;
};

// Handles are no constants on any target.
const Root kRoots[] = {{"HKLM", "HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},
                       {"HKCU", "HKEY_CURRENT_USER", HKEY_CURRENT_USER},
                       {"HKCR", "HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT},
                       {"HKU", "HKEY_USERS", HKEY_USERS},
                       {"HKCC", "HKEY_CURRENT_CONFIG", HKEY_CURRENT_CONFIG}};

char upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool sameName(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return upper(a) == upper(b); });
}

// Counts, makes room and lists. An element more than were counted is offered: if it is filled too, the key has grown
// in between, and all begins anew. An element may take several slots.
template <class Slot, class List>
int listAll(std::vector<Slot>* slots, std::size_t slotsEach, const Slot& blank, List list) {
  constexpr int kMostTries = 10;
  for (int tries = 0; tries < kMostTries; ++tries) {
    int count = 0;
    int result = list(nullptr, &count);
    if (result != 0) {
      return result;
    }
    const int room = count + 1;
    slots->assign(static_cast<std::size_t>(room) * slotsEach, blank);
    count = room;
    result = list(slots->data(), &count);
    if (result != 0) {
      return result;
    }
    if (count < room) {
      slots->resize(static_cast<std::size_t>(count) * slotsEach);
      return result;
    }
  }
  return kRegistryTooSmall;
}

}  // namespace

std::optional<RegistryKey> registryKeyFromText(std::string_view text, DWORD section) {
  const std::size_t end = std::min(text.find('\\'), text.size());
  const std::string_view name = text.substr(0, end);
  const auto* const root = std::find_if(std::begin(kRoots), std::end(kRoots), [&](const Root& known) {
    return sameName(name, known.shortName) || sameName(name, known.longName);
  });
  if (root == std::end(kRoots)) {
    return std::nullopt;
  }
  return RegistryKey{root->key, toWide(text.substr(std::min(end + 1, text.size()))), section};
}

ValueList valuesOf(const RegistryKey& key, std::optional<DWORD> type) {
  constexpr DWORD kAllTypes = 0xFFFFFFFF;
  // An element of another type stays as it is, and the unnamed value has an empty name: only the type tells them apart.
  constexpr RegValueEntry kUntouched{{}, kAllTypes};
  ValueList list{};
  list.result = listAll(&list.entries, 1, kUntouched, [&](RegValueEntry* entries, int* count) {
    return vlRegListValueNamesEx(key.root, key.path.c_str(), entries, count, type.value_or(kAllTypes), key.section);
  });
  if (type) {
    std::erase_if(list.entries, [](const RegValueEntry& entry) { return entry.dwType == kAllTypes; });
  }
  return list;
}

SubkeyList subkeysOf(const RegistryKey& key) {
  constexpr std::size_t kSlot = 255;
  std::vector<WCHAR> slots;
  SubkeyList list{};
  list.result = listAll(&slots, kSlot, WCHAR{}, [&](WCHAR* names, int* count) {
    return vlRegListKeysEx(key.root, key.path.c_str(), names, count, key.section);
  });
  if (list.result == 0) {
    for (std::size_t slot = 0; slot < slots.size(); slot += kSlot) {
      list.names.emplace_back(&slots[slot]);
    }
  }
  return list;
}
