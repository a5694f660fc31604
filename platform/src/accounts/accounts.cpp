#include <vlplatform/machine/accounts.h>

#include <unistd.h>

#include <algorithm>
#include <mutex>
#include <optional>
#include <set>
#include <vector>

#include <vlplatform/machine.h>

#include "accounts/sidvalue.h"
#include "accounts/thiscomputer.h"
#include "unicode.h"

namespace vlplatform {
namespace {

constexpr struct {
  std::wstring_view domain;
  std::wstring_view name;
  std::wstring_view sid;
  SID_NAME_USE use;
} kWellKnown[] = {
    {L"", L"Everyone", L"S-1-1-0", SidTypeWellKnownGroup},
    {L"NT AUTHORITY", L"INTERACTIVE", L"S-1-5-4", SidTypeWellKnownGroup},
    {L"NT AUTHORITY", L"ANONYMOUS LOGON", L"S-1-5-7", SidTypeWellKnownGroup},
    {L"NT AUTHORITY", L"Authenticated Users", L"S-1-5-11", SidTypeWellKnownGroup},
    {L"NT AUTHORITY", L"SYSTEM", L"S-1-5-18", SidTypeWellKnownGroup},
    {L"NT AUTHORITY", L"LOCAL SERVICE", L"S-1-5-19", SidTypeWellKnownGroup},
    {L"NT AUTHORITY", L"NETWORK SERVICE", L"S-1-5-20", SidTypeWellKnownGroup},
    {L"BUILTIN", L"BUILTIN", L"S-1-5-32", SidTypeDomain},
    {L"BUILTIN", L"Administrators", L"S-1-5-32-544", SidTypeAlias},
    {L"BUILTIN", L"Users", L"S-1-5-32-545", SidTypeAlias},
    {L"BUILTIN", L"Guests", L"S-1-5-32-546", SidTypeAlias},
};

std::wstring withRid(std::wstring_view domainSid, DWORD rid) {
  return std::wstring(domainSid) + L'-' + std::to_wstring(rid);
}

}  // namespace

struct Accounts::State {
  std::mutex mutex;
  std::optional<std::wstring> computer;
  bool systemUsers = true;
  std::vector<Account> described;
  std::set<std::wstring> unreachable;  // in lower case
  std::optional<std::wstring> processUser;
  NTSTATUS policyStatus = STATUS_SUCCESS;

  // All of these under the mutex.

  std::wstring computerName() const { return computer ? *computer : thisComputersName(); }
  bool reachable(std::wstring_view domain) const { return !unreachable.contains(lowerCase(domain)); }

  void describe(const Account& account) {
    std::erase_if(described, [&](const Account& known) {
      return sameName(known.domain, account.domain) && sameName(known.name, account.name);
    });
    described.push_back(account);
  }
  template <class Predicate>
  std::optional<Account> findKnown(Predicate predicate) const {
    for (const Account& account : described) {
      if (reachable(account.domain) && predicate(account)) {
        return account;
      }
    }
    for (const auto& row : kWellKnown) {
      const Account account{std::wstring(row.domain), std::wstring(row.name), std::wstring(row.sid), row.use};
      if (predicate(account)) {
        return account;
      }
    }
    const std::wstring name = computerName();
    const Account own{name, name, ownDomainSid(), SidTypeDomain};
    return predicate(own) ? std::optional(own) : std::nullopt;
  }
  std::optional<std::wstring> sidOfDomain(std::wstring_view domain) const {
    for (const Account& account : described) {
      if (account.use == SidTypeDomain && sameName(account.name, domain)) {
        return account.sid;
      }
    }
    return sameName(domain, computerName()) ? std::optional(thisComputersDomainSid()) : std::nullopt;
  }
  std::wstring ownDomainSid() const { return *sidOfDomain(computerName()); }

  std::optional<Account> systemAccount(std::optional<SystemUser> user) const {
    if (!user || user->id > 0xFFFFFFFF - kFirstUserRid) {
      return std::nullopt;
    }
    return Account{computerName(), user->name, withRid(ownDomainSid(), kFirstUserRid + user->id), SidTypeUser};
  }
  bool asksSystemUsers() const { return systemUsers && reachable(computerName()); }

  std::optional<Account> isolated(const std::wstring& name) const {
    std::optional<Account> found = findKnown([&](const Account& account) { return sameName(account.name, name); });
    return found || !asksSystemUsers() ? found : systemAccount(systemUser(name));
  }
  std::optional<Account> qualified(std::wstring_view domain, const std::wstring& name) const {
    std::optional<Account> found = findKnown([&](const Account& account) {
      return account.use != SidTypeDomain && sameName(account.domain, domain) && sameName(account.name, name);
    });
    return found || !asksSystemUsers() || !sameName(domain, computerName()) ? found : systemAccount(systemUser(name));
  }
};

Accounts::Accounts() : state_(std::make_unique<State>()) {}
Accounts::~Accounts() = default;

void Accounts::reset() {
  const std::lock_guard lock(state_->mutex);
  state_->computer.reset();
  state_->systemUsers = true;
  state_->described.clear();
  state_->unreachable.clear();
  state_->processUser.reset();
  state_->policyStatus = STATUS_SUCCESS;
}

void Accounts::setComputerName(std::wstring_view name) {
  const OwnAllocations own;
  const std::lock_guard lock(state_->mutex);
  state_->computer.emplace(name);
}

std::wstring Accounts::computerName() const {
  const std::lock_guard lock(state_->mutex);
  return state_->computerName();
}

void Accounts::forgetSystemUsers() {
  const std::lock_guard lock(state_->mutex);
  state_->systemUsers = false;
}

bool Accounts::addDomain(std::wstring_view name, std::wstring_view sid) {
  const OwnAllocations own;
  return add({std::wstring(name), std::wstring(name), std::wstring(sid), SidTypeDomain});
}

bool Accounts::addUser(std::wstring_view domain, std::wstring_view name, DWORD rid) {
  const OwnAllocations own;
  std::optional<std::wstring> domainSid;
  {
    const std::lock_guard lock(state_->mutex);
    domainSid = state_->sidOfDomain(domain);
  }
  return domainSid && add({std::wstring(domain), std::wstring(name), withRid(*domainSid, rid), SidTypeUser});
}

bool Accounts::add(const Account& account) {
  const OwnAllocations own;
  const std::optional<SidValue> sid = SidValue::ofText(account.sid);
  if (!sid) {
    return false;
  }
  const std::lock_guard lock(state_->mutex);
  state_->describe({account.domain, account.name, sid->text(), account.use});
  return true;
}

void Accounts::setReachable(std::wstring_view domain, bool reachable) {
  const OwnAllocations own;
  const std::lock_guard lock(state_->mutex);
  if (reachable) {
    state_->unreachable.erase(lowerCase(domain));
  } else {
    state_->unreachable.insert(lowerCase(domain));
  }
}

bool Accounts::setProcessUser(std::wstring_view user) {
  const OwnAllocations own;
  const std::optional<SidValue> sid = SidValue::ofText(user);
  Account account;
  if (!sid && byName(user, &account) != STATUS_SUCCESS) {
    return false;
  }
  const std::lock_guard lock(state_->mutex);
  state_->processUser = sid ? sid->text() : account.sid;
  return true;
}

std::wstring Accounts::processUser() const {
  const std::lock_guard lock(state_->mutex);
  return state_->processUser ? *state_->processUser : withRid(state_->ownDomainSid(), kFirstUserRid + geteuid());
}

void Accounts::setPolicyStatus(NTSTATUS status) {
  const std::lock_guard lock(state_->mutex);
  state_->policyStatus = status;
}

NTSTATUS Accounts::policyStatus() const {
  const std::lock_guard lock(state_->mutex);
  return state_->policyStatus;
}

NTSTATUS Accounts::byName(std::wstring_view name, Account* account) const {
  const std::size_t separator = name.find(L'\\');
  const bool isIsolated = separator == std::wstring_view::npos;
  if (std::wstring samName; isIsolated && name.find(L'@') != std::wstring_view::npos) {
    return machine().network().translate(name, &samName) == ERROR_SUCCESS ? byName(samName, account)
                                                                          : STATUS_NONE_MAPPED;
  }
  const std::wstring_view domain = isIsolated ? std::wstring_view() : name.substr(0, separator);
  const std::wstring rest(isIsolated ? name : name.substr(separator + 1));
  const std::lock_guard lock(state_->mutex);
  if (!domain.empty() && !state_->reachable(domain)) {
    return STATUS_TRUSTED_RELATIONSHIP_FAILURE;
  }
  // The platform answers a text of nothing with the domain of its built-in groups.
  const std::optional<Account> found = !domain.empty() ? state_->qualified(domain, rest)
                                       : name.empty()  ? state_->isolated(L"BUILTIN")
                                                       : state_->isolated(rest);
  if (!found) {
    return STATUS_NONE_MAPPED;
  }
  *account = *found;
  return STATUS_SUCCESS;
}

NTSTATUS Accounts::bySid(std::wstring_view sid, Account* account) const {
  const std::lock_guard lock(state_->mutex);
  const std::optional<SidValue> value = SidValue::ofText(sid);
  if (!value) {
    return STATUS_NONE_MAPPED;
  }
  const std::wstring text = value->text();
  const std::wstring domainSid = value->parent().text();
  for (const std::wstring& domain : state_->unreachable) {
    const std::optional<std::wstring> known = state_->sidOfDomain(domain);
    if (known && (*known == domainSid || *known == text)) {
      return STATUS_TRUSTED_RELATIONSHIP_FAILURE;
    }
  }
  std::optional<Account> found = state_->findKnown([&](const Account& known) { return known.sid == text; });
  if (const DWORD rid = value->subAuthorities.back();
      !found && state_->asksSystemUsers() && rid >= kFirstUserRid && domainSid == state_->ownDomainSid()) {
    const uid_t user = rid - kFirstUserRid;
    const std::optional<std::wstring> name = nameOfUser(user);
    found = name ? state_->systemAccount(SystemUser{*name, user}) : std::nullopt;
  }
  if (!found) {
    return STATUS_NONE_MAPPED;
  }
  *account = *found;
  return STATUS_SUCCESS;
}

bool Accounts::isThisComputer(std::wstring_view system) const {
  if (system.substr(0, 2) == L"\\\\") {
    system.remove_prefix(2);
  }
  return system.empty() || sameName(system, computerName());
}

}  // namespace vlplatform
