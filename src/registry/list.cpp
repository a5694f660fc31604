#include <vlhostkit/registry.h>

#include <algorithm>
#include <cstddef>

#include "registry/call.h"

namespace {

using vl::Text;
using namespace vl::registry;

// How many calls in a row may fail where no caller's maximum ends the walk. They are then taken for the key's end.
constexpr int kMostFailures = 0x10000;

// The name at one index. An index that can't be read has an empty one.
template <std::size_t Capacity>
class Name {
 public:
  // `read` is given the empty buffer and its capacity.
  template <class Read>
  DWORD fill(Read read) {
    std::fill_n(chars_, used_, L'\0');
    DWORD size = Capacity;
    const auto code = static_cast<DWORD>(read(chars_, &size));
    used_ = code == ERROR_SUCCESS ? std::min<std::size_t>(size, Capacity) : Capacity;
    if (code != ERROR_SUCCESS) {
      chars_[0] = L'\0';
    }
    return code;
  }
  void copyTo(wchar_t* slot) const { wcscpy_s(slot, Capacity, chars_); }

 private:
  wchar_t chars_[Capacity];
  std::size_t used_ = Capacity;  // what may be other than zero
};

// What is listed: a walk's present element, and what the two functions differ in.
class Values {
 public:
  using Slots = RegValueEntry*;
  static constexpr Text kName{L"vlRegListValueNamesEx"};
  static constexpr Text kCountNullRest{L" : pnValueCount is NULL"};
  static constexpr Text kFirstFailed{L"RegEnumValue failed with error code 0x%x"};
  static constexpr Text kLimitRest{L": Max number of value reached"};
  static constexpr REGSAM kAccess = KEY_QUERY_VALUE;

  explicit Values(DWORD typeFilter) : typeFilter_(typeFilter) {}

  DWORD read(HKEY key, int index) {
    const DWORD code = name_.fill([&](wchar_t* name, DWORD* chars) {
      return RegEnumValueW(key, static_cast<DWORD>(index), name, chars, nullptr, &type_, nullptr, nullptr);
    });
    if (code != ERROR_SUCCESS) {
      type_ = REG_NONE;
    }
    return code;
  }
  void store(RegValueEntry* entries, int index) const {
    constexpr DWORD kAllTypes = 0xFFFFFFFF;
    if (typeFilter_ == type_ || typeFilter_ == kAllTypes) {
      entries[index].dwType = type_;
      name_.copyTo(entries[index].szName);
    }
  }

 private:
  Name<sizeof(RegValueEntry::szName) / sizeof(WCHAR)> name_;
  DWORD type_ = REG_NONE;
  DWORD typeFilter_;
};

class Subkeys {
 public:
  using Slots = WCHAR*;
  static constexpr Text kName{L"vlRegListKeysEx"};
  static constexpr Text kCountNullRest{L" : pnSubKeyCount is NULL"};
  static constexpr Text kFirstFailed{L"RegEnumKeyEx failed with error code 0x%x"};
  static constexpr Text kLimitRest{L": max number of subkey reached"};
  static constexpr REGSAM kAccess = KEY_ENUMERATE_SUB_KEYS;

  DWORD read(HKEY key, int index) {
    return name_.fill([&](wchar_t* name, DWORD* chars) {
      return RegEnumKeyExW(key, static_cast<DWORD>(index), name, chars, nullptr, nullptr, nullptr, nullptr);
    });
  }
  void store(WCHAR* names, int index) const { name_.copyTo(names + kSlot * static_cast<std::size_t>(index)); }

 private:
  static constexpr std::size_t kSlot = 255;

  Name<kSlot> name_;
};

template <class Member>
int walk(HKEY key, Member& element, typename Member::Slots slots, int* count) {
  DWORD code = element.read(key, 0);
  if (code != ERROR_SUCCESS) {
    txlogLog(kTag, TXLOG_ERROR, vl::kText<Member::kFirstFailed>, code);
    return kCallFailed;
  }
  int index = 0;
  for (int failures = 0; slots != nullptr || failures < kMostFailures;) {
    if (slots != nullptr) {
      if (index >= *count) {
        trace<Member::kName, Member::kLimitRest>();
        *count = index;
        return kSuccess;
      }
      element.store(slots, index);
    }
    ++index;
    code = element.read(key, index);
    if (code == ERROR_NO_MORE_ITEMS) {
      *count = index;
      return kSuccess;
    }
    failures = code == ERROR_SUCCESS ? 0 : failures + 1;
  }
  *count = index + 1 - kMostFailures;
  return kSuccess;
}

template <class Member>
int listChecked(HKEY root, LPCWSTR path, Member& element, typename Member::Slots slots, int* count, DWORD section) {
  vl::RegistryKey key;
  const DWORD code = vl::openKey(root, path, section | Member::kAccess, key);
  if (code != ERROR_SUCCESS) {
    txlogLog(kTag, slots != nullptr ? TXLOG_ERROR : TXLOG_TRACE, L"RegOpenKeyEx failed with error code 0x%x", code);
    return kCallFailed;
  }
  return walk(key.get(), element, slots, count);
}

template <class Member>
int list(HKEY root, LPCWSTR path, Member element, typename Member::Slots slots, int* count, DWORD section) {
  int result = kCallFailed;
  const Call<Member::kName> call(result);
  if (!sectionPasses<Member::kName>(section)) {
    result = kInvalidArgument;
  } else if (path == nullptr) {
    trace<Member::kName, L" : pszKey is NULL">();
    result = kInvalidArgument;
  } else if (count == nullptr) {
    trace<Member::kName, Member::kCountNullRest>();
    result = kInvalidArgument;
  } else {
    result = listChecked(root, path, element, slots, count, section);
  }
  return result;
}

}  // namespace

int vlRegListValueNamesEx(HKEY hKey, LPCWSTR pszKey, RegValueEntry* pEntries, int* pnValueCount, DWORD dwTypeFilter,
                          DWORD dwSection) {
  return list(hKey, pszKey, Values(dwTypeFilter), pEntries, pnValueCount, dwSection);
}
int vlRegListValueNames(HKEY hKey, LPCWSTR pszKey, RegValueEntry* pEntries, int* pnValueCount, DWORD dwTypeFilter) {
  return vlRegListValueNamesEx(hKey, pszKey, pEntries, pnValueCount, dwTypeFilter, 0);
}

int vlRegListKeysEx(HKEY hKey, LPCWSTR pszKey, WCHAR* pNames, int* pnSubKeyCount, DWORD dwSection) {
  return list(hKey, pszKey, Subkeys(), pNames, pnSubKeyCount, dwSection);
}
int vlRegListKeys(HKEY hKey, LPCWSTR pszKey, WCHAR* pNames, int* pnSubKeyCount) {
  return vlRegListKeysEx(hKey, pszKey, pNames, pnSubKeyCount, 0);
}
