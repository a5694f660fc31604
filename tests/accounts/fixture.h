// A machine whose caches are empty, the functions by width, and what the log must be.
#ifndef ACCOUNTS_FIXTURE_H
#define ACCOUNTS_FIXTURE_H

#include <cstdio>
#include <sstream>

#include <support/entrypoints.h>
#include <support/guardedbuffer.h>
#include <support/logcapture.h>
#include <support/machinetest.h>
#include <support/registrykey.h>
#include <vlhostkit/vlhostkit.h>

namespace accounts {

using namespace std::string_view_literals;
using support::Bytes;
using support::bytesOf;
using support::EntryPoints;
using support::GuardedBuffer;
using support::Key;
using support::kUntouchedError;
using support::LogRecord;
using Lines = std::vector<std::pair<int, std::wstring>>;

inline constexpr const wchar_t* kSystemCache =
    L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\DomainCache";
inline constexpr const wchar_t* kOwnCache = L"SOFTWARE\\Velorin\\System\\DomainCache";
inline constexpr const wchar_t* kUserCache = L"SOFTWARE\\Velorin\\System\\UserCache";

struct Narrow {
  using Char = char;
  static constexpr wchar_t letter = L'A';
  static constexpr auto convert = &vlNetConvertUserIdToNETBIOSA;
  static constexpr auto currentUser = &vlNetGetCurrentUserAndDomainA;
  static constexpr auto decompose = &vlNetGetUserNameDomainFromUPNA;
  static constexpr auto systemCache = &vlNetGetNETBIOSDomainNameFromUPNA;
  static constexpr const char* translateName = "TranslateNameA";
};
struct Wide {
  using Char = wchar_t;
  static constexpr wchar_t letter = L'W';
  static constexpr auto convert = &vlNetConvertUserIdToNETBIOSW;
  static constexpr auto currentUser = &vlNetGetCurrentUserAndDomainW;
  static constexpr auto decompose = &vlNetGetUserNameDomainFromUPNW;
  static constexpr auto systemCache = &vlNetGetNETBIOSDomainNameFromUPNW;
  static constexpr const char* translateName = "TranslateNameW";
};

template <class Function>
FARPROC entry(Function* function) {
  return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function));
}
// ASCII text in another width.
template <class Char>
std::basic_string<Char> as(std::string_view ascii) {
  return {ascii.begin(), ascii.end()};
}
inline std::wstring pointer(const void* value) {
  wchar_t digits[24];
  std::swprintf(digits, 24, L"%016llX", static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(value)));
  return digits;
}
inline std::vector<LogRecord> records(const Lines& lines) {
  std::vector<LogRecord> result;
  for (const auto& [level, text] : lines) {
    result.push_back({L"txhostkit", level, text});
  }
  return result;
}
template <class Char>
LogRecord binary(const wchar_t* label, const std::basic_string<Char>& text) {
  return {L"txhostkit", TXLOG_TRACE, label, bytesOf<Char>(text)};
}

// A value of text, with its terminator.
inline void put(const wchar_t* path, const wchar_t* name, const std::wstring& data) {
  Key::create(path).set(name, REG_SZ, bytesOf<wchar_t>({data.c_str(), data.size() + 1}));
}

class Accounts : public support::MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
    removeCaches();
#ifndef _WIN32
    machine().network().setAlive(true);
#endif
    SetLastError(kUntouchedError);
  }
  void TearDown() override {
    removeCaches();
    MachineTest::TearDown();
  }
  static void removeCaches() {
    for (const wchar_t* const path : {L"SOFTWARE\\Velorin\\System", kSystemCache}) {
      if (RegDeleteTreeW(HKEY_LOCAL_MACHINE, path) == ERROR_SUCCESS) {
        RegDeleteKeyW(HKEY_LOCAL_MACHINE, path);
      }
    }
  }
};

// What the platform's translation says: a name, or the number of its failure (0 with no name: it says nothing).
template <class Width>
class Translation {
 public:
  using Char = typename Width::Char;
  explicit Translation(DWORD failure) : Translation() { code = failure; }
  explicit Translation(const std::string& samName) : Translation() { answer = as<Char>(samName); }

  static inline int calls;

 private:
  Translation() : points_(L"secur32.dll", {{Width::translateName, entry(&translate)}}) {
    code = 0;
    answer.clear();
    calls = 0;
  }
  static BOOLEAN WINAPI translate(const Char*, int form, int wanted, Char* out, ULONG* size) {
    ++calls;
    EXPECT_EQ(form, 8);
    EXPECT_EQ(wanted, 2);
    const ULONG needed = static_cast<ULONG>(answer.size() + 1);
    const DWORD failure = code == 0 && out != nullptr && *size < needed ? DWORD{ERROR_INSUFFICIENT_BUFFER} : code;
    if (failure != 0) {
      SetLastError(failure);
    }
    if (!answer.empty()) {
      *size = needed;
    }
    if (failure == 0 && out != nullptr && !answer.empty()) {
      std::copy_n(answer.c_str(), needed, out);
    }
    return failure == 0 && !answer.empty();
  }
  static inline DWORD code;
  static inline std::basic_string<Char> answer;
  EntryPoints points_;
};

}  // namespace accounts

#endif
