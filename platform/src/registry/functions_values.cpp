#include <cstring>

#include "../unicode.h"
#include "regfile.h"
#include "state.h"

namespace vlplatform::registry {
namespace {

std::wstring_view charactersOf(const std::vector<BYTE>& data) {
  return {reinterpret_cast<const wchar_t*>(data.data()), data.size() / sizeof(wchar_t)};
}

// Data as it is stored, or for the narrow functions text as UTF-8. ERROR_MORE_DATA leaves the buffer alone and tells
// the size.
template <class Char>
DWORD tell(const Value& value, LPDWORD type, LPBYTE data, LPDWORD size) {
  if (type != nullptr) {
    *type = value.type;
  }
  if (size == nullptr) {
    return ERROR_SUCCESS;
  }
  std::string text;
  std::string_view bytes(reinterpret_cast<const char*>(value.data.data()), value.data.size());
  if (std::is_same_v<Char, char> && isTextType(value.type)) {
    bytes = text = toUtf8(charactersOf(value.data));
  }
  const DWORD capacity = *size;
  *size = static_cast<DWORD>(bytes.size());
  if (data == nullptr) {
    return ERROR_SUCCESS;
  }
  if (*size > capacity) {
    return ERROR_MORE_DATA;
  }
  bytes.copy(reinterpret_cast<char*>(data), bytes.size());
  return ERROR_SUCCESS;
}

std::wstring_view nameOf(LPCWSTR name) {
  return name != nullptr ? std::wstring_view(name) : std::wstring_view();
}

template <class Char>
LSTATUS queryValue(const char* function, HKEY key, LPCWSTR name, const DWORD* reserved, LPDWORD type, LPBYTE data,
                   LPDWORD size) {
  return reading(function, [&](const State& state) -> DWORD {
    if (reserved != nullptr || (data != nullptr && size == nullptr)) {
      return ERROR_INVALID_PARAMETER;
    }
    const Opened* opened = nullptr;
    const DWORD code = state.find(key, KEY_QUERY_VALUE, &opened);
    if (code != ERROR_SUCCESS) {
      return code;
    }
    const Value* const value = opened->key->value(nameOf(name));
    if (value == nullptr) {
      if (data == nullptr && size != nullptr) {
        *size = 0;
      }
      return ERROR_FILE_NOT_FOUND;
    }
    return tell<Char>(*value, type, data, size);
  });
}

LSTATUS setValue(const char* function, HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data,
                 std::size_t size) {
  return changing(function, [&](State& state) -> DWORD {
    if (reserved != 0 || !isValueName(nameOf(name))) {
      return ERROR_INVALID_PARAMETER;
    }
    if (data == nullptr && size != 0) {
      return ERROR_NOACCESS;
    }
    const Opened* opened = nullptr;
    const DWORD code = state.find(key, KEY_SET_VALUE, &opened);
    if (code == ERROR_SUCCESS) {
      opened->key->setValue(nameOf(name), type, data, size, machine().clock().ticks());
      state.changed();
    }
    return code;
  });
}

template <class Char>
LSTATUS enumValue(const char* function, HKEY key, DWORD index, Char* name, LPDWORD nameChars, const DWORD* reserved,
                  LPDWORD type, LPBYTE data, LPDWORD size) {
  return reading(function, [&](const State& state) -> DWORD {
    if (name == nullptr || nameChars == nullptr || reserved != nullptr || (data != nullptr && size == nullptr)) {
      return ERROR_INVALID_PARAMETER;
    }
    const Opened* opened = nullptr;
    const DWORD code = state.find(key, KEY_QUERY_VALUE, &opened);
    if (code != ERROR_SUCCESS) {
      return code;
    }
    if (index >= opened->key->values.size()) {
      return ERROR_NO_MORE_ITEMS;
    }
    const Value& value = opened->key->values[index];
    const std::basic_string<Char> text = inWidth<Char>(value.name);
    if (text.size() >= *nameChars) {
      tell<Char>(value, type, nullptr, size);
      return ERROR_MORE_DATA;
    }
    std::memcpy(name, text.c_str(), (text.size() + 1) * sizeof(Char));
    *nameChars = static_cast<DWORD>(text.size());
    return tell<Char>(value, type, data, size);
  });
}

}  // namespace
}  // namespace vlplatform::registry

using namespace vlplatform;
using namespace vlplatform::registry;

LSTATUS RegQueryValueExW(HKEY key, LPCWSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD size) {
  return queryValue<wchar_t>("RegQueryValueExW", key, name, reserved, type, data, size);
}

LSTATUS RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD size) {
  const OwnAllocations own;
  return queryValue<char>("RegQueryValueExA", key, wideOrEmpty(name).c_str(), reserved, type, data, size);
}

LSTATUS RegSetValueExW(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size) {
  return setValue("RegSetValueExW", key, name, reserved, type, data, size);
}

LSTATUS RegSetValueExA(HKEY key, LPCSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size) {
  const OwnAllocations own;
  const std::wstring wideName = wideOrEmpty(name);
  if (data == nullptr || !isTextType(type)) {
    return setValue("RegSetValueExA", key, wideName.c_str(), reserved, type, data, size);
  }
  const std::wstring text = toWide(std::string_view(reinterpret_cast<const char*>(data), size));
  return setValue("RegSetValueExA", key, wideName.c_str(), reserved, type, reinterpret_cast<const BYTE*>(text.data()),
                  text.size() * sizeof(wchar_t));
}

LSTATUS RegDeleteValueW(HKEY key, LPCWSTR name) {
  return changing("RegDeleteValueW", [&](State& state) -> DWORD {
    const Opened* opened = nullptr;
    const DWORD code = state.find(key, KEY_SET_VALUE, &opened);
    if (code != ERROR_SUCCESS) {
      return code;
    }
    if (!opened->key->removeValue(nameOf(name), machine().clock().ticks())) {
      return ERROR_FILE_NOT_FOUND;
    }
    state.changed();
    return ERROR_SUCCESS;
  });
}

LSTATUS RegEnumValueW(HKEY key, DWORD index, LPWSTR name, LPDWORD nameChars, LPDWORD reserved, LPDWORD type,
                      LPBYTE data, LPDWORD size) {
  return enumValue("RegEnumValueW", key, index, name, nameChars, reserved, type, data, size);
}

LSTATUS RegEnumValueA(HKEY key, DWORD index, LPSTR name, LPDWORD nameChars, LPDWORD reserved, LPDWORD type, LPBYTE data,
                      LPDWORD size) {
  return enumValue("RegEnumValueA", key, index, name, nameChars, reserved, type, data, size);
}
