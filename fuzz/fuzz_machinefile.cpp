// Machines in files: whatever the bytes, the file is taken or refused with words that name it, and a machine that was
// taken answers questions.
#include <sys/mman.h>
#include <unistd.h>

#include <stdexcept>
#include <vector>

#include <vlhostkit/accounts.h>
#include <vlhostkit/sysfacts.h>

#include <hostkit/machinefile.h>

#include "fuzz.h"

static void ask(const std::vector<std::wstring>& domains) {
  // Who runs the program is an account, by its SID and by its name, if the authority may be asked.
  vlplatform::Accounts& accounts = vlplatform::machine().accounts();
  vlplatform::Account account;
  const bool known =
      accounts.policyStatus() == STATUS_SUCCESS && accounts.bySid(accounts.processUser(), &account) == STATUS_SUCCESS;
  DWORD userSize = 0, domainSize = 0;
  const int asked = vlNetGetCurrentProcessUserAndDomainW(nullptr, &userSize, nullptr, &domainSize);
  CHECK(known ? asked == ERROR_INSUFFICIENT_BUFFER : asked != 0);
  if (known) {
    const fuzz::Block<wchar_t> user(userSize), domain(domainSize);
    CHECK(vlNetGetCurrentProcessUserAndDomainW(user.data(), &userSize, domain.data(), &domainSize) == 0);
    CHECK(user.data() == account.name && domain.data() == account.domain);
  }
  std::wstring user, domain, drive;
  CHECK(vlNetGetCurrentUserAndDomain(user, domain) == 0);
  int drives = 0;
  while (vlSysGetFixedDrive(drive) == ERROR_SUCCESS) CHECK(++drives <= 26 && drive.size() == 2 && drive[1] == L':');
  vlSysGetSystemDrive(drive);
  for (const std::wstring& name : domains) {
    PSID sid = nullptr;
    const BOOL found = vlNetLookupUserNameW(L"alice", name.c_str(), &sid);
    CHECK(found ? IsValidSid(sid) && HeapFree(GetProcessHeap(), 0, sid) : sid == nullptr && GetLastError() != 0);
    const int result = vlNetConvertUserIdToNETBIOS(L"alice@" + name, name, user, domain);
    CHECK(result != 0 || !user.empty());
  }
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const int file = memfd_create("machine", 0);
  static const std::string path = "/proc/self/fd/" + std::to_string(file);
  CHECK(ftruncate(file, 0) == 0 && pwrite(file, data, size, 0) == static_cast<ssize_t>(size));
  vlplatform::machine().reset();
  std::vector<std::wstring> domains;
  try {
    domains = describeMachine(path);
  } catch (const std::runtime_error& error) {
    const std::string_view words = error.what();
    CHECK(words.substr(0, path.size() + 2) == path + ": " && words.size() > path.size() + 2);
    CHECK(std::none_of(words.begin(), words.end(), [](char c) { return c >= 0 && c < ' '; }));
    return 0;
  }
  ask(domains);
  return 0;
}
