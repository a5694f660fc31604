/// Result numbers in words.
#ifndef HOSTKIT_RESULTS_H
#define HOSTKIT_RESULTS_H

#include <vlhostkit/types.h>

#include <string>

std::string resultInWords(DWORD code);

#endif
