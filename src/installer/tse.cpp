// Whether the machine offers Terminal Services. Each generation of the system keeps that elsewhere.
#include <vlhostkit/installer.h>

#include <cstddef>
#include <string_view>

#include "frame/handle.h"

namespace {

enum Answer : int { kUndetermined = -1, kNo = 0, kYes = 1 };

using SetCondition = ULONGLONG(WINAPI*)(ULONGLONG, DWORD, BYTE);
using VerifyVersion = BOOL(WINAPI*)(OSVERSIONINFOEXA*, DWORD, ULONGLONG);
using SetProperty = UINT(WINAPI*)(MSIHANDLE, LPCWSTR, LPCWSTR);

// Whether `name` is in the list that ends with an empty entry, or with the data: a stored list may lack its ends.
bool contains(std::wstring_view list, std::wstring_view name) {
  while (!list.empty() && list.front() != L'\0') {
    const std::wstring_view entry = list.substr(0, list.find(L'\0'));
    if (entry == name) {
      return true;
    }
    list.remove_prefix(entry.size());
    list.remove_prefix(list.empty() ? 0 : 1);
  }
  return false;
}

int productSuiteTest() {
  constexpr const wchar_t* kValue = L"ProductSuite";
  vl::RegistryKey key;
  if (RegOpenKeyW(HKEY_LOCAL_MACHINE, L"System\\CurrentControlSet\\Control\\ProductOptions", key.put()) !=
      ERROR_SUCCESS) {
    return kNo;
  }
  DWORD size = 0;
  if (RegQueryValueExW(key.get(), kValue, nullptr, nullptr, nullptr, &size) != ERROR_SUCCESS || size == 0) {
    return kNo;
  }
  const vl::LocalBlock<void*> block(LocalAlloc(LPTR, size));
  if (!block) {
    return kNo;
  }
  DWORD type = REG_NONE;
  if (RegQueryValueExW(key.get(), kValue, nullptr, &type, static_cast<BYTE*>(block.get()), &size) != ERROR_SUCCESS ||
      type != REG_MULTI_SZ) {
    return kNo;
  }
  const std::wstring_view list(static_cast<const wchar_t*>(block.get()), size / sizeof(wchar_t));
  return contains(list, L"Terminal Server") ? kYes : kNo;
}

int connectionTest() {
  constexpr const wchar_t* kValue = L"fDenyTSConnections";
  vl::RegistryKey key;
  if (RegOpenKeyW(HKEY_LOCAL_MACHINE, L"SYSTEM\\CurrentControlSet\\Control\\Terminal Server", key.put()) !=
      ERROR_SUCCESS) {
    return kUndetermined;
  }
  DWORD type = REG_NONE;
  DWORD size = 0;
  if (RegQueryValueExW(key.get(), kValue, nullptr, &type, nullptr, &size) != ERROR_SUCCESS || type != REG_DWORD) {
    return kUndetermined;
  }
  DWORD denied = 0;
  size = sizeof denied;
  if (RegQueryValueExW(key.get(), kValue, nullptr, &type, reinterpret_cast<BYTE*>(&denied), &size) != ERROR_SUCCESS) {
    return kUndetermined;
  }
  return denied == 0 ? kYes : kNo;
}

// Whether the platform says that the suite is there; undetermined without the functions that tell it.
int suiteTest() {
  const auto setCondition = vl::entryPoint<SetCondition>(GetModuleHandleW(L"ntdll.dll"), "VerSetConditionMask");
  const auto verify = vl::entryPoint<VerifyVersion>(GetModuleHandleW(L"KERNEL32.DLL"), "VerifyVersionInfoA");
  if (setCondition == nullptr || verify == nullptr) {
    return kUndetermined;
  }
  OSVERSIONINFOEXA info{};
  static_assert(sizeof info == 156);
  info.dwOSVersionInfoSize = sizeof info;
  info.wSuiteMask = VER_SUITE_TERMINAL;
  return verify(&info, VER_SUITENAME, setCondition(0, VER_SUITENAME, VER_AND));
}

}  // namespace

int IsTerminalServicesEnabled() {
  const DWORD version = GetVersion();
  if ((version & 0x80000000u) != 0) {
    return kUndetermined;
  }
  const DWORD major = version & 0xFFu;
  const DWORD minor = version >> 8 & 0xFFu;
  if (major <= 4) {
    return productSuiteTest();
  }
  const int met = suiteTest();
  return minor < 2 || met != kYes ? met : connectionTest();
}

int WINAPI DetectTSE(MSIHANDLE install) {
  const int answer = IsTerminalServicesEnabled();
  wchar_t text[64] = {};
  if (swprintf_s(text, std::size(text), L"%d", answer) <= 0) {
    return answer;
  }
  if (const vl::Module library(LoadLibraryW(L"msi.dll")); library) {
    if (const auto set = vl::entryPoint<SetProperty>(library, "MsiSetPropertyW")) {
      set(install, L"TSE_ENABLED", text);
    }
  }
  return answer;
}
