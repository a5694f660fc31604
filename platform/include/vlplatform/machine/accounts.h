/// The machine's accounts: users, groups, domains and their SIDs.
#ifndef VLPLATFORM_MACHINE_ACCOUNTS_H
#define VLPLATFORM_MACHINE_ACCOUNTS_H

#include <memory>
#include <string>
#include <string_view>

#include <vlplatform/lsa.h>

namespace vlplatform {

struct Account {
  std::wstring domain;  ///< NETBIOS name; for a domain itself the same as `name`
  std::wstring name;
  std::wstring sid;  ///< in its text form
  SID_NAME_USE use = SidTypeUser;
};

/// At start it knows the computer at hand: its name, the users of the system's user database, in the computer's own
/// account domain with the RID 1000 + uid, and the well-known accounts (SYSTEM, Everyone, Administrators, ...).
/// Names are case-insensitive. What is described comes before what the computer knows, and replaces an earlier
/// description of that name. Thread-safe.
///
///     Accounts& accounts = machine().accounts();
///     accounts.addDomain(L"CORP", L"S-1-5-21-1-2-3");
///     accounts.addUser(L"CORP", L"alice", 1104);
///     accounts.setProcessUser(L"CORP\\alice");
///     accounts.setReachable(L"CORP", false);
class VLPLATFORM_API Accounts {
 public:
  Accounts();
  ~Accounts();
  Accounts(const Accounts&) = delete;
  Accounts& operator=(const Accounts&) = delete;

  void reset();

  /// The computer's NETBIOS name, which is its account domain's too.
  void setComputerName(std::wstring_view name);
  std::wstring computerName() const;
  /// From now on the users of the system's user database are unknown.
  void forgetSystemUsers();

  /// False, and nothing is added, if a SID is no SID text or a user's domain is unknown. A domain of the computer's
  /// name gives the account domain another SID.
  bool addDomain(std::wstring_view name, std::wstring_view sid);
  bool addUser(std::wstring_view domain, std::wstring_view name, DWORD rid);
  bool add(const Account& account);
  /// Nobody answers for an unreachable domain: its accounts are not found, and a lookup that names it, or a SID of it,
  /// ends with STATUS_TRUSTED_RELATIONSHIP_FAILURE.
  void setReachable(std::wstring_view domain, bool reachable);

  /// Who runs the process: "DOMAIN\name" of a known account, or a SID text. False if it is neither. Tokens that are
  /// open keep the user that they were opened with.
  bool setProcessUser(std::wstring_view user);
  /// Its SID text.
  std::wstring processUser() const;

  /// What LsaOpenPolicy answers for this computer; STATUS_SUCCESS at start.
  void setPolicyStatus(NTSTATUS status);
  NTSTATUS policyStatus() const;

  /// For the stand-in's functions: STATUS_SUCCESS with the account, or STATUS_NONE_MAPPED, or
  /// STATUS_TRUSTED_RELATIONSHIP_FAILURE. A name as LookupAccountNameW takes it, a SID as text.
  NTSTATUS byName(std::wstring_view name, Account* account) const;
  NTSTATUS bySid(std::wstring_view sid, Account* account) const;
  /// Whether `system` is this computer: empty, or its name with or without "\\" before it.
  bool isThisComputer(std::wstring_view system) const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace vlplatform

#endif
