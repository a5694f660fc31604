/// The tree of keys and values, without locks and rights of handles.
#ifndef VLPLATFORM_SRC_REGISTRY_KEYS_H
#define VLPLATFORM_SRC_REGISTRY_KEYS_H

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <vlplatform/errors.h>
#include <vlplatform/registry.h>

namespace vlplatform::registry {

inline constexpr std::size_t kLongestKeyName = 255;
inline constexpr std::size_t kLongestValueName = 16383;
inline constexpr unsigned kMostKeysOfPath = 512;

bool isKeyName(std::wstring_view name);
bool isValueName(std::wstring_view name);

struct Value {
  std::wstring name;
  DWORD type;
  std::vector<BYTE> data;
};

/// A handle may outlive the key's place in the tree: then it is `deleted`, and has no parent.
class Key : public std::enable_shared_from_this<Key> {
 public:
  Key() = default;  ///< a root
  Key(Key& parentKey, std::wstring_view keyName, bool isVolatileKey, std::uint64_t now)
      : name(keyName), parent(&parentKey), depth(parentKey.depth + 1), isVolatile(isVolatileKey), lastWrite(now) {}

  Key* child(std::wstring_view childName) const;
  /// A new child, whose name must not be there.
  Key& addChild(std::wstring_view childName, bool isVolatileKey, std::uint64_t now);
  /// Takes the key, with all that lies below it, out of the tree.
  void detach(std::uint64_t now);

  const Value* value(std::wstring_view valueName) const;
  void setValue(std::wstring_view valueName, DWORD type, const BYTE* data, std::size_t size, std::uint64_t now);
  bool removeValue(std::wstring_view valueName, std::uint64_t now);

  /// Whether this key or one below it is permanent.
  bool holdsPermanent() const;
  void markDeleted();

  std::wstring name;
  std::vector<std::shared_ptr<Key>> children;  ///< by name
  std::vector<Value> values;                   ///< as they came
  Key* parent = nullptr;
  unsigned depth = 0;  ///< of a root 0
  bool isVolatile = false;
  bool permanent = false;  ///< can't be deleted
  bool hasViews = false;   ///< its child Wow6432Node is what the 32-bit view shows in its place
  bool deleted = false;
  REGSAM denied = 0;
  std::uint64_t lastWrite = 0;  ///< in ticks of the machine's clock

 private:
  std::vector<std::shared_ptr<Key>>::const_iterator place(std::wstring_view childName) const;
};

/// The name at the front of `*path`, which is moved behind it; empty at the end.
std::wstring_view takeName(std::wstring_view* path);

/// Goes along `*path` as far as there are keys, and leaves in `*path` what is missing.
Key* walk(Key* from, std::wstring_view* path, bool in32BitView);

/// Makes the keys of `path` below `at`. ERROR_INVALID_PARAMETER, with nothing made, for names that are none and for
/// too many of them.
DWORD makeKeys(Key* at, std::wstring_view path, bool isVolatile, std::uint64_t now, Key** made);

struct RootName {
  HKEY key;
  std::wstring_view name;
};
inline const std::array<RootName, 5> kRoots = {{{HKEY_CLASSES_ROOT, L"HKEY_CLASSES_ROOT"},
                                                {HKEY_CURRENT_USER, L"HKEY_CURRENT_USER"},
                                                {HKEY_LOCAL_MACHINE, L"HKEY_LOCAL_MACHINE"},
                                                {HKEY_USERS, L"HKEY_USERS"},
                                                {HKEY_CURRENT_CONFIG, L"HKEY_CURRENT_CONFIG"}}};

/// In the order of kRoots.
using Roots = std::array<std::shared_ptr<Key>, kRoots.size()>;

/// The content at first.
Roots firstKeys(std::uint64_t now);

}  // namespace vlplatform::registry

#endif
