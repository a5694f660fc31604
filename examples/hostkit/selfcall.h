/// The program, run by itself as a process of its own.
#ifndef HOSTKIT_SELFCALL_H
#define HOSTKIT_SELFCALL_H

#include <string>
#include <vector>

struct SelfCall {
  int exitCode;        ///< -1 if the process could not be run to its end
  std::string output;  ///< both streams, without the last line's end
};

SelfCall callSelf(const std::vector<std::string>& arguments);

#endif
