/// The string resources of the machine's modules.
#ifndef VLPLATFORM_MACHINE_STRINGS_H
#define VLPLATFORM_MACHINE_STRINGS_H

#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include <vlplatform/basetypes.h>

namespace vlplatform {

/// Empty at start. A null module is the program, and of an id the low 16 bits count, as in a module's resources.
/// Thread-safe; a text stays where it is until it is replaced or reset.
class VLPLATFORM_API Strings {
 public:
  void reset();
  void set(HINSTANCE module, UINT id, std::wstring_view text);
  /// Null if there is none.
  const std::wstring* find(HINSTANCE module, UINT id) const;

 private:
  using Key = std::pair<HINSTANCE, WORD>;
  static Key key(HINSTANCE module, UINT id);

  mutable std::mutex mutex_;
  std::map<Key, std::wstring> texts_;
};

}  // namespace vlplatform

#endif
