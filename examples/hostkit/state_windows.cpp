#include <string>

#include "state.h"

void addStateOption(CLI::App& app) {
  app.add_option_function<std::string>(
         "--state",
         [](const std::string& /*file*/) {
           throw CLI::ValidationError("--state", "on Windows the registry is the machine's own, not a file");
         },
         "Not on Windows, where the registry is the machine's own")
      ->group("");
}
