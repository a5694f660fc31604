// The fixed drives, one at a time.
#include <cstdlib>
#include <string>
#include <string_view>

#include <vlhostkit/sysfacts.h>

#include "frame/handle.h"
#include "sysfacts/driveform.h"

namespace {

using vl::kText;
using vl::Text;

struct Narrow : vl::Narrow {
  static constexpr const wchar_t* entry = L"GetFixedDrive (ANSI)";
  static constexpr auto list = &GetLogicalDriveStringsA;
  static constexpr auto typeOf = &GetDriveTypeA;
};

struct Wide : vl::Wide {
  static constexpr const wchar_t* entry = L"GetFixedDrive";
  static constexpr auto list = &GetLogicalDriveStringsW;
  static constexpr auto typeOf = &GetDriveTypeW;
};

DWORD noList() {
  const DWORD code = GetLastError();
  txlogLog(vl::kTag, TXLOG_ERROR, L"GetFixedDrive Unable to retrieve drives (%d)", code);
  return code;
}

// The entry behind `previous`, or the first one if the list does not have `previous`; empty if there is none. All
// entries are terminated, the list's last one twice or by its end.
template <class Width, class View>
View nextFixed(View list, View previous) {
  View firstFixed;
  bool found = false;
  while (!list.empty() && list.front() != 0) {
    const View entry = list.substr(0, list.find(typename Width::Char{}));
    list.remove_prefix(std::min(entry.size() + 1, list.size()));
    if (!found && entry == previous) {
      found = true;
    } else if (Width::typeOf(entry.data()) == DRIVE_FIXED) {
      if (found) {
        return entry;
      }
      firstFixed = firstFixed.empty() ? entry : firstFixed;
    }
  }
  return found ? View() : firstFixed;
}

template <class Width, class String = typename Width::String>
DWORD find(String& drive) {
  using Char = typename Width::Char;
  using View = std::basic_string_view<Char>;
  const DWORD chars = Width::list(0, nullptr);
  if (chars == 0) {
    return noList();
  }
  const vl::RuntimeBlock<Char*> list(static_cast<Char*>(std::calloc(chars, sizeof(Char))));
  if (!list) {
    txlogLog(vl::kTag, TXLOG_ERROR, L"GetFixedDrive Memory allocation failed (%d bytes)",
             static_cast<DWORD>(chars * sizeof(Char)));
    return ERROR_NOT_ENOUGH_MEMORY;
  }
  const DWORD written = Width::list(chars, list.get());
  if (written == 0 || written > chars) {
    return noList();
  }
  list.get()[chars - 1] = Char{};
  String wanted = drive;
  if (wanted.find(Char{'\\'}) == String::npos) {
    wanted += Char{'\\'};
  }
  const View next = nextFixed<Width>(View(list.get(), chars), View(wanted));
  if (next.empty()) {
    txlogLog(vl::kTag, TXLOG_ERROR, L"GetFixedDrive Hard Drive not found");
    return ERROR_INVALID_DRIVE;
  }
  drive = next.substr(0, 2);
  txlogLog(vl::kTag, TXLOG_TRACE, kText<Text(L"GetFixedDrive Hard Drive ") + Width::conversion + Text(L" found")>,
           drive.c_str());
  return ERROR_SUCCESS;
}

template <class Width, class String = typename Width::String>
int fixedDrive(String& drive) {
  DWORD result = ERROR_SUCCESS;
  const vl::CallFrame frame(vl::kTag, Width::entry, vl::ExitWith(L"GetFixedDrive (%d)", result));
  result = find<Width>(drive);
  return static_cast<int>(result);
}

struct FixedDrive {
  static constexpr Text name{L"vlSysGetFixedDrive"};
  static int call(auto& drive) { return vlSysGetFixedDrive(drive); }
};

}  // namespace

int vlSysGetFixedDrive(std::wstring& drive) {
  return fixedDrive<Wide>(drive);
}

int vlSysGetFixedDrive(std::string& drive) {
  return fixedDrive<Narrow>(drive);
}

int vlSysGetFixedDriveW(LPWSTR buffer, DWORD* chars) {
  return vl::driveForm<FixedDrive, Wide>(buffer, chars);
}

int vlSysGetFixedDriveA(LPSTR buffer, DWORD* chars) {
  return vl::driveForm<FixedDrive, Narrow>(buffer, chars);
}
