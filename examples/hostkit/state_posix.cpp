#include <cstdlib>
#include <stdexcept>
#include <string>

#include "arguments.h"
#include "state.h"

// The file is named before the first call of a registry function, which is when it is loaded.
void addStateOption(CLI::App& app) {
  CLI::Option* const option = app.add_option_function<std::string>(
      "--state",
      [](const std::string& file) {
        if (file.empty()) {
          throw CLI::ValidationError("--state", "the file has no name");
        }
        if (setenv("VLPLATFORM_REGISTRY", file.c_str(), 1) != 0) {
          throw std::runtime_error("the environment takes no more");
        }
      },
      "Keep the registry in this file of registry text (.reg); without it, it is in memory only");
  asWritten(option)->type_name("FILE");
}
