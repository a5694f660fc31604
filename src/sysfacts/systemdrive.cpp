// The drive that holds the system, as the environment names it.
#include <cstdlib>
#include <string>

#include <vlhostkit/sysfacts.h>

#include "frame/handle.h"
#include "sysfacts/driveform.h"

namespace {

using vl::Text;

struct Narrow : vl::Narrow {
  static constexpr const wchar_t* entry = L"vlSysGetSystemDrive (ANSI)";
  static constexpr auto read = &GetEnvironmentVariableA;
};

struct Wide : vl::Wide {
  static constexpr const wchar_t* entry = L"vlSysGetSystemDrive";
  static constexpr auto read = &GetEnvironmentVariableW;
};

DWORD noVariable() {
  const DWORD code = GetLastError();
  txlogLog(vl::kTag, TXLOG_ERROR, L"vlSysGetSystemDrive Unable to get the SystemDrive environment variable (%d)", code);
  return code;
}

template <class Width, class String = typename Width::String>
int systemDrive(String& drive) {
  using Char = typename Width::Char;
  DWORD result = ERROR_SUCCESS;
  bool reachesExit = false;
  const vl::CallFrame frame(vl::kTag, Width::entry, vl::ExitIf(L"vlSysGetSystemDrive (%d)", result, reachesExit));
  const DWORD chars = Width::read(vl::literal<Char, L"SystemDrive">(), nullptr, 0);
  if (chars == 0) {
    result = noVariable();
    return static_cast<int>(result);
  }
  const vl::RuntimeBlock<Char*> value(static_cast<Char*>(std::calloc(chars, sizeof(Char))));
  if (!value) {
    result = ERROR_NOT_ENOUGH_MEMORY;
    txlogLog(vl::kTag, TXLOG_ERROR, L"vlSysGetSystemDrive Memory allocation failed (%d bytes)",
             static_cast<DWORD>(chars * sizeof(Char)));
    return static_cast<int>(result);
  }
  const DWORD written = Width::read(vl::literal<Char, L"SystemDrive">(), value.get(), chars);
  if (written == 0 || written > chars) {
    result = noVariable();
    return static_cast<int>(result);
  }
  drive.assign(value.get(), written);
  reachesExit = true;
  return static_cast<int>(result);
}

struct SystemDrive {
  static constexpr Text name{L"vlSysGetSystemDrive"};
  static int call(auto& drive) { return vlSysGetSystemDrive(drive); }
};

}  // namespace

int vlSysGetSystemDrive(std::wstring& drive) {
  return systemDrive<Wide>(drive);
}

int vlSysGetSystemDrive(std::string& drive) {
  return systemDrive<Narrow>(drive);
}

int vlSysGetSystemDriveW(LPWSTR buffer, DWORD* chars) {
  return vl::driveForm<SystemDrive, Wide>(buffer, chars);
}

int vlSysGetSystemDriveA(LPSTR buffer, DWORD* chars) {
  return vl::driveForm<SystemDrive, Narrow>(buffer, chars);
}
