// A machine whose caches are empty, the functions by width, and a translation that is told what to say.
#ifndef ACCOUNTS_FIXTURE_H
#define ACCOUNTS_FIXTURE_H

#include <support/entrypoints.h>
#include <support/guardedbuffer.h>
#include <support/machinetest.h>
#include <support/records.h>
#include <support/registrykey.h>
#include <vlhostkit/vlhostkit.h>

namespace accounts {

using namespace std::literals;
using namespace support;

inline constexpr const wchar_t* kSystemCache =
    L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\DomainCache";
inline constexpr const wchar_t* kOwnCache = L"SOFTWARE\\Velorin\\System\\DomainCache";
inline constexpr const wchar_t* kUserCache = L"SOFTWARE\\Velorin\\System\\UserCache";
inline constexpr const wchar_t* kSid = L"S-1-5-21-11-22-33-1104";
inline constexpr const wchar_t* kProfile =
    L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\ProfileList\\S-1-5-21-11-22-33-1104";

struct Narrow {
  using Char = char;
  static constexpr bool wide = false;
  static constexpr wchar_t letter = L'A';
  static constexpr auto convert = &vlNetConvertUserIdToNETBIOSA;
  static constexpr auto currentUser = &vlNetGetCurrentUserAndDomainA;
  static constexpr auto decompose = &vlNetGetUserNameDomainFromUPNA;
  static constexpr auto systemCache = &vlNetGetNETBIOSDomainNameFromUPNA;
  static constexpr const char* translateName = "TranslateNameA";
};
struct Wide {
  using Char = wchar_t;
  static constexpr bool wide = true;
  static constexpr wchar_t letter = L'W';
  static constexpr auto convert = &vlNetConvertUserIdToNETBIOSW;
  static constexpr auto currentUser = &vlNetGetCurrentUserAndDomainW;
  static constexpr auto decompose = &vlNetGetUserNameDomainFromUPNW;
  static constexpr auto systemCache = &vlNetGetNETBIOSDomainNameFromUPNW;
  static constexpr const char* translateName = "TranslateNameW";
};
using Widths = testing::Types<Narrow, Wide>;

template <class Function>
FARPROC address(Function* function) {
  return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function));
}
// A value of text, with its terminator.
inline Bytes terminated(const std::wstring& text) {
  return bytesOf<wchar_t>({text.c_str(), text.size() + 1});
}
inline void put(const wchar_t* path, const std::wstring& name, const std::wstring& data) {
  Key::create(path).set(name.c_str(), REG_SZ, terminated(data));
}

#ifndef _WIN32
/// Describes a user of a domain who is logged on, and whose names all caches know.
inline void describeUser() {
  vlplatform::Machine& machine = vlplatform::machine();
  machine.accounts().addDomain(L"CORP", L"S-1-5-21-11-22-33");
  machine.accounts().addUser(L"CORP", L"Quetzalcoatl", 1104);
  machine.accounts().setProcessUser(L"CORP\\Quetzalcoatl");
  machine.sessions().setUser(L"CORP", L"Quetzalcoatl");
  machine.network().setAlive(true);
  machine.network().addPrincipal(L"Quetzalcoatl@corp.example", L"CORP\\Quetzalcoatl");
  put(kOwnCache, L"corp.example", L"CORP");
  put(kSystemCache, L"CORP", L"corp.example");
  put(kUserCache, L"Quetzalcoatl.CORP", kSid);
  put(kProfile, L"ProfileImagePath", L"C:\\Users\\Xolotl");
}
#endif

class Accounts : public MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
    removeCaches();
    SetLastError(kUntouchedError);
  }
  void TearDown() override {
    removeCaches();
    MachineTest::TearDown();
  }
  static void removeCaches() {
    for (const wchar_t* const path : {L"SOFTWARE\\Velorin\\System", kSystemCache, kProfile}) {
      if (RegDeleteTreeW(HKEY_LOCAL_MACHINE, path) == ERROR_SUCCESS) {
        RegDeleteKeyW(HKEY_LOCAL_MACHINE, path);
      }
    }
  }
};

// Until its end the platform's translation answers with a name, or fails with a number if the name is empty; with 0 it
// fails without a number.
template <class Width>
class Translation {
 public:
  using Char = typename Width::Char;
  explicit Translation(const std::string& samName, DWORD failure = 0)
      : points_(L"secur32.dll", {{Width::translateName, address(&translate)}}) {
    answer = as<Char>(samName);
    code = failure;
    calls = 0;
  }
  static inline int calls;

 private:
  static BOOLEAN WINAPI translate(const Char*, int form, int wanted, Char* out, ULONG* size) {
    ++calls;
    EXPECT_EQ(std::pair(form, wanted), std::pair(8, 2));
    const ULONG capacity = answer.empty() ? *size : std::exchange(*size, static_cast<ULONG>(answer.size() + 1));
    const DWORD failure = answer.empty() ? code : out != nullptr && capacity < *size ? 122 : 0;
    if (failure != 0) {
      *size = answer.empty() ? 1 : *size;  // what it leaves there is the caller's to put right
      SetLastError(failure);
    } else if (out != nullptr && !answer.empty()) {
      std::copy_n(answer.c_str(), *size, out);
    }
    return failure == 0 && !answer.empty();
  }
  static inline DWORD code;
  static inline std::basic_string<Char> answer;
  EntryPoints points_;
};

}  // namespace accounts

#endif
