/// Where the program's registry is kept.
#ifndef HOSTKIT_STATE_H
#define HOSTKIT_STATE_H

#include <CLI/CLI.hpp>

/// Adds "--state": the registry text file that the stand-in's registry is kept in. On Windows the registry is the
/// machine's own, and the option is refused.
void addStateOption(CLI::App& app);

#endif
