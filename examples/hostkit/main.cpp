// hostkit: the library's functions on the command line.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "arguments.h"
#include "command.h"
#include "console.h"
#include "logtap.h"
#include "machine.h"
#include "state.h"
#include "text.h"

namespace {

enum ExitCode : int { kDone = 0, kFailed = 1, kUsage = 2 };

constexpr const char* kNotes = R"(Text is UTF-8 in and out. The exit code is 0, or 1 if anything failed, or 2 if the
command line is not understood. Failures go to standard error; with --json they are
objects with "error" and "code" on standard output.)";

std::string tidy(std::string text) {
  std::erase(text, '\0');
  while (text.ends_with('\n')) {
    text.pop_back();
  }
  return text;
}

// Help, version, or what is wrong with the command line.
int explain(const CLI::App& app, const CLI::ParseError& error, Output& output) {
  std::ostringstream help;
  std::ostringstream complaint;
  const bool asked = app.exit(error, help, complaint) == static_cast<int>(CLI::ExitCodes::Success);
  if (asked) {
    output.print(tidy(help.str()));
    output.flush();
    return kDone;
  }
  // Without this a misspelt command is only told to be missing.
  if (const std::vector<std::string> unknown = app.remaining(true); !unknown.empty()) {
    complaint.str(inQuotes(tidy(unknown.front())) + " is not understood.\nRun with --help for more information.");
  }
  output.note("hostkit: " + tidy(complaint.str()));
  return kUsage;
}

int run(const std::vector<std::string>& arguments) {
  Context context;
  CLI::App app("The functions of the vlhostkitu library, on the command line.", "hostkit");
  app.allow_windows_style_options(false);
  app.set_version_flag("--version", "hostkit " HOSTKIT_VERSION, "Print the version and exit");
  app.add_flag("--json", context.output.json, "Print one JSON object a line");
  app.add_flag("--log", context.log, "Show the library's log records on standard error");
  addStateOption(app);
  addMachineOptions(app);
  app.require_subcommand(1);
  app.fallthrough();
  app.footer(kNotes);
  registerRegistry(app, context);
  registerTime(app, context);
  registerUser(app, context);
  registerSysFacts(app, context);
  registerToast(app, context);
  registerTse(app, context);
  registerTour(app, context);

  try {
    app.parse(argumentsForParser(arguments));
  } catch (const CLI::ParseError& error) {
    return explain(app, error, context.output);
  }
  std::optional<LogTap> log;
  if (context.log) {
    log.emplace([&](const std::string& line) { context.output.note(line); });
  }
  context.command();
  context.output.flush();
  return context.output.failed() ? kFailed : kDone;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    prepareStreams();
    return run(programArguments(argc, argv));
  } catch (const std::exception& error) {
    if (*error.what() != '\0') {
      std::fprintf(stderr, "hostkit: %s\n", error.what());
    }
    return kFailed;
  }
}
