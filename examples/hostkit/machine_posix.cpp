#include <vlplatform/machine.h>

#include <memory>
#include <string>

#include "arguments.h"
#include "machine.h"
#include "machinefile.h"

using vlplatform::machine;

void addMachineOptions(CLI::App& app) {
  const auto file = std::make_shared<std::string>();
  const auto offline = std::make_shared<bool>(false);
  const CLI::Option* const described =
      asWritten(app.add_option("--machine", *file, "Answer as the machine that this file of JSON describes"))
          ->type_name("FILE");
  app.add_flag("--offline", *offline, "Off the network, and with no domain of the machine's file in reach");
  app.final_callback([described, file, offline] {
    if (described->count() != 0 && file->empty()) {
      throw CLI::ValidationError("--machine", "the file has no name");
    }
    const DescribedDomains domains = file->empty() ? DescribedDomains() : describeMachine(*file);
    if (!*offline) {
      return;
    }
    machine().network().setAlive(false);
    for (const std::wstring& domain : domains) {
      machine().accounts().setReachable(domain, false);
    }
  });
}
