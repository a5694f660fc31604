#include "registry/read.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#include <vlhostkit/registry.h>

#include "frame/width.h"
#include "registry/call.h"

namespace {

using vl::Narrow;
using vl::Text;
using vl::Wide;
using namespace vl::registry;

// Where a value goes that has one size. `Value` is a DWORD or a ULONGLONG; callers of the generic read may pass any
// address, so it is handled as bytes.
template <class Value>
class FixedTarget {
 public:
  explicit FixedTarget(Value* value) : data_(reinterpret_cast<BYTE*>(value)) {}

  static constexpr int kMoreDataResult = kCallFailed;
  bool isNull() const { return data_ == nullptr; }
  BYTE* data() const { return data_; }
  DWORD capacity() const { return sizeof(Value); }
  void setSize(DWORD) const {}

  template <class Member>
  void log(DWORD) const {
    Value value;
    std::memcpy(&value, data_, sizeof value);
    trace<Member::kName, Text(L" : RegQueryValueEx returns ") + Member::kTypeName + Text(L" %d")>(
        static_cast<int>(value));
  }

 private:
  BYTE* data_;
};

// Where a value goes whose size the caller learns.
class SizedTarget {
 public:
  SizedTarget(BYTE* data, DWORD* bytes) : data_(data), bytes_(bytes) {}

  static constexpr int kMoreDataResult = kBufferTooSmall;
  bool isNull() const { return bytes_ == nullptr; }
  BYTE* data() const { return data_; }
  DWORD capacity() const { return *bytes_; }
  void setSize(DWORD bytes) const { *bytes_ = bytes; }

  template <class Member>
  void log(DWORD bytes) const {
    if (data_ == nullptr) {
      trace<Member::kName, L" : RegQueryValueEx returns length %d">(bytes);
    } else {
      Member::logValue(data_, bytes);
    }
  }

 private:
  BYTE* data_;
  DWORD* bytes_;
};

// Logs the text in `bytes` bytes at `data`, of which nothing is known: the value may lack its terminator, end within a
// character or stand at an odd address. What the channel could not read safely is shown from a copy, as far as a
// record can show it.
template <class Char, Text Function, Text Rest>
[[gnu::noinline]] void logCopiedText(const BYTE* data, DWORD bytes) {
  Char copy[TXLOG_MAX_TEXT + 1];
  std::size_t length = bytes / sizeof(Char);
  if (length > TXLOG_MAX_TEXT) {
    length = TXLOG_MAX_TEXT;
  }
  std::memcpy(copy, data, length * sizeof(Char));
  copy[length] = Char{};
  trace<Function, Rest>(static_cast<const Char*>(copy));
}

template <class Char, Text Function, Text Rest>
void logText(const BYTE* data, DWORD bytes) {
  const auto* const text = reinterpret_cast<const Char*>(data);
  const bool readable = bytes >= sizeof(Char) && bytes % sizeof(Char) == 0 &&
                        reinterpret_cast<std::uintptr_t>(data) % alignof(Char) == 0 &&
                        text[bytes / sizeof(Char) - 1] == Char{};
  if (readable) {
    trace<Function, Rest>(text);
  } else {
    logCopiedText<Char, Function, Rest>(data, bytes);
  }
}

// The members: how each is called, what it reads and what only its records say.
struct MemberDefaults {
  static constexpr Text kNullRest{L" : pszKey or pdwValue is NULL"};
  static constexpr Text kOpenFailedRest{L" : RegOpenKeyEx failed 0x%x"};
  static constexpr Text kQueryFailedRest{L" : RegQueryValueEx fails 0x%x"};
};

template <class WidthPolicy>
struct Dword : MemberDefaults {
  using Width = WidthPolicy;
  static constexpr Text kName = Text(L"vlRegReadDWORDValueEx") + Width::suffix;
  static constexpr DWORD kType = REG_DWORD;
  static constexpr Text kTypeName{L"DWORD"};
};

struct Qword : MemberDefaults {
  using Width = Wide;
  static constexpr Text kName{L"vlRegReadQWORDValueExW"};
  static constexpr DWORD kType = REG_QWORD;
  static constexpr Text kTypeName{L"QWORD"};
  static constexpr Text kNullRest{L" : pszKey or pullValue is NULL"};
};

template <class WidthPolicy>
struct String : MemberDefaults {
  using Width = WidthPolicy;
  static constexpr Text kName = Text(L"vlRegReadStringValueEx") + Width::suffix;
  static constexpr DWORD kType = REG_SZ;
  static constexpr Text kTypeName{L"REG_SZ"};
  static void logValue(const BYTE* data, DWORD bytes) {
    logText<typename Width::Char, kName, Text(L" : RegQueryValueEx returns ") + Width::conversion>(data, bytes);
  }
};

template <class WidthPolicy>
struct MultiString : MemberDefaults {
  using Width = WidthPolicy;
  static constexpr Text kName = Text(L"vlRegReadMultiStringValueEx") + Width::suffix;
  static constexpr DWORD kType = REG_MULTI_SZ;
  static constexpr Text kTypeName{L"REG_MULTI_SZ"};
  static void logValue(const BYTE* data, DWORD bytes) {
    logText<typename Width::Char, kName, Text(L" : RegQueryValueEx returns ") + Width::conversion>(data, bytes);
  }
};

// The one member that names the platform's call in full where the call failed.
struct NarrowMultiString : MultiString<Narrow> {
  static constexpr Text kOpenFailedRest{L" : RegOpenKeyExA failed 0x%x"};
  static constexpr Text kQueryFailedRest{L" : RegQueryValueExA fails 0x%x"};
};

struct Binary : MemberDefaults {
  using Width = Wide;
  static constexpr Text kName{L"vlRegReadBinaryValueEx"};
  static constexpr DWORD kType = REG_BINARY;
  static constexpr Text kTypeName{L"REG_BINARY"};
  static void logValue(const BYTE* data, DWORD bytes) {
    txlogLogBin(kTag, TXLOG_TRACE, data, static_cast<int>(bytes),
                vl::kText<kName + Text(L" : RegQueryValueEx returns")>);
  }
};

template <class Member, class Char, class Target>
int readChecked(HKEY root, const Char* path, const Char* name, Target target, DWORD section) {
  vl::RegistryKey key;
  DWORD code = vl::openKey(root, path, section | KEY_QUERY_VALUE, key);
  if (code != ERROR_SUCCESS) {
    trace<Member::kName, Member::kOpenFailedRest>(code);
    return kCallFailed;
  }
  DWORD type = REG_NONE;
  DWORD bytes = target.capacity();
  code = vl::queryValue(key, name, &type, target.data(), &bytes);
  if (code != ERROR_SUCCESS) {
    trace<Member::kName, Member::kQueryFailedRest>(code);
    return code == ERROR_MORE_DATA ? Target::kMoreDataResult : kCallFailed;
  }
  target.setSize(bytes);
  if (type != Member::kType) {
    trace<Member::kName, Text(L" : RegQueryValueEx returns type %d instead of ") + Member::kTypeName>(type);
    return kWrongType;
  }
  target.template log<Member>(bytes);
  return kSuccess;
}

template <class Member, class Char, class Target>
int read(HKEY root, const Char* path, const Char* name, Target target, DWORD section) {
  int result = kCallFailed;
  const Call<Member::kName> call(result);
  if (!sectionPasses<Member::kName>(section)) {
    result = kInvalidArgument;
  } else if (path == nullptr || target.isNull()) {
    trace<Member::kName, Member::kNullRest>();
    result = kInvalidArgument;
  } else {
    result = readChecked<Member>(root, path, name, target, section);
  }
  return result;
}

}  // namespace

int vlRegReadDWORDValueExW(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, DWORD* pdwValue, DWORD dwSection) {
  return read<Dword<Wide>>(hKey, pszKey, pszValueName, FixedTarget(pdwValue), dwSection);
}
int vlRegReadDWORDValueExA(HKEY hKey, LPCSTR pszKey, LPCSTR pszValueName, DWORD* pdwValue, DWORD dwSection) {
  return read<Dword<Narrow>>(hKey, pszKey, pszValueName, FixedTarget(pdwValue), dwSection);
}
int vlRegReadDWORDValueEx(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, DWORD* pdwValue, DWORD dwSection) {
  return vlRegReadDWORDValueExW(hKey, pszKey, pszValueName, pdwValue, dwSection);
}
int vlRegReadDWORDValue(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, DWORD* pdwValue) {
  return vlRegReadDWORDValueExW(hKey, pszKey, pszValueName, pdwValue, 0);
}

int vlRegReadQWORDValueExW(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, ULONGLONG* pullValue, DWORD dwSection) {
  return read<Qword>(hKey, pszKey, pszValueName, FixedTarget(pullValue), dwSection);
}

int vlRegReadStringValueExW(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, BYTE* pData, DWORD* pcbData,
                            DWORD dwSection) {
  return read<String<Wide>>(hKey, pszKey, pszValueName, SizedTarget(pData, pcbData), dwSection);
}
int vlRegReadStringValueExA(HKEY hKey, LPCSTR pszKey, LPCSTR pszValueName, BYTE* pData, DWORD* pcbData,
                            DWORD dwSection) {
  return read<String<Narrow>>(hKey, pszKey, pszValueName, SizedTarget(pData, pcbData), dwSection);
}
int vlRegReadStringValueEx(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, BYTE* pData, DWORD* pcbData,
                           DWORD dwSection) {
  return vlRegReadStringValueExW(hKey, pszKey, pszValueName, pData, pcbData, dwSection);
}
int vlRegReadStringValue(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, BYTE* pData, DWORD* pcbData) {
  return vlRegReadStringValueExW(hKey, pszKey, pszValueName, pData, pcbData, 0);
}

int vlRegReadMultiStringValueExW(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, BYTE* pData, DWORD* pcbData,
                                 DWORD dwSection) {
  return read<MultiString<Wide>>(hKey, pszKey, pszValueName, SizedTarget(pData, pcbData), dwSection);
}
int vlRegReadMultiStringValueExA(HKEY hKey, LPCSTR pszKey, LPCSTR pszValueName, BYTE* pData, DWORD* pcbData,
                                 DWORD dwSection) {
  return read<NarrowMultiString>(hKey, pszKey, pszValueName, SizedTarget(pData, pcbData), dwSection);
}
int vlRegReadMultiStringValueEx(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, BYTE* pData, DWORD* pcbData,
                                DWORD dwSection) {
  return vlRegReadMultiStringValueExW(hKey, pszKey, pszValueName, pData, pcbData, dwSection);
}
int vlRegReadMultiStringValue(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, BYTE* pData, DWORD* pcbData) {
  return vlRegReadMultiStringValueExW(hKey, pszKey, pszValueName, pData, pcbData, 0);
}

int vlRegReadBinaryValueEx(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, BYTE* pData, DWORD* pcbData,
                           DWORD dwSection) {
  return read<Binary>(hKey, pszKey, pszValueName, SizedTarget(pData, pcbData), dwSection);
}
int vlRegReadBinaryValue(HKEY hKey, LPCWSTR pszKey, LPCWSTR pszValueName, BYTE* pData, DWORD* pcbData) {
  return vlRegReadBinaryValueEx(hKey, pszKey, pszValueName, pData, pcbData, 0);
}
