/// Registry keys as the command line names them, and lists of what is in them.
#ifndef HOSTKIT_REGISTRYKEY_H
#define HOSTKIT_REGISTRYKEY_H

#include <vlhostkit/registry.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A path below a root, in the view that `section` tells: 0, 0x100 or 0x200, as the library takes it.
struct RegistryKey {
  HKEY root;
  std::wstring path;
  DWORD section = 0;

  /// Whether the path leads nowhere but to the root itself.
  bool isRoot() const { return path.find_first_not_of(L'\\') == std::wstring::npos; }
};

/// None for text that does not begin with a root's long or short name, alone or with a backslash behind it.
std::optional<RegistryKey> registryKeyFromText(std::string_view text, DWORD section);

struct ValueList {
  int result;
  std::vector<RegValueEntry> entries;
};
struct SubkeyList {
  int result;
  std::vector<std::wstring> names;
};

/// All values, or those of one type.
ValueList valuesOf(const RegistryKey& key, std::optional<DWORD> type);
SubkeyList subkeysOf(const RegistryKey& key);

#endif
