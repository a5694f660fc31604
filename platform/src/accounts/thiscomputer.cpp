#include "thiscomputer.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <fstream>
#include <string_view>
#include <vector>

#include <vlplatform/system.h>

#include "unicode.h"

namespace vlplatform {
namespace {

std::string hostName() {
  std::array<char, HOST_NAME_MAX + 1> name{};
  return gethostname(name.data(), name.size() - 1) == 0 ? std::string(name.data()) : std::string();
}

// What the computer keeps for its life: its machine id, or else its name.
std::string identity() {
  std::string id;
  std::getline(std::ifstream("/etc/machine-id"), id);
  return id.empty() ? hostName() : id;
}

// The id itself is not to be seen from outside: FNV-1a of it.
DWORD hash(std::string_view text, char salt) {
  std::uint32_t value = 2166136261u;
  const auto mix = [&](char c) { value = (value ^ static_cast<unsigned char>(c)) * 16777619u; };
  mix(salt);
  for (const char c : text) {
    mix(c);
  }
  return value;
}

// Calls one of the reentrant readers of the user database with as much memory as it asks for.
template <class Reader>
std::optional<SystemUser> read(Reader reader) {
  constexpr std::size_t kMost = 1 << 20;
  std::vector<char> memory(1024);
  for (;;) {
    passwd entry{};
    passwd* found = nullptr;
    const int code = reader(&entry, memory.data(), memory.size(), &found);
    if (code == ERANGE && memory.size() < kMost) {
      memory.resize(memory.size() * 4);
    } else if (code != EINTR) {
      return found != nullptr ? std::optional(SystemUser{toWide(std::string_view(found->pw_name)), found->pw_uid})
                              : std::nullopt;
    }
  }
}

std::optional<SystemUser> userNamed(const std::string& name) {
  return read([&](auto... rest) { return getpwnam_r(name.c_str(), rest...); });
}

}  // namespace

std::wstring thisComputersName() {
  const std::string host = hostName();
  const std::wstring name = upperCase(toWide(std::string_view(host).substr(0, host.find('.'))));
  return name.empty() ? L"LOCALHOST" : name.substr(0, MAX_COMPUTERNAME_LENGTH);
}

std::wstring thisComputersDomainSid() {
  const std::string id = identity();
  std::wstring sid = L"S-1-5-21";
  for (const char salt : {'a', 'b', 'c'}) {
    sid += L'-' + std::to_wstring(hash(id, salt));
  }
  return sid;
}

std::optional<std::wstring> nameOfUser(uid_t user) {
  const std::optional<SystemUser> found = read([&](auto... rest) { return getpwuid_r(user, rest...); });
  return found ? std::optional(found->name) : std::nullopt;
}

// The user database heeds case, account names don't: a name in other letters is looked for in small ones.
std::optional<SystemUser> systemUser(const std::wstring& name) {
  const std::optional<SystemUser> found = userNamed(toUtf8(name));
  return found ? found : userNamed(toUtf8(lowerCase(name)));
}

}  // namespace vlplatform
