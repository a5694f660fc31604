/// A registry as text, read through its functions.
#ifndef PLATFORM_REGISTRYDUMP_H
#define PLATFORM_REGISTRYDUMP_H

#include <string>
#include <vector>

#include <vlplatform/windows.h>

namespace registrydump {

/// Subkeys and values of an open key, one a line, with all that lies below it.
inline void add(HKEY key, const std::wstring& path, std::wstring& out) {
  std::vector<wchar_t> name(16384);
  DWORD size = 0;
  DWORD type = 0;
  for (DWORD i = 0, chars = 16384; RegEnumValueW(key, i, name.data(), &chars, nullptr, &type, nullptr, &size) == 0;
       ++i, chars = 16384) {
    std::vector<BYTE> data(size);
    chars = 16384;
    RegEnumValueW(key, i, name.data(), &chars, nullptr, &type, data.data(), &size);
    out.append(path).append(L" \"").append(name.data(), chars).append(L"\" ").append(std::to_wstring(type));
    for (const BYTE byte : data) {
      out.append(L" ").append(std::to_wstring(byte));
    }
    out.append(L"\n");
  }
  for (DWORD i = 0, chars = 256; RegEnumKeyExW(key, i, name.data(), &chars, nullptr, nullptr, nullptr, nullptr) == 0;
       ++i, chars = 256) {
    const std::wstring child = path + L"\\" + std::wstring(name.data(), chars);
    out.append(child).append(L"\n");
    HKEY opened = nullptr;
    if (RegOpenKeyExW(key, name.data(), 0, KEY_READ | KEY_WOW64_64KEY, &opened) == 0) {
      add(opened, child, out);
      RegCloseKey(opened);
    }
  }
}

inline std::wstring all() {
  std::wstring out;
  for (const HKEY root : {HKEY_CLASSES_ROOT, HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE, HKEY_USERS, HKEY_CURRENT_CONFIG}) {
    add(root, L"root", out);
  }
  return out;
}

}  // namespace registrydump

#endif
