/// Makes a library call something else than the system's function. Windows only.
#ifndef SUPPORT_IMPORTPATCH_H
#define SUPPORT_IMPORTPATCH_H

#include <windows.h>

namespace support {

/// While one lives, the loaded module `module` calls `replacement` wherever it calls `function`, which it imports by
/// name; other modules are not affected. A lookup at run time is replaced by way of GetProcAddress. A module that is
/// not loaded, or does not import the function, is a test failure. Several of them end in the opposite order.
///
///     const ImportPatch patch(L"vlhostkitu.dll", "RegOpenKeyExW", reinterpret_cast<FARPROC>(&alwaysFails));
class ImportPatch {
 public:
  ImportPatch(const wchar_t* module, const char* function, FARPROC replacement);
  ~ImportPatch();
  ImportPatch(const ImportPatch&) = delete;
  ImportPatch& operator=(const ImportPatch&) = delete;

  /// What was replaced, for replacements that go on to it.
  FARPROC original() const { return original_; }

 private:
  FARPROC* slot_;
  FARPROC original_ = nullptr;
};

}  // namespace support

#endif
