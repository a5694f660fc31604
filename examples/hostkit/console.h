/// What the targets' consoles and command lines do differently.
#ifndef HOSTKIT_CONSOLE_H
#define HOSTKIT_CONSOLE_H

#include <string>
#include <vector>

/// Makes the standard streams carry UTF-8 as it is, with the same bytes on all targets, and a closed one fail.
void prepareStreams();

/// Whether a write failed with `error` because nobody reads any more.
bool readerHasLeft(int error);

/// The arguments of the program without its name, as the platform has them. They may be ill-formed UTF-8.
std::vector<std::string> programArguments(int argc, char** argv);

#endif
