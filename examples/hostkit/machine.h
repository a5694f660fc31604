/// The machine that the program runs on.
#ifndef HOSTKIT_MACHINE_H
#define HOSTKIT_MACHINE_H

#include <CLI/CLI.hpp>

/// Adds "--machine", the file that describes the stand-in's machine, and "--offline", which takes it off the network.
/// On Windows the machine is the one at hand, and the options are refused.
void addMachineOptions(CLI::App& app);

#endif
