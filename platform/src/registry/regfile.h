/// Registry text (.reg): what it says, and how a registry is written.
#ifndef VLPLATFORM_SRC_REGISTRY_REGFILE_H
#define VLPLATFORM_SRC_REGISTRY_REGFILE_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <vlplatform/machine/registry.h>

#include "keys.h"

namespace vlplatform::registry {

struct ValueChange {
  std::wstring name;
  std::optional<Value> value;  ///< none: the value goes
};

/// What stands below one line in brackets.
struct KeyChange {
  unsigned line;
  bool removed;
  std::size_t root;   ///< index in kRoots
  std::wstring path;  ///< below the root; every name in it is one, and they are not too many
  std::vector<ValueChange> values{};
};

struct Reading {
  Registry::Result result{};
  std::vector<KeyChange> changes{};
};

Reading readRegistryText(std::string_view bytes);
std::string writeRegistryText(const Roots& roots);

/// The comment before a value of a text type whose bytes stand as they are, 4 to a character.
inline constexpr std::wstring_view kWideTextComment = L";vlplatform: text of 4 bytes a character";

constexpr bool isTextType(DWORD type) {
  return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}

/// Text in memory as the bytes of UTF-16LE; none if those could not be told back.
std::optional<std::vector<BYTE>> toUtf16(const std::vector<BYTE>& wideText);
/// The other way round. Lone surrogates become characters of that number, and a byte behind the last character stays.
std::vector<BYTE> fromUtf16(const std::vector<BYTE>& bytes);

}  // namespace vlplatform::registry

#endif
