/// The registry's calls under one name for both widths. All give the platform's number.
#ifndef VL_FRAME_REGISTRYCALLS_H
#define VL_FRAME_REGISTRYCALLS_H

#include "frame/handle.h"
#include "platform.h"

namespace vl {

namespace detail {

inline LONG open(HKEY root, LPCSTR path, REGSAM access, HKEY* key) {
  return RegOpenKeyExA(root, path, 0, access, key);
}
inline LONG open(HKEY root, LPCWSTR path, REGSAM access, HKEY* key) {
  return RegOpenKeyExW(root, path, 0, access, key);
}

}  // namespace detail

/// `key` owns what was opened, and is what it was after a failure.
template <class Char>
DWORD openKey(HKEY root, const Char* path, REGSAM access, RegistryKey& key) {
  HKEY opened = nullptr;
  const auto code = static_cast<DWORD>(detail::open(root, path, access, &opened));
  if (code == ERROR_SUCCESS) {
    key.reset(opened);
  }
  return code;
}

/// `type` may be null.
inline DWORD queryValue(const RegistryKey& key, LPCSTR name, DWORD* type, void* data, DWORD* bytes) {
  return static_cast<DWORD>(RegQueryValueExA(key.get(), name, nullptr, type, static_cast<BYTE*>(data), bytes));
}
inline DWORD queryValue(const RegistryKey& key, LPCWSTR name, DWORD* type, void* data, DWORD* bytes) {
  return static_cast<DWORD>(RegQueryValueExW(key.get(), name, nullptr, type, static_cast<BYTE*>(data), bytes));
}

inline DWORD setValue(const RegistryKey& key, LPCSTR name, DWORD type, const void* data, DWORD bytes) {
  return static_cast<DWORD>(RegSetValueExA(key.get(), name, 0, type, static_cast<const BYTE*>(data), bytes));
}
inline DWORD setValue(const RegistryKey& key, LPCWSTR name, DWORD type, const void* data, DWORD bytes) {
  return static_cast<DWORD>(RegSetValueExW(key.get(), name, 0, type, static_cast<const BYTE*>(data), bytes));
}

/// The value at `index`, with its data.
inline DWORD enumerateValue(const RegistryKey& key, DWORD index, char* name, DWORD* chars, void* data, DWORD* bytes) {
  return static_cast<DWORD>(
      RegEnumValueA(key.get(), index, name, chars, nullptr, nullptr, static_cast<BYTE*>(data), bytes));
}
inline DWORD enumerateValue(const RegistryKey& key, DWORD index, wchar_t* name, DWORD* chars, void* data,
                            DWORD* bytes) {
  return static_cast<DWORD>(
      RegEnumValueW(key.get(), index, name, chars, nullptr, nullptr, static_cast<BYTE*>(data), bytes));
}

}  // namespace vl

#endif
