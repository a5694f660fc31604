// User ids of any shape to user name and NETBIOS domain name.
#include <cstddef>
#include <string>

#include <vlhostkit/accounts.h>

#include "accounts/names.h"
#include "frame/callframe.h"
#include "frame/width.h"

namespace {

using vl::kText;
using vl::Text;

struct Narrow : vl::Narrow {
  static constexpr auto translate = &vlNetGetUserNameDomainFromUPNA;
  static constexpr bool tracesOutput = false;
};

struct Wide : vl::Wide {
  static constexpr auto translate = &vlNetGetUserNameDomainFromUPNW;
  static constexpr bool tracesOutput = true;
};

constexpr DWORD kTranslationChars = 255;

// The translation of `upn` in `samName`; the number of the failure otherwise. A name that the buffer has no room for
// counts as one, though the translation calls it a success: there is no text then.
template <class Width, class String = typename Width::String>
DWORD translate(const String& upn, String& samName, bool& failed) {
  typename Width::Char buffer[kTranslationChars + 1]{};
  DWORD size = kTranslationChars;
  DWORD code = ERROR_SUCCESS;
  failed = !Width::translate(upn.c_str(), buffer, &size);
  if (failed) {
    code = GetLastError();
  } else if (size > kTranslationChars) {
    failed = true;
    code = ERROR_INSUFFICIENT_BUFFER;
  } else {
    buffer[kTranslationChars] = {};
    samName = buffer;
  }
  return code;
}

// The domain text up to its first blank, or to its first tab if there is no blank at all.
template <class String>
String firstWord(const String& domain) {
  using Char = typename String::value_type;
  std::size_t end = domain.find(Char{' '});
  if (end == String::npos) {
    end = domain.find(Char{'\t'});
  }
  return domain.substr(0, end);
}

// The results are set at the end: they may be the same objects as the arguments.
template <class Width, class String = typename Width::String>
int convert(const String& userId, const String& domain, String& userName, String& domainName) {
  using Char = typename Width::Char;
  DWORD result = ERROR_INVALID_PARAMETER;
  bool reachesExit = true;
  const vl::CallFrame frame(vl::kTag, L"vlNetConvertUserIdToNETBIOS",
                            vl::ExitIf(L"vlNetConvertUserIdToNETBIOS (%d)", result, reachesExit));
  txlogLogBin(vl::kTag, TXLOG_TRACE, domain.data(), static_cast<int>(domain.size() * sizeof(Char)),
              L"vlNetConvertUserIdToNETBIOS Domain name");
  txlogLog(vl::kTag, TXLOG_TRACE, L"vlNetConvertUserIdToNETBIOS Username");
  txlogLog(vl::kTag, TXLOG_TRACE, kText<Text(L"vlNetConvertUserIdToNETBIOS Domain = ") + Width::longConversion>,
           domain.c_str());
  if (userId.empty()) {
    return static_cast<int>(result);
  }
  String name = userId;
  if (userId.find(Char{'@'}) != String::npos) {
    txlogLog(vl::kTag, TXLOG_TRACE, L"vlNetConvertUserIdToNETBIOS UPN");
    bool failed = false;
    result = translate<Width>(userId, name, failed);
    if (failed) {
      txlogLog(vl::kTag, TXLOG_ERROR, L"vlNetConvertUserIdToNETBIOS UPN Translation failed (%d)", result);
      reachesExit = false;
      return static_cast<int>(result);
    }
  }
  const std::size_t backslash = name.find(Char{'\\'});
  String domainPart;
  if (backslash != String::npos) {
    txlogLog(vl::kTag, TXLOG_TRACE, L"vlNetConvertUserIdToNETBIOS SAM compatible name");
    domainPart = name.substr(0, backslash);
    name.erase(0, backslash + 1);
  } else {
    txlogLog(vl::kTag, TXLOG_TRACE, L"vlNetConvertUserIdToNETBIOS Use input directly");
    domainPart = firstWord(domain);
    name = userId;
  }
  userName = std::move(name);
  domainName = std::move(domainPart);
  result = ERROR_SUCCESS;
  return static_cast<int>(result);
}

template <class Width>
constexpr Text kFlatName = Text(L"vlNetConvertUserIdToNETBIOS") + Width::suffix;

// Only the wide form traces what it hands out.
template <class Width>
constexpr vl::NameTexts kFlatTexts{
    kText<kFlatName<Width> + Text(L" Insufficient buffer for user name (%d < %d)")>,
    Width::tracesOutput ? kText<kFlatName<Width> + Text(L" User name out")> : nullptr,
    kText<kFlatName<Width> + Text(L" Insufficient buffer for domain (%d < %d)")>,
    Width::tracesOutput ? kText<kFlatName<Width> + Text(L" Domain out = ") + Width::conversion> : nullptr, 0};

template <class Width, class Char = typename Width::Char>
int convertFlat(const Char* userId, const Char* domain, vl::NameBuffer<Char> user, vl::NameBuffer<Char> domainOut) {
  static constexpr Text kName = kFlatName<Width>;
  using String = typename Width::String;
  int result = ERROR_INVALID_PARAMETER;
  const vl::CallFrame frame(vl::kTag, kText<kName + Text(L" (%p,%p,%p,%p)")>,
                            vl::ExitWith(kText<kName + Text(L" (%d)")>, result), domain, user.size, domainOut.text,
                            domainOut.size);
  if (userId == nullptr || user.size == nullptr || domainOut.size == nullptr) {
    txlogLog(vl::kTag, TXLOG_ERROR, kText<kName + Text(L" Invalid parameter")>);
    return result;
  }
  txlogLog(vl::kTag, TXLOG_TRACE, kText<kName + Text(L" User name")>);
  if (domain != nullptr) {
    txlogLog(vl::kTag, TXLOG_TRACE, kText<kName + Text(L" Domain name = ") + Width::conversion>, domain);
  }
  String userName;
  String domainName;
  result = vlNetConvertUserIdToNETBIOS(userId, domain != nullptr ? String(domain) : String(), userName, domainName);
  if (result == ERROR_SUCCESS) {
    result = static_cast<int>(vl::deliver<Char>(kFlatTexts<Width>, userName, user, domainName, domainOut));
  }
  return result;
}

}  // namespace

int vlNetConvertUserIdToNETBIOS(const std::wstring& userId, const std::wstring& domain, std::wstring& userName,
                                std::wstring& domainName) {
  return convert<Wide>(userId, domain, userName, domainName);
}

int vlNetConvertUserIdToNETBIOS(const std::string& userId, const std::string& domain, std::string& userName,
                                std::string& domainName) {
  return convert<Narrow>(userId, domain, userName, domainName);
}

int vlNetConvertUserIdToNETBIOSW(LPCWSTR userId, LPCWSTR domain, LPWSTR userName, DWORD* userNameSize,
                                 LPWSTR domainName, DWORD* domainNameSize) {
  return convertFlat<Wide>(userId, domain, {userName, userNameSize}, {domainName, domainNameSize});
}

int vlNetConvertUserIdToNETBIOSA(LPCSTR userId, LPCSTR domain, LPSTR userName, DWORD* userNameSize, LPSTR domainName,
                                 DWORD* domainNameSize) {
  return convertFlat<Narrow>(userId, domain, {userName, userNameSize}, {domainName, domainNameSize});
}
