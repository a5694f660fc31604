/// The machine's drive C:.
#ifndef VLPLATFORM_MACHINE_FILES_H
#define VLPLATFORM_MACHINE_FILES_H

#include <filesystem>
#include <set>
#include <string>
#include <string_view>

#include <vlplatform/files.h>
#include <vlplatform/machine/guarded.h>

namespace vlplatform {

/// At start no folder stands for C:, so that nothing of the computer at hand is ever removed unasked. Thread-safe.
class VLPLATFORM_API Files {
 public:
  void reset() { facts_.reset(); }
  /// `folder` stands for C: from now on; an empty path for none.
  void setRoot(const std::filesystem::path& folder) { facts_.set(&Facts::root, folder); }
  std::filesystem::path root() const { return facts_.get(&Facts::root); }
  /// A file or folder that somebody holds open, so that it can't be removed. `path` is one of C:.
  void setInUse(std::wstring_view path, bool inUse = true);

  /// For the stand-in's functions; `fullPath` in lower case.
  bool inUse(const std::wstring& fullPath) const {
    return facts_.with([&](const Facts& facts) { return facts.inUse.contains(fullPath); });
  }

 private:
  struct Facts {
    std::filesystem::path root{};
    std::set<std::wstring> inUse{};
  };
  Guarded<Facts> facts_;
};

}  // namespace vlplatform

#endif
