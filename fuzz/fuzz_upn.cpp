// User ids and principal names: whatever the caches hold, answers have the size that was told, and failures are known.
// An input is switches, a capacity, a line each for user id, domain and the name in the system's cache, and what that
// cache, the own one, the users' and the profile hold: a type and some bytes each.
#include <vlhostkit/accounts.h>

#include "fuzz.h"

using fuzz::Block;

// A value of the input's bytes, behind `start` if the type is an odd number.
static void store(const wchar_t* path, const std::wstring& name, const std::wstring& start, fuzz::Input& input) {
  const unsigned type = input.byte();
  std::string data(reinterpret_cast<const char*>(start.data()), type % 2 != 0 ? start.size() * sizeof(wchar_t) : 0);
  for (const std::uint8_t byte : input.bytes()) data.push_back(static_cast<char>(byte));
  fuzz::setValue(path, name.c_str(), type / 2 % 12, data.data(), data.size());
}

template <class Char, auto kConvert, auto kDecompose, auto kInSystemCache>
static void names(fuzz::Bytes idBytes, fuzz::Bytes domainBytes, DWORD capacity) {
  const auto idText = fuzz::text<Char>(idBytes);
  const Block<Char> id(idText), domain(fuzz::text<Char>(domainBytes));
  DWORD user = 0, name = 0;
  const int asked = kConvert(id.data(), domain.data(), nullptr, &user, nullptr, &name);
  CHECK(asked == 87 ? idText.empty() : asked == 0 || asked == 2 || asked == 122 || asked == 234);
  CHECK(asked == 0 ? user >= 1 && name >= 1 : user == 0 && name == 0);
  for (DWORD less = 0; asked == 0 && less < 3; ++less) {  // the buffers just hold it, or one of them does not
    DWORD userSize = user - less % 2, nameSize = name - less / 2;
    const Block<Char> users(userSize), domains(nameSize);
    CHECK(kConvert(id.data(), domain.data(), users.data(), &userSize, domains.data(), &nameSize) == (less ? 122 : 0));
    CHECK(userSize == user && nameSize == name);
    CHECK(less == 1 ? users.untouched() : users.holdsText(user - 1));
    CHECK(less != 0 ? domains.untouched() : domains.holdsText(name - 1));
  }

  const std::size_t at = idText.find(Char{'@'});
  const Block<Char> samName(capacity + 1), domainName(capacity + 1);
  for (Char* const buffer : {static_cast<Char*>(nullptr), samName.data()}) {
    DWORD size = capacity;
    const DWORD code = kDecompose(id.data(), buffer, &size) ? 0 : GetLastError();
    CHECK(code == 0 || (at != idText.npos ? code == 2 || code == 122 || code == 234 : code == 87));
    CHECK(code != 87 || (samName.untouched() && size == capacity));
    CHECK(code != 0 || !buffer || (size > capacity ? samName.untouched() : samName.holdsText(size - 1)));
  }
  const Block<Char> suffix(idText.substr(at + 1));
  DWORD length = 0, size = capacity;
  const DWORD found = kInSystemCache(suffix.data(), nullptr, &length) ? 0 : GetLastError();
  const DWORD code = kInSystemCache(suffix.data(), domainName.data(), &size) ? 0 : GetLastError();
  CHECK(found == 0 || found == 234 || found == 259);
  CHECK(code == (found == 0 && length > capacity ? 122 : found) && size == (found == 0 ? length : capacity));
  CHECK(code == 0 ? domainName.holdsText(length) : domainName.untouched());
}

static void lookUp(const std::wstring& user, const std::wstring& domain, DWORD capacity) {
  constexpr DWORD kAsItWas = 0xdeadbeef;
  PSID sid = nullptr;
  SetLastError(kAsItWas);
  const DWORD found = vlNetLookupUserNameW(user.c_str(), domain.c_str(), &sid) ? 0 : GetLastError();
  CHECK(user.empty() ? found == kAsItWas : found == 0 || found == 2 || found == ERROR_INVALID_SID);
  CHECK(found != 0 ? sid == nullptr : IsValidSid(sid) && HeapFree(GetProcessHeap(), 0, sid));
  const Block<wchar_t> name(capacity);
  DWORD size = capacity;
  SetLastError(kAsItWas);
  const BOOL known = vlNetGetInitialUserNameBeforeRenameW(user.c_str(), domain.c_str(), name.data(), &size);
  const DWORD code = known ? 0 : GetLastError();
  CHECK(user.empty() ? code == 87 : found != 0 ? code == found : !code || code == 2 || code == 234 || code == kAsItWas);
  CHECK(known ? name.holdsText(size - 1) : name.untouched() && (size == capacity || (code == 234 && size > capacity)));
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  vlplatform::Machine& machine = fuzz::machine();
  fuzz::Input input(data, size);
  const unsigned switches = input.byte();
  const DWORD capacity = input.byte() + (switches & 4u) * 16;
  const fuzz::Bytes id = input.line(), domain = input.line(), cached = input.line();
  const auto user = fuzz::text<wchar_t>(id), domainName = fuzz::text<wchar_t>(domain);
  const std::wstring suffix = user.substr(user.find(L'@') + 1);
  machine.network().setAlive((switches & 1) != 0);
  machine.network().setSizeQuerySucceeds((switches & 2) != 0);
  machine.registry().reset();
  store(L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\DomainCache", fuzz::text<wchar_t>(cached), suffix,
        input);
  store(L"SOFTWARE\\Velorin\\System\\DomainCache", suffix, L"OWN", input);
  store(L"SOFTWARE\\Velorin\\System\\UserCache", domainName.empty() ? user : user + L'.' + domainName,
        L"S-1-5-21-1-2-3-7", input);
  store(L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\ProfileList\\S-1-5-21-1-2-3-7", L"ProfileImagePath",
        L"C:\\Users\\al", input);
  names<char, vlNetConvertUserIdToNETBIOSA, vlNetGetUserNameDomainFromUPNA, vlNetGetNETBIOSDomainNameFromUPNA>(
      id, domain, capacity);
  names<wchar_t, vlNetConvertUserIdToNETBIOSW, vlNetGetUserNameDomainFromUPNW, vlNetGetNETBIOSDomainNameFromUPNW>(
      id, domain, capacity);
  lookUp(user, domainName, capacity);
  return 0;
}
