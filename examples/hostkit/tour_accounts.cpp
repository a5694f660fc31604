#include <string>

#include "accountcalls.h"
#include "text.h"
#include "tour.h"
#include "tour_caches.h"

namespace {

void showAccount(TourPage& page, const std::string& label, const AccountAnswer& answer) {
  if (answer.result != ERROR_SUCCESS) {
    page.missing(label, answer.result);
    return;
  }
  page.fact(label, answer.name().empty() ? "nobody" : shown(answer.name()));
}

void showText(TourPage& page, const std::string& label, const TextAnswer& answer) {
  if (answer.result == ERROR_SUCCESS) {
    page.fact(label, shown(answer.text));
  } else {
    page.missing(label, answer.result);
  }
}

}  // namespace

void tourAccounts(TourPage& page) {
  page.title("Accounts: who runs this program");
  showAccount(page, "Logged on to the session", sessionUser());
  const AccountAnswer process = processUser();
  showAccount(page, "The account of the process", process);
  showText(page, "Its SID, from the token", sidOfProcess());
  if (process.result == ERROR_SUCCESS) {
    showText(page, "Its SID, by name", sidOfName(process.name()));
    showText(page, "Its SID, from authority or cache", lookUpSid(process.user, process.domain));
  }
  showText(page, "Everyone", sidOfName("Everyone"));

  page.title("User ids: what they are taken for, with --domain DESK");
  for (const char* const id : {"alice", "CORP\\alice"}) {
    showAccount(page, id, convertUserId(id, "DESK"));
  }

  page.title("Drives");
  const DriveList drives = fixedDrives();
  for (const std::string& drive : drives.drives) {
    page.fact(drive, "fixed");
  }
  if (drives.result != ERROR_INVALID_DRIVE) {
    page.missing("The next drive", drives.result);
  }
  showText(page, "The system is on", systemDrive());

  tourCaches(page);
}
