#include "accountcalls.h"

#include <vlhostkit/accounts.h>
#include <vlhostkit/sysfacts.h>

#include <cstdlib>
#include <memory>

#include "text.h"

namespace {

struct FreeLocal {
  void operator()(void* block) const { LocalFree(block); }
};
struct FreeHeap {
  void operator()(void* block) const { HeapFree(GetProcessHeap(), 0, block); }
};
struct FreeRuntime {
  void operator()(void* block) const { std::free(block); }
};
struct CloseToken {
  void operator()(void* token) const { CloseHandle(token); }
};

// What a function of two texts gives, which a call with too little room tells the sizes of. Between the question and
// the call the machine may change: then all begins anew.
template <class Ask>
AccountAnswer askTwice(DWORD answerToQuestion, Ask ask) {
  constexpr int kMostTries = 10;
  DWORD result = ERROR_INSUFFICIENT_BUFFER;
  for (int tries = 0; tries < kMostTries && result == ERROR_INSUFFICIENT_BUFFER; ++tries) {
    DWORD userChars = 0;
    DWORD domainChars = 0;
    result = static_cast<DWORD>(ask(nullptr, &userChars, nullptr, &domainChars));
    if (result != answerToQuestion || userChars == 0 || domainChars == 0) {
      return {result};
    }
    std::wstring user(userChars, L'\0');
    std::wstring domain(domainChars, L'\0');
    result = static_cast<DWORD>(ask(user.data(), &userChars, domain.data(), &domainChars));
    if (result == ERROR_SUCCESS) {
      return {result, toUtf8({user.data(), userChars - 1}), toUtf8({domain.data(), domainChars - 1})};
    }
  }
  return {result};
}

// A BOOL's reason. Some functions leave the last-error value alone for an argument of no use: `otherwise` is set
// before the call.
template <class Call>
DWORD reasonOf(DWORD otherwise, Call call) {
  SetLastError(otherwise);
  return call() ? DWORD{ERROR_SUCCESS} : GetLastError();
}

// A SID's text by a function that counts in bytes.
template <class Write>
TextAnswer sidText(Write write) {
  DWORD bytes = 0;
  const DWORD result = reasonOf(ERROR_INVALID_SID, [&] { return write(nullptr, &bytes); });
  if (result != ERROR_INSUFFICIENT_BUFFER) {
    return {result};
  }
  std::wstring text(bytes / sizeof(wchar_t) + 1, L'\0');
  const DWORD written = reasonOf(ERROR_INVALID_SID, [&] { return write(text.data(), &bytes); });
  return {written, written == ERROR_SUCCESS ? toUtf8(text.c_str()) : std::string()};
}

TextAnswer textOfSid(PSID sid) {
  return sidText([sid](LPWSTR text, DWORD* bytes) { return vlSysConvertSIDW(sid, text, bytes); });
}

}  // namespace

AccountAnswer convertUserId(const std::string& id, const std::string& domain) {
  const std::wstring wideId = toWide(id);
  const std::wstring wideDomain = toWide(domain);
  return askTwice(ERROR_SUCCESS, [&](auto... room) {
    return vlNetConvertUserIdToNETBIOSW(wideId.c_str(), wideDomain.c_str(), room...);
  });
}

AccountAnswer sessionUser() {
  return askTwice(ERROR_SUCCESS, vlNetGetCurrentUserAndDomainW);
}

AccountAnswer processUser() {
  return askTwice(ERROR_INSUFFICIENT_BUFFER, vlNetGetCurrentProcessUserAndDomainW);
}

TextAnswer lookUpSid(const std::string& user, const std::string& domain) {
  PSID found = nullptr;
  const DWORD result = reasonOf(ERROR_INVALID_PARAMETER, [&] {
    return vlNetLookupUserNameW(toWide(user).c_str(), toWide(domain).c_str(), &found);
  });
  const std::unique_ptr<void, FreeHeap> sid(result == ERROR_SUCCESS ? found : nullptr);
  return sid ? textOfSid(sid.get()) : TextAnswer{result};
}

TextAnswer sidOfName(const std::string& name) {
  const std::size_t separator = name.find('\\');
  const std::string domain = separator != std::string::npos ? name.substr(0, separator) : std::string();
  const std::string user = separator != std::string::npos ? name.substr(separator + 1) : name;
  void* found = nullptr;
  const DWORD result = vlSysGetUserSIDW(toWide(user).c_str(), toWide(domain).c_str(), &found);
  // Also after a failure the block is ours. No block after a success: the platform knows nothing of the name.
  const std::unique_ptr<void, FreeRuntime> sid(found);
  return result != ERROR_SUCCESS ? TextAnswer{result} : sid ? textOfSid(sid.get()) : TextAnswer{ERROR_NONE_MAPPED};
}

TextAnswer sidOfProcess() {
  HANDLE opened = nullptr;
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &opened)) {
    return {GetLastError()};
  }
  const std::unique_ptr<void, CloseToken> token(opened);
  return sidText([&](LPWSTR text, DWORD* bytes) { return vlSysObtainSIDW(token.get(), text, bytes); });
}

TextAnswer sidRewritten(const std::string& text) {
  PSID read = nullptr;
  if (!ConvertStringSidToSidW(toWide(text).c_str(), &read)) {
    return {GetLastError()};
  }
  const std::unique_ptr<void, FreeLocal> sid(read);
  return textOfSid(sid.get());
}

TextAnswer initialName(const std::string& user, const std::string& domain) {
  const std::wstring wideUser = toWide(user);
  const std::wstring wideDomain = toWide(domain);
  DWORD chars = 0;
  const auto ask = [&](LPWSTR name) {
    return reasonOf(ERROR_BAD_PATHNAME, [&] {
      return vlNetGetInitialUserNameBeforeRenameW(wideUser.c_str(), wideDomain.c_str(), name, &chars);
    });
  };
  const DWORD result = ask(nullptr);
  if (result != ERROR_MORE_DATA || chars == 0) {
    return {result};
  }
  std::wstring name(chars, L'\0');
  const DWORD written = ask(name.data());
  return {written, written == ERROR_SUCCESS ? toUtf8({name.data(), chars - 1}) : std::string()};
}

DriveList fixedDrives() {
  wchar_t drive[3] = L"";
  auto chars = static_cast<DWORD>(std::size(drive));
  DriveList list{};
  int result = vlSysGetFixedDriveW(drive, &chars);
  for (; result == ERROR_SUCCESS; result = vlSysGetFixedDriveW(drive, &chars)) {
    list.drives.push_back(toUtf8(drive));
  }
  list.result = static_cast<DWORD>(result);
  return list;
}

TextAnswer systemDrive() {
  // Its buffer form has room for two characters, and the variable may hold anything.
  std::wstring drive;
  const auto result = static_cast<DWORD>(vlSysGetSystemDrive(drive));
  return {result, toUtf8(drive)};
}
