/// What a family of commands needs to take part: one source file with a function that registers its commands, and a
/// line in main.cpp that calls it.
#ifndef HOSTKIT_COMMAND_H
#define HOSTKIT_COMMAND_H

#include <CLI/CLI.hpp>
#include <functional>

#include "output.h"

struct Context {
  Output output;
  bool log = false;
  /// The command that was named: set while the arguments are parsed, run when all of them are known.
  std::function<void()> command;
};

void registerRegistry(CLI::App& app, Context& context);
void registerSysFacts(CLI::App& app, Context& context);
void registerTime(CLI::App& app, Context& context);
void registerToast(CLI::App& app, Context& context);
void registerTour(CLI::App& app, Context& context);
void registerUser(CLI::App& app, Context& context);
void registerTse(CLI::App& app, Context& context);

#endif
