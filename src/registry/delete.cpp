#include <vlhostkit/registry.h>

#include <cstddef>
#include <cwchar>

#include "registry/call.h"

namespace {

using vl::Text;
using namespace vl::registry;

constexpr std::size_t kNameCapacity = 260;
constexpr std::size_t kPathCapacity = 780;

constexpr Text kDeleteValue{L"vlRegDeleteValue"};
constexpr Text kDeleteKey{L"vlRegDeleteKey"};
constexpr Text kDeleteSubKey{L"vlRegDeleteSubKey"};

using DeleteKeyEx = LONG(WINAPI*)(HKEY key, LPCWSTR path, REGSAM view, DWORD reserved);
using DeleteTree = LONG(WINAPI*)(HKEY key, LPCWSTR path);

// A flag is set only when it is 1. Callers in other languages pass any number, which the compiler must not take for
// the 0 or 1 that its own would be.
bool isSet(const bool& flag) {
  return *reinterpret_cast<const volatile unsigned char*>(&flag) == 1;
}

int resultOf(DWORD code) {
  return code == ERROR_SUCCESS ? kSuccess : kCallFailed;
}

int deleteValue(HKEY root, LPCWSTR path, LPCWSTR name, DWORD section) {
  vl::RegistryKey key;
  DWORD code = vl::openKey(root, path, section | KEY_SET_VALUE, key);
  if (code != ERROR_SUCCESS) {
    trace<kDeleteValue, L" : RegOpenKeyEx failed 0x%x">(code);
    return kCallFailed;
  }
  code = static_cast<DWORD>(RegDeleteValueW(key.get(), name));
  trace<kDeleteValue, L" : RegDeleteValue returns 0x%x">(code);
  return resultOf(code);
}

// The entry points are asked for by the names without a width letter, which the platform need not have.
int deleteKey(HKEY root, LPCWSTR path, bool withSubkeys, DWORD view) {
  const vl::Module library(LoadLibraryW(L"Advapi32.dll"));
  if (!library) {
    trace<kDeleteKey, L" : LoadLibrary(Advapi32.dll) failed">();
    return kCallFailed;
  }
  const auto deleteKeyEx = vl::entryPoint<DeleteKeyEx>(library, "RegDeleteKeyEx");
  const auto deleteTree =
      withSubkeys && deleteKeyEx != nullptr ? vl::entryPoint<DeleteTree>(library, "RegDeleteTree") : DeleteTree{};
  if (withSubkeys && deleteTree == nullptr) {
    const int result = vlRegDeleteSubKey(root, path, view, true);
    trace<kDeleteKey, L" : vlRegDeleteSubKey returns 0x%x">(result);
    return result == kSuccess ? kSuccess : kCallFailed;
  }
  if (deleteKeyEx == nullptr) {
    const auto code = static_cast<DWORD>(RegDeleteKeyW(root, path));
    trace<kDeleteKey, L" : RegDeleteKey returns 0x%x">(code);
    return resultOf(code);
  }
  if (deleteTree != nullptr) {
    trace<kDeleteKey, L" : RegDeleteTree returns 0x%x">(static_cast<DWORD>(deleteTree(root, path)));
  }
  const auto code = static_cast<DWORD>(deleteKeyEx(root, path, view, 0));
  trace<kDeleteKey, L" : RegDeleteKeyEx returns 0x%x">(code);
  return resultOf(code);
}

// Deletes the subkey `name` of `path` with all below it. A path without room in the buffer never reaches the runtime,
// whose report of that may end the process.
int deleteChild(HKEY root, LPCWSTR path, LPCWSTR name, DWORD section) {
  wchar_t child[kPathCapacity] = {};
  if (path == nullptr || std::wcslen(path) + 1 + std::wcslen(name) >= kPathCapacity ||
      swprintf_s(child, kPathCapacity, L"%s\\%s", path, name) < 0) {
    txlogLog(kTag, TXLOG_ERROR, L"vlRegDeleteSubKey : no room for the path of subkey %s", name);
    return kCallFailed;
  }
  return vlRegDeleteSubKey(root, child, section, true);
}

// Always at index 0: each deletion moves the next child there.
void deleteChildren(HKEY key, HKEY root, LPCWSTR path, DWORD section) {
  wchar_t name[kNameCapacity] = {};
  DWORD chars = kNameCapacity;
  while (RegEnumKeyExW(key, 0, name, &chars, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS) {
    if (deleteChild(root, path, name, section) != kSuccess) {
      return;
    }
    chars = kNameCapacity;
  }
}

// No call here takes the view: the section is handed down only to be tested again.
int deleteSubKey(HKEY root, LPCWSTR path, DWORD section, bool withKey) {
  if (withKey) {
    const auto code = static_cast<DWORD>(RegDeleteKeyW(root, path));
    if (code == ERROR_SUCCESS) {
      trace<kDeleteSubKey, L" : RegDeleteKey returns 0x%x">(code);
      return kSuccess;
    }
  }
  vl::RegistryKey key;
  const DWORD code = vl::openKey(root, path, KEY_READ, key);
  if (code != ERROR_SUCCESS) {
    trace<kDeleteSubKey, L" : RegOpenKeyEx failed 0x%x">(code);
    return kCallFailed;
  }
  deleteChildren(key.get(), root, path, section);
  key.reset();
  return withKey ? resultOf(static_cast<DWORD>(RegDeleteKeyW(root, path))) : kSuccess;
}

}  // namespace

int vlRegDeleteValue(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, DWORD dwSection) {
  int result = kCallFailed;
  const Call<kDeleteValue> call(result);
  if (!sectionPasses<kDeleteValue>(dwSection)) {
    result = kInvalidArgument;
  } else if (pszKey == nullptr || pszValueName == nullptr) {
    trace<kDeleteValue, L" : pszKey or pszValueName is NULL">();
    result = kInvalidArgument;
  } else {
    result = deleteValue(hKey, pszKey, pszValueName, dwSection);
  }
  return result;
}

int vlRegDeleteKey(HKEY hKey, LPCWSTR pszKey, bool bDeleteSubKeys, DWORD dwSection) {
  int result = kCallFailed;
  const Call<kDeleteKey> call(result);
  if (!sectionPasses<kDeleteKey>(dwSection)) {
    result = kInvalidArgument;
  } else if (pszKey == nullptr) {
    trace<kDeleteKey, L" : pszKey is NULL">();
    result = kInvalidArgument;
  } else {
    const DWORD view = dwSection != 0 ? dwSection : KEY_WOW64_32KEY;
    result = deleteKey(hKey, pszKey, isSet(bDeleteSubKeys), view);
  }
  return result;
}

int vlRegDeleteSubKey(HKEY hKey, LPCWSTR pszKey, DWORD dwSection, bool bDeleteKey) {
  int result = kCallFailed;
  const vl::ExitFrame frame(kTag, vl::ExitWith(kExitText<kDeleteSubKey>, result));
  result = sectionPasses<kDeleteSubKey>(dwSection) ? deleteSubKey(hKey, pszKey, dwSection, isSet(bDeleteKey))
                                                   : kInvalidArgument;
  return result;
}
