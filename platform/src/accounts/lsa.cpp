// Policies, and the lookups through them.
#include <cstring>
#include <string>
#include <vector>

#include "accounts/sidvalue.h"
#include "accounts/status.h"
#include "blocks.h"
#include "gate.h"
#include "handletable.h"
#include "unicode.h"

namespace vlplatform {
namespace {

HandleTable<ACCESS_MASK>& policies() {
  static auto& table = *new HandleTable<ACCESS_MASK>(Resource::policy);
  return table;
}

// Nothing if it is no counted text: a length of half characters, or one beyond its memory.
std::optional<std::wstring> textOf(const LSA_UNICODE_STRING& counted) {
  if (counted.Length % sizeof(wchar_t) != 0 || counted.Length > counted.MaximumLength ||
      (counted.Buffer == nullptr && counted.Length != 0)) {
    return std::nullopt;
  }
  return std::wstring(counted.Buffer, counted.Length / sizeof(wchar_t));
}

// A block that holds a list and everything that it points to, or nothing if there is no memory.
class ListBlock {
 public:
  static constexpr std::size_t kAlignment = alignof(std::max_align_t);

  explicit ListBlock(std::size_t bytes) : block_(static_cast<std::byte*>(lsaBlocks().allocate(bytes, true))) {}

  void* get() const { return block_; }
  template <class T>
  T* array(std::size_t count) {
    return reinterpret_cast<T*>(take(count * sizeof(T)));
  }
  PSID sid(const SidValue& value) {
    std::byte* const place = take(value.length());
    value.write(place);
    return place;
  }
  LSA_UNICODE_STRING text(std::wstring_view text) {
    auto* const place = array<wchar_t>(text.size() + 1);
    copyTerminated(text, place);
    const auto bytes = static_cast<USHORT>(text.size() * sizeof(wchar_t));
    return {bytes, static_cast<USHORT>(bytes + sizeof(wchar_t)), place};
  }

  // What these take of the block at most.
  static std::size_t room(std::size_t bytes) { return (bytes + kAlignment - 1) / kAlignment * kAlignment; }
  static std::size_t roomOfSid() { return room(SECURITY_MAX_SID_SIZE); }
  static std::size_t roomOfText(std::wstring_view text) { return room((text.size() + 1) * sizeof(wchar_t)); }

 private:
  std::byte* take(std::size_t bytes) {
    std::byte* const place = block_ + used_;
    used_ += room(bytes);
    return place;
  }

  std::byte* block_;
  std::size_t used_ = 0;
};

// What a lookup found, one entry for each question; an unknown account is of SidTypeUnknown.
struct Answers {
  struct Domain {
    std::wstring name;
    SidValue sid;
  };

  std::vector<Account> accounts;
  std::vector<LONG> domainIndex;
  std::vector<Domain> domains;
  ULONG mapped = 0;
  NTSTATUS failure = STATUS_NONE_MAPPED;

  void add(NTSTATUS status, const Account& account) {
    const bool known = status == STATUS_SUCCESS;
    accounts.push_back(account);
    domainIndex.push_back(known ? indexOfDomain(account) : -1);
    mapped += known ? 1 : 0;
    if (!known) {
      accounts.back().use = SidTypeUnknown;
      failure = status != STATUS_NONE_MAPPED ? status : failure;
    }
  }
  NTSTATUS status() const {
    return mapped == accounts.size() ? STATUS_SUCCESS : mapped != 0 ? STATUS_SOME_NOT_MAPPED : failure;
  }
  // Whether there are lists to hand out.
  bool delivers() const { return mapped != 0 || failure == STATUS_NONE_MAPPED; }

 private:
  LONG indexOfDomain(const Account& account) {
    for (std::size_t i = 0; i < domains.size(); ++i) {
      if (sameName(domains[i].name, account.domain)) {
        return static_cast<LONG>(i);
      }
    }
    const SidValue sid = *SidValue::ofText(account.sid);
    domains.push_back({account.domain, account.use == SidTypeDomain ? sid : sid.parent()});
    return static_cast<LONG>(domains.size() - 1);
  }
};

LSA_REFERENCED_DOMAIN_LIST* listOfDomains(const std::vector<Answers::Domain>& domains) {
  std::size_t bytes = ListBlock::room(sizeof(LSA_REFERENCED_DOMAIN_LIST)) +
                      ListBlock::room(domains.size() * sizeof(LSA_TRUST_INFORMATION));
  for (const Answers::Domain& domain : domains) {
    bytes += ListBlock::roomOfText(domain.name) + ListBlock::roomOfSid();
  }
  ListBlock block(bytes);
  if (block.get() == nullptr) {
    return nullptr;
  }
  auto* const list = block.array<LSA_REFERENCED_DOMAIN_LIST>(1);
  list->Entries = static_cast<ULONG>(domains.size());
  list->Domains = domains.empty() ? nullptr : block.array<LSA_TRUST_INFORMATION>(domains.size());
  for (std::size_t i = 0; i < domains.size(); ++i) {
    // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): null only if there are no domains
    list->Domains[i] = {block.text(domains[i].name), block.sid(domains[i].sid)};
  }
  return list;
}

LSA_TRANSLATED_NAME* listOfNames(const Answers& answers) {
  const std::size_t count = answers.accounts.size();
  std::size_t bytes = ListBlock::room(count * sizeof(LSA_TRANSLATED_NAME));
  for (const Account& account : answers.accounts) {
    bytes += ListBlock::roomOfText(account.name);
  }
  ListBlock block(bytes);
  auto* const list = block.get() != nullptr ? block.array<LSA_TRANSLATED_NAME>(count) : nullptr;
  for (std::size_t i = 0; list != nullptr && i < count; ++i) {
    const Account& account = answers.accounts[i];
    list[i] = {account.use, block.text(account.name), answers.domainIndex[i]};
  }
  return list;
}

LSA_TRANSLATED_SID2* listOfSids(const Answers& answers) {
  const std::size_t count = answers.accounts.size();
  ListBlock block(ListBlock::room(count * sizeof(LSA_TRANSLATED_SID2)) + count * ListBlock::roomOfSid());
  auto* const list = block.get() != nullptr ? block.array<LSA_TRANSLATED_SID2>(count) : nullptr;
  for (std::size_t i = 0; list != nullptr && i < count; ++i) {
    const Account& account = answers.accounts[i];
    const bool known = account.use != SidTypeUnknown;
    list[i] = {account.use, known ? block.sid(*SidValue::ofText(account.sid)) : nullptr, answers.domainIndex[i], 0};
  }
  return list;
}

NTSTATUS allowsLookup(LSA_HANDLE policy) {
  constexpr ACCESS_MASK kGenericExecute = 0x20000000;
  constexpr ACCESS_MASK kMaximumAllowed = 0x02000000;
  const std::optional<ACCESS_MASK> access = policies().find(policy);
  if (!access) {
    return STATUS_INVALID_HANDLE;
  }
  return (*access & (POLICY_LOOKUP_NAMES | kGenericExecute | kMaximumAllowed)) != 0 ? STATUS_SUCCESS
                                                                                    : STATUS_ACCESS_DENIED;
}

// The end of a lookup: its two lists and its status.
template <class List, class MakeList>
NTSTATUS deliver(const Answers& answers, LSA_REFERENCED_DOMAIN_LIST** domains, List** list, MakeList makeList) {
  if (!answers.delivers()) {
    return answers.status();
  }
  *domains = listOfDomains(answers.domains);
  *list = makeList(answers);
  if (*domains == nullptr || *list == nullptr) {
    lsaBlocks().release(*domains);
    lsaBlocks().release(*list);
    *domains = nullptr;
    *list = nullptr;
    return STATUS_NO_MEMORY;
  }
  return answers.status();
}

NTSTATUS openPolicy(const LSA_UNICODE_STRING* system, ACCESS_MASK access, LSA_HANDLE* policy) {
  const OwnAllocations own;
  const std::optional<std::wstring> name = system != nullptr ? textOf(*system) : std::wstring();
  if (policy == nullptr || !name) {
    return STATUS_INVALID_PARAMETER;
  }
  if (!machine().accounts().isThisComputer(*name)) {
    return RPC_NT_SERVER_UNAVAILABLE;
  }
  const NTSTATUS status = machine().accounts().policyStatus();
  if (status == STATUS_SUCCESS) {
    *policy = policies().open(access);
  }
  return status;
}

}  // namespace
}  // namespace vlplatform

using namespace vlplatform;

NTSTATUS LsaOpenPolicy(PLSA_UNICODE_STRING system, PLSA_OBJECT_ATTRIBUTES attributes, ACCESS_MASK access,
                       PLSA_HANDLE policy) {
  if (const DWORD planned = gate("LsaOpenPolicy")) {
    return statusOfFault(planned);
  }
  return attributes != nullptr ? openPolicy(system, access, policy) : STATUS_INVALID_PARAMETER;
}

NTSTATUS LsaLookupSids(LSA_HANDLE policy, ULONG count, PSID* sids, PLSA_REFERENCED_DOMAIN_LIST* domains,
                       PLSA_TRANSLATED_NAME* names) {
  const DWORD planned = gate("LsaLookupSids");
  if (sids == nullptr || domains == nullptr || names == nullptr || count == 0) {
    return STATUS_INVALID_PARAMETER;
  }
  *domains = nullptr;
  *names = nullptr;
  if (planned != ERROR_SUCCESS) {
    return statusOfFault(planned);
  }
  const OwnAllocations own;
  if (const NTSTATUS status = allowsLookup(policy); status != STATUS_SUCCESS) {
    return status;
  }
  Answers answers;
  for (ULONG i = 0; i < count; ++i) {
    const std::optional<SidValue> sid = SidValue::ofBlock(sids[i]);
    if (!sid) {
      return STATUS_INVALID_SID;
    }
    const std::wstring text = sid->text();
    Account account{{}, text, text, SidTypeUnknown};
    const NTSTATUS status = machine().accounts().bySid(text, &account);
    answers.add(status, account);
  }
  return deliver(answers, domains, names, listOfNames);
}

NTSTATUS LsaLookupNames2(LSA_HANDLE policy, ULONG flags, ULONG count, PLSA_UNICODE_STRING names,
                         PLSA_REFERENCED_DOMAIN_LIST* domains, PLSA_TRANSLATED_SID2* sids) {
  const DWORD planned = gate("LsaLookupNames2");
  if (names == nullptr || domains == nullptr || sids == nullptr || count == 0 || flags != 0) {
    return STATUS_INVALID_PARAMETER;
  }
  *domains = nullptr;
  *sids = nullptr;
  if (planned != ERROR_SUCCESS) {
    return statusOfFault(planned);
  }
  const OwnAllocations own;
  if (const NTSTATUS status = allowsLookup(policy); status != STATUS_SUCCESS) {
    return status;
  }
  Answers answers;
  for (ULONG i = 0; i < count; ++i) {
    const std::optional<std::wstring> name = textOf(names[i]);
    if (!name) {
      return STATUS_INVALID_PARAMETER;
    }
    Account account;
    const NTSTATUS status = machine().accounts().byName(*name, &account);
    answers.add(status, account);
  }
  return deliver(answers, domains, sids, listOfSids);
}

// The two releases do their work although a fault is planned, as FreeLibrary does it.

NTSTATUS LsaFreeMemory(PVOID block) {
  const DWORD planned = gate("LsaFreeMemory");
  const bool released = block == nullptr || lsaBlocks().release(block);
  return planned != ERROR_SUCCESS ? statusOfFault(planned) : released ? STATUS_SUCCESS : STATUS_INVALID_PARAMETER;
}

NTSTATUS LsaClose(LSA_HANDLE policy) {
  const DWORD planned = gate("LsaClose");
  const bool closed = policies().close(policy);
  return planned != ERROR_SUCCESS ? statusOfFault(planned) : closed ? STATUS_SUCCESS : STATUS_INVALID_HANDLE;
}
