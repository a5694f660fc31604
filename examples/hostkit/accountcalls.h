/// Accounts, SIDs and drives as the program shows them: asked of the library, kept as text.
#ifndef HOSTKIT_ACCOUNTCALLS_H
#define HOSTKIT_ACCOUNTCALLS_H

#include <vlhostkit/types.h>

#include <string>
#include <vector>

/// A text, or the result that there was instead.
struct TextAnswer {
  DWORD result;
  std::string text{};
};

/// A user and a domain, either of which may be empty, or the result that there was instead.
struct AccountAnswer {
  DWORD result;
  std::string user{};
  std::string domain{};

  /// "DOMAIN\user", or the user alone.
  std::string name() const { return domain.empty() ? user : domain + '\\' + user; }
};

/// The fixed drives, "C:" for instance, and what ended the list: ERROR_INVALID_DRIVE where there are no more.
struct DriveList {
  DWORD result;
  std::vector<std::string> drives{};
};

AccountAnswer convertUserId(const std::string& id, const std::string& domain);
AccountAnswer sessionUser();
AccountAnswer processUser();

/// The account's SID from the local security authority, or from the cache.
TextAnswer lookUpSid(const std::string& user, const std::string& domain);
/// The same without a cache, for "DOMAIN\user" or a name alone.
TextAnswer sidOfName(const std::string& name);
TextAnswer sidOfProcess();
/// SID text as the library writes it, after the platform has read it.
TextAnswer sidRewritten(const std::string& text);
/// The name from before a rename.
TextAnswer initialName(const std::string& user, const std::string& domain);

DriveList fixedDrives();
TextAnswer systemDrive();

#endif
