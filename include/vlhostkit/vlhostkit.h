/// Everything that vlhostkitu exports.
#ifndef VLHOSTKIT_VLHOSTKIT_H
#define VLHOSTKIT_VLHOSTKIT_H

#include <vlhostkit/accounts.h>
#include <vlhostkit/installer.h>
#include <vlhostkit/registry.h>
#include <vlhostkit/securetext.h>
#include <vlhostkit/sysfacts.h>
#include <vlhostkit/timetext.h>
#include <vlhostkit/toast.h>
#include <vlhostkit/types.h>

#endif
