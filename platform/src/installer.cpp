#include <vlplatform/machine/installer.h>

#include "gate.h"
#include "unicode.h"

namespace vlplatform {

void Installer::reset() {
  const std::lock_guard lock(mutex_);
  sessions_.clear();
}

MSIHANDLE Installer::open() {
  const OwnAllocations own;
  const std::lock_guard lock(mutex_);
  sessions_.try_emplace(++last_);
  return last_;
}

bool Installer::setProperty(MSIHANDLE install, std::wstring_view name, std::wstring_view value) {
  const OwnAllocations own;
  const std::lock_guard lock(mutex_);
  const auto session = sessions_.find(install);
  if (session == sessions_.end()) {
    return false;
  }
  session->second[std::wstring(name)] = value;
  return true;
}

std::optional<std::wstring> Installer::property(MSIHANDLE install, std::wstring_view name) const {
  const std::lock_guard lock(mutex_);
  const auto session = sessions_.find(install);
  if (session == sessions_.end()) {
    return std::nullopt;
  }
  const auto found = session->second.find(name);
  return found != session->second.end() ? found->second : std::wstring();
}

}  // namespace vlplatform

using namespace vlplatform;

UINT MsiGetPropertyW(MSIHANDLE install, LPCWSTR name, LPWSTR buffer, LPDWORD chars) {
  if (const DWORD code = gate("MsiGetPropertyW"); code != ERROR_SUCCESS) {
    return code;
  }
  if (name == nullptr || (buffer != nullptr && chars == nullptr)) {
    return ERROR_INVALID_PARAMETER;
  }
  const OwnAllocations own;
  const std::optional<std::wstring> value = machine().installer().property(install, name);
  if (!value) {
    return ERROR_INVALID_HANDLE;
  }
  const auto length = static_cast<DWORD>(value->size());
  const DWORD capacity = chars != nullptr ? *chars : 0;
  if (chars != nullptr) {
    *chars = length;
  }
  if (buffer == nullptr) {
    return ERROR_SUCCESS;
  }
  if (capacity != 0) {
    copyTerminated(std::wstring_view(*value).substr(0, capacity - 1), buffer);
  }
  return length < capacity ? ERROR_SUCCESS : ERROR_MORE_DATA;
}

UINT MsiSetPropertyW(MSIHANDLE install, LPCWSTR name, LPCWSTR value) {
  if (const DWORD code = gate("MsiSetPropertyW"); code != ERROR_SUCCESS) {
    return code;
  }
  if (name == nullptr || *name == L'\0') {
    return ERROR_INVALID_PARAMETER;
  }
  const OwnAllocations own;
  return machine().installer().setProperty(install, name, wideOrEmpty(value)) ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}
