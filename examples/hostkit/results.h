/// Result numbers in words.
#ifndef HOSTKIT_RESULTS_H
#define HOSTKIT_RESULTS_H

#include <vlhostkit/types.h>

#include <string>

std::string resultInWords(DWORD code);

/// What the registry functions return.
enum RegistryResult : int {
  kRegistryDone = 0,
  kRegistryRefused = -1,
  kRegistryTooSmall = -2,
  kRegistryBadArgument = -3,
  kRegistryOtherType = -4
};

std::string registryResultInWords(int result);

#endif
