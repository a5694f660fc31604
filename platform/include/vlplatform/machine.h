/// The machine behind the stand-in. A program needs nothing of this header: the machine answers from the computer at
/// hand. A test describes another machine, makes calls fail, and counts what is open.
#ifndef VLPLATFORM_MACHINE_H
#define VLPLATFORM_MACHINE_H

#include <vlplatform/machine/accounts.h>
#include <vlplatform/machine/allocations.h>
#include <vlplatform/machine/clock.h>
#include <vlplatform/machine/counters.h>
#include <vlplatform/machine/drives.h>
#include <vlplatform/machine/environment.h>
#include <vlplatform/machine/faults.h>
#include <vlplatform/machine/files.h>
#include <vlplatform/machine/installer.h>
#include <vlplatform/machine/messages.h>
#include <vlplatform/machine/modules.h>
#include <vlplatform/machine/network.h>
#include <vlplatform/machine/registry.h>
#include <vlplatform/machine/sessions.h>
#include <vlplatform/machine/strings.h>
#include <vlplatform/machine/version.h>
#include <vlplatform/machine/windows.h>

namespace vlplatform {

/// One for the process, made at first use and never destroyed, so that late calls at exit still find it.
class Machine {
 public:
  VLPLATFORM_API static Machine& get();

  Faults& faults() { return faults_; }
  Counters& counters() { return counters_; }
  Clock& clock() { return clock_; }
  Modules& modules() { return modules_; }
  Strings& strings() { return strings_; }
  Accounts& accounts() { return accounts_; }
  Sessions& sessions() { return sessions_; }
  Network& network() { return network_; }
  Drives& drives() { return drives_; }
  Environment& environment() { return environment_; }
  Registry& registry() { return registry_; }
  Files& files() { return files_; }
  Installer& installer() { return installer_; }
  Version& version() { return version_; }
  Messages& messages() { return messages_; }
  Windows& windows() { return windows_; }

  /// Everything as it is at start: the computer at hand, no faults. Counters stay: what is open is open.
  VLPLATFORM_API void reset();

 private:
  Machine() = default;

  Faults faults_;
  Counters counters_;
  Clock clock_;
  Modules modules_;
  Strings strings_;
  Accounts accounts_;
  Sessions sessions_;
  Network network_;
  Drives drives_;
  Environment environment_;
  Registry registry_;
  Files files_;
  Installer installer_;
  Version version_;
  Messages messages_;
  Windows windows_;
};

inline Machine& machine() {
  return Machine::get();
}

}  // namespace vlplatform

#endif
