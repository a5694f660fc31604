#include <string>

#include "machine.h"

namespace {

[[noreturn]] void refuse(const char* option) {
  throw CLI::ValidationError(option, "on Windows the machine is the one at hand, and can't be described");
}

}  // namespace

void addMachineOptions(CLI::App& app) {
  constexpr const char* kNot = "Not on Windows, where the machine is the one at hand";
  app.add_option_function<std::string>(
         "--machine", [](const std::string& /*file*/) { refuse("--machine"); }, kNot)
      ->group("");
  app.add_flag_callback(
         "--offline", [] { refuse("--offline"); }, kNot)
      ->group("");
}
