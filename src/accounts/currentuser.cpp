// Who is logged on to the session that the process runs in.
#include <string>

#include <vlhostkit/accounts.h>

#include "accounts/names.h"
#include "frame/callframe.h"
#include "frame/handle.h"
#include "frame/width.h"

namespace {

using vl::kText;
using vl::Text;

struct Narrow : vl::Narrow {
  static constexpr const wchar_t* entry = L"GetCurrentUserAndDomain std::string";
  static constexpr auto query = &WTSQuerySessionInformationA;
};

struct Wide : vl::Wide {
  static constexpr const wchar_t* entry = L"GetCurrentUserAndDomain";
  static constexpr auto query = &WTSQuerySessionInformationW;
};

// Sets `text` and returns true, or the last-error value says why not.
template <class Width, class String = typename Width::String>
bool query(WTS_INFO_CLASS what, String& text) {
  vl::SessionBlock<typename Width::Char*> block;
  DWORD bytes = 0;
  if (!Width::query(WTS_CURRENT_SERVER_HANDLE, WTS_CURRENT_SESSION, what, block.put(), &bytes)) {
    return false;
  }
  text = block ? String(block.get()) : String();
  return true;
}

template <class Width, class String = typename Width::String>
int currentUser(String& userName, String& domainName) {
  DWORD result = ERROR_SUCCESS;
  bool reachesExit = false;
  const vl::CallFrame frame(vl::kTag, Width::entry, vl::ExitIf(L"GetCurrentUserAndDomain (%d)", result, reachesExit));
  txlogLog(vl::kTag, TXLOG_TRACE, L"GetCurrentUserAndDomain Retrieve username and domain");
  if (!query<Width>(WTSUserName, userName)) {
    result = GetLastError();
    // In place of the exit record, and so of its level.
    txlogLog(vl::kTag, TXLOG_EXIT, L"GetCurrentUserAndDomain Unable to get the username (%d)", result);
    return static_cast<int>(result);
  }
  if (!query<Width>(WTSDomainName, domainName)) {
    result = GetLastError();
    txlogLog(vl::kTag, TXLOG_ERROR, L"GetCurrentUserAndDomain Unable to get the domain name (%d)", result);
    return static_cast<int>(result);
  }
  txlogLogBin(vl::kTag, TXLOG_TRACE, domainName.data(),
              static_cast<int>(domainName.size() * sizeof(typename Width::Char)), L"GetCurrentUserAndDomain Domain");
  reachesExit = true;
  return static_cast<int>(result);
}

template <class Width>
constexpr Text kFlatName = Text(L"vlNetGetCurrentUserAndDomain") + Width::suffix;

template <class Width>
constexpr vl::NameTexts kFlatTexts{
    kText<kFlatName<Width> + Text(L" Insufficient buffer for user's name (%d < %d)")>, nullptr,
    kText<kFlatName<Width> + Text(L" Insufficient buffer for user's account domain (%d < %d)")>, nullptr, 1};

template <class Width, class Char = typename Width::Char>
int currentUserFlat(vl::NameBuffer<Char> user, vl::NameBuffer<Char> domain) {
  static constexpr Text kName = kFlatName<Width>;
  int result = ERROR_INVALID_PARAMETER;
  const vl::CallFrame frame(vl::kTag, kText<kName + Text(L" (%p,%p,%p)")>,
                            vl::ExitWith(kText<kName + Text(L" (%d)")>, result), user.size, domain.text, domain.size);
  if (user.size == nullptr || domain.size == nullptr) {
    txlogLog(vl::kTag, TXLOG_ERROR, kText<kName + Text(L" invalid parameter")>);
    return result;
  }
  typename Width::String userName;
  typename Width::String domainName;
  result = vlNetGetCurrentUserAndDomain(userName, domainName);
  if (result == ERROR_SUCCESS) {
    result = static_cast<int>(vl::deliver<Char>(kFlatTexts<Width>, userName, user, domainName, domain));
  }
  return result;
}

}  // namespace

int vlNetGetCurrentUserAndDomain(std::wstring& userName, std::wstring& domainName) {
  return currentUser<Wide>(userName, domainName);
}

int vlNetGetCurrentUserAndDomain(std::string& userName, std::string& domainName) {
  return currentUser<Narrow>(userName, domainName);
}

int vlNetGetCurrentUserAndDomainW(LPWSTR userName, DWORD* userNameSize, LPWSTR domainName, DWORD* domainNameSize) {
  return currentUserFlat<Wide>({userName, userNameSize}, {domainName, domainNameSize});
}

int vlNetGetCurrentUserAndDomainA(LPSTR userName, DWORD* userNameSize, LPSTR domainName, DWORD* domainNameSize) {
  return currentUserFlat<Narrow>({userName, userNameSize}, {domainName, domainNameSize});
}
