#include <cstring>

#include "narrowtext.h"
#include "regfile.h"
#include "state.h"

namespace vlplatform::registry {
namespace {

// How data is told: as it is stored, or text as UTF-8.
enum class Width { wide, narrow };

std::size_t sizeOf(const Value& value, bool narrowed) {
  std::size_t size = value.data.size();
  if (narrowed) {
    size = 0;
    narrow(value.data.data(), value.data.size(), [&](const char*, std::size_t bytes) { size += bytes; });
  }
  return size;
}

// ERROR_MORE_DATA leaves the buffer alone and tells the size.
DWORD tell(const Value& value, Width width, LPDWORD type, LPBYTE data, LPDWORD size) {
  if (type != nullptr) {
    *type = value.type;
  }
  if (size == nullptr) {
    return ERROR_SUCCESS;
  }
  const bool narrowed = width == Width::narrow && isTextType(value.type);
  const DWORD capacity = *size;
  *size = static_cast<DWORD>(sizeOf(value, narrowed));
  if (data == nullptr) {
    return ERROR_SUCCESS;
  }
  if (*size > capacity) {
    return ERROR_MORE_DATA;
  }
  if (narrowed) {
    narrow(value.data.data(), value.data.size(), [&](const char* bytes, std::size_t count) {
      std::memcpy(data, bytes, count);
      data += count;
    });
  } else if (*size != 0) {
    std::memcpy(data, value.data.data(), *size);
  }
  return ERROR_SUCCESS;
}

std::wstring_view nameOf(LPCWSTR name) {
  return name != nullptr ? std::wstring_view(name) : std::wstring_view();
}

LSTATUS queryValue(const char* function, HKEY key, LPCWSTR name, Width width, const DWORD* reserved, LPDWORD type,
                   LPBYTE data, LPDWORD size) {
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
    return tell(*value, width, type, data, size);
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

// `nameIn` gives the name in the function's width.
template <class Char, class NameIn>
LSTATUS enumValue(const char* function, HKEY key, DWORD index, Char* name, LPDWORD nameChars, Width width,
                  const DWORD* reserved, LPDWORD type, LPBYTE data, LPDWORD size, NameIn nameIn) {
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
    const auto& text = nameIn(value.name);
    if (text.size() >= *nameChars) {
      tell(value, width, type, nullptr, size);
      return ERROR_MORE_DATA;
    }
    std::memcpy(name, text.c_str(), (text.size() + 1) * sizeof(Char));
    *nameChars = static_cast<DWORD>(text.size());
    return tell(value, width, type, data, size);
  });
}

}  // namespace
}  // namespace vlplatform::registry

using namespace vlplatform;
using namespace vlplatform::registry;

LSTATUS RegQueryValueExW(HKEY key, LPCWSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD size) {
  return queryValue("RegQueryValueExW", key, name, Width::wide, reserved, type, data, size);
}

LSTATUS RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD size) {
  const OwnAllocations own;
  return queryValue("RegQueryValueExA", key, WideName(name).get(), Width::narrow, reserved, type, data, size);
}

LSTATUS RegSetValueExW(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size) {
  return setValue("RegSetValueExW", key, name, reserved, type, data, size);
}

LSTATUS RegSetValueExA(HKEY key, LPCSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size) {
  const OwnAllocations own;
  const WideName wideName(name);
  if (data == nullptr || !isTextType(type)) {
    return setValue("RegSetValueExA", key, wideName.get(), reserved, type, data, size);
  }
  std::wstring text;
  widen(reinterpret_cast<const char*>(data), size, [&](wchar_t c) { text.push_back(c); });
  return setValue("RegSetValueExA", key, wideName.get(), reserved, type, reinterpret_cast<const BYTE*>(text.data()),
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
  return enumValue("RegEnumValueW", key, index, name, nameChars, Width::wide, reserved, type, data, size,
                   [](const std::wstring& own) -> const std::wstring& { return own; });
}

LSTATUS RegEnumValueA(HKEY key, DWORD index, LPSTR name, LPDWORD nameChars, LPDWORD reserved, LPDWORD type, LPBYTE data,
                      LPDWORD size) {
  const OwnAllocations own;
  return enumValue("RegEnumValueA", key, index, name, nameChars, Width::narrow, reserved, type, data, size,
                   [](const std::wstring& wide) {
                     std::string text;
                     narrow(reinterpret_cast<const BYTE*>(wide.data()), wide.size() * sizeof(wchar_t),
                            [&](const char* bytes, std::size_t count) { text.append(bytes, count); });
                     return text;
                   });
}
