/// The computer at hand: its name, its account domain, and the users of the system's user database.
#ifndef VLPLATFORM_SRC_THISCOMPUTER_H
#define VLPLATFORM_SRC_THISCOMPUTER_H

#include <sys/types.h>

#include <optional>
#include <string>

#include <vlplatform/basetypes.h>

namespace vlplatform {

/// In NETBIOS form: the host name up to its first dot, in upper case, at most 15 characters.
std::wstring thisComputersName();
/// The SID text of its account domain, made from what identifies the computer, so that it stays the same.
std::wstring thisComputersDomainSid();

/// The RID of a user is this and the user's number.
inline constexpr DWORD kFirstUserRid = 1000;
/// As the user database writes it.
std::optional<std::wstring> nameOfUser(uid_t user);
struct SystemUser {
  std::wstring name;
  uid_t id;
};
std::optional<SystemUser> systemUser(const std::wstring& name);

}  // namespace vlplatform

#endif
