#include <string>

#include <vlplatform/system.h>

#include "gate.h"
#include "unicode.h"

BOOL GetComputerNameW(LPWSTR name, LPDWORD size) {
  if (vlplatform::gateFails("GetComputerNameW")) {
    return FALSE;
  }
  if (size == nullptr) {
    return vlplatform::succeed(ERROR_INVALID_PARAMETER);
  }
  const vlplatform::OwnAllocations own;
  const std::wstring text = vlplatform::machine().accounts().computerName();
  const auto length = static_cast<DWORD>(text.size());
  if (name == nullptr || *size <= length) {
    *size = length + 1;
    return vlplatform::succeed(ERROR_BUFFER_OVERFLOW);
  }
  vlplatform::copyTerminated<wchar_t>(text, name);
  *size = length;
  return TRUE;
}
