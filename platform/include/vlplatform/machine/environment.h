/// The machine's environment variables.
#ifndef VLPLATFORM_MACHINE_ENVIRONMENT_H
#define VLPLATFORM_MACHINE_ENVIRONMENT_H

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include <vlplatform/basetypes.h>

namespace vlplatform {

/// At start the process's environment as it is at the first question, with what the platform always has where that
/// lacks it (SystemDrive, CommonProgramFiles, ...). Changes stay here; the process's own environment is never written.
/// Names are case-insensitive. Thread-safe.
class VLPLATFORM_API Environment {
 public:
  void reset();
  void set(std::wstring_view name, std::wstring_view value);
  /// False if there was none.
  bool remove(std::wstring_view name);

  std::optional<std::wstring> value(std::wstring_view name) const;

 private:
  using Variables = std::map<std::wstring, std::wstring>;  // by the name in lower case
  Variables& known() const;

  mutable std::mutex mutex_;
  mutable std::optional<Variables> variables_;  // empty until asked for
};

}  // namespace vlplatform

#endif
