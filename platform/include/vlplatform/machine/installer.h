/// The machine's installer: sessions with properties.
#ifndef VLPLATFORM_MACHINE_INSTALLER_H
#define VLPLATFORM_MACHINE_INSTALLER_H

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include <vlplatform/msi.h>

namespace vlplatform {

/// No session is open at start. Properties that are not set are empty texts, and their names are case-sensitive.
/// Thread-safe.
///
///     const MSIHANDLE install = machine().installer().open();
///     machine().installer().setProperty(install, L"CustomActionData", L"C:\\Product\\");
class VLPLATFORM_API Installer {
 public:
  /// Closes all sessions.
  void reset();

  /// A handle is never given twice.
  MSIHANDLE open();

  /// False if there is no such session.
  bool setProperty(MSIHANDLE install, std::wstring_view name, std::wstring_view value);
  /// Nothing if there is no such session.
  std::optional<std::wstring> property(MSIHANDLE install, std::wstring_view name) const;

 private:
  using Properties = std::map<std::wstring, std::wstring, std::less<>>;

  mutable std::mutex mutex_;
  std::map<MSIHANDLE, Properties> sessions_;
  MSIHANDLE last_ = 0;
};

}  // namespace vlplatform

#endif
