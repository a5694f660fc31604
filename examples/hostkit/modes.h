/// The user-interface mode in words.
#ifndef HOSTKIT_MODES_H
#define HOSTKIT_MODES_H

#include <vlhostkit/toast.h>

#include <string>

std::string modeInWords(HOSTKIT_UI_MODE mode);

#endif
