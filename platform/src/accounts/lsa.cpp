// Policies, and the lookups through them.
#include <optional>
#include <string>

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

// A list with all that it points to, in one block: behind the list the SID, behind that the text.
template <class List>
struct Parts {
  List* list = nullptr;
  PSID sid = nullptr;
  LSA_UNICODE_STRING text{};

  // Without a list if there is no memory, without a SID if there is none.
  Parts(const std::optional<SidValue>& value, std::wstring_view characters) {
    const std::size_t sidSize = value ? value->length() : 0;
    const std::size_t textSize = characters.size() * sizeof(wchar_t);
    const std::size_t size = sizeof(List) + sidSize + textSize + sizeof(wchar_t);
    auto* const block = static_cast<std::byte*>(lsaBlocks().allocate(size, true));
    if (block == nullptr) {
      return;
    }
    list = reinterpret_cast<List*>(block);
    if (value) {
      sid = block + sizeof(List);
      value->write(sid);
    }
    auto* const place = reinterpret_cast<wchar_t*>(block + sizeof(List) + sidSize);
    copyTerminated(characters, place);
    text = {static_cast<USHORT>(textSize), static_cast<USHORT>(textSize + sizeof(wchar_t)), place};
  }
};

// Of one domain, or of none for an unknown account.
LSA_REFERENCED_DOMAIN_LIST* domainsOf(const Account& account, const std::optional<SidValue>& sid) {
  struct List {
    LSA_REFERENCED_DOMAIN_LIST head;
    LSA_TRUST_INFORMATION domain;
  };
  const auto ofDomain = sid && account.use != SidTypeDomain ? std::optional(sid->parent()) : sid;
  const Parts<List> parts(ofDomain, account.domain);
  if (parts.list == nullptr) {
    return nullptr;
  }
  if (sid) {
    *parts.list = {{1, &parts.list->domain}, {parts.text, parts.sid}};
  }
  return &parts.list->head;
}

LSA_TRANSLATED_NAME* nameOf(const Account& account, LONG domain, const std::optional<SidValue>& /*sid*/) {
  const Parts<LSA_TRANSLATED_NAME> parts(std::nullopt, account.name);
  if (parts.list != nullptr) {
    *parts.list = {account.use, parts.text, domain};
  }
  return parts.list;
}

LSA_TRANSLATED_SID2* sidOf(const Account& account, LONG domain, const std::optional<SidValue>& sid) {
  const Parts<LSA_TRANSLATED_SID2> parts(sid, {});
  if (parts.list != nullptr) {
    *parts.list = {account.use, parts.sid, domain, 0};
  }
  return parts.list;
}

NTSTATUS allowsLookup(LSA_HANDLE policy) {
  const std::optional<ACCESS_MASK> access = policies().find(policy);
  if (!access) {
    return STATUS_INVALID_HANDLE;
  }
  const bool allowed = (*access & (POLICY_LOOKUP_NAMES | GENERIC_EXECUTE | MAXIMUM_ALLOWED)) != 0;
  return allowed ? STATUS_SUCCESS : STATUS_ACCESS_DENIED;
}

// The frame of the lookups of one account: `find` asks the machine for it, `listOf` makes the second list.
template <class List, class Find, class ListOf>
NTSTATUS lookUp(const char* function, LSA_HANDLE policy, bool valid, LSA_REFERENCED_DOMAIN_LIST** domains, List** list,
                Find find, ListOf listOf) {
  const DWORD planned = gate(function);
  if (!valid || domains == nullptr || list == nullptr) {
    return STATUS_INVALID_PARAMETER;
  }
  *domains = nullptr;
  *list = nullptr;
  if (planned != ERROR_SUCCESS) {
    return statusOfFault(planned);
  }
  const OwnAllocations own;
  Account account;
  NTSTATUS status = allowsLookup(policy);
  if (status == STATUS_SUCCESS) {
    status = find(account);
  }
  if (status != STATUS_SUCCESS && status != STATUS_NONE_MAPPED) {
    return status;
  }
  const bool known = status == STATUS_SUCCESS;
  account.use = known ? account.use : SidTypeUnknown;
  const std::optional<SidValue> sid = known ? SidValue::ofText(account.sid) : std::nullopt;
  *domains = domainsOf(account, sid);
  *list = listOf(account, known ? 0 : -1, sid);
  if (*domains == nullptr || *list == nullptr) {
    lsaBlocks().release(*domains);
    lsaBlocks().release(*list);
    *domains = nullptr;
    *list = nullptr;
    return STATUS_NO_MEMORY;
  }
  return status;
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
  const auto find = [&](Account& account) {
    const std::optional<SidValue> sid = SidValue::ofBlock(*sids);
    if (!sid) {
      return STATUS_INVALID_SID;
    }
    account.name = sid->text();
    return machine().accounts().bySid(sid->text(), &account);
  };
  return lookUp("LsaLookupSids", policy, sids != nullptr && count == 1, domains, names, find, nameOf);
}

NTSTATUS LsaLookupNames2(LSA_HANDLE policy, ULONG flags, ULONG count, PLSA_UNICODE_STRING names,
                         PLSA_REFERENCED_DOMAIN_LIST* domains, PLSA_TRANSLATED_SID2* sids) {
  const auto find = [&](Account& account) {
    const std::optional<std::wstring> name = textOf(*names);
    return name ? machine().accounts().byName(*name, &account) : STATUS_INVALID_PARAMETER;
  };
  const bool valid = names != nullptr && count == 1 && flags == 0;
  return lookUp("LsaLookupNames2", policy, valid, domains, sids, find, sidOf);
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
