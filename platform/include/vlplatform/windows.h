/// The stand-in's counterpart of <windows.h>: the platform calls that the library uses, with their own names.
#ifndef VLPLATFORM_WINDOWS_H
#define VLPLATFORM_WINDOWS_H

#include <vlplatform/basetypes.h>
#include <vlplatform/crt.h>
#include <vlplatform/dialogs.h>
#include <vlplatform/errors.h>
#include <vlplatform/files.h>
#include <vlplatform/heap.h>
#include <vlplatform/lsa.h>
#include <vlplatform/messages.h>
#include <vlplatform/modules.h>
#include <vlplatform/msi.h>
#include <vlplatform/network.h>
#include <vlplatform/oleauto.h>
#include <vlplatform/registry.h>
#include <vlplatform/resources.h>
#include <vlplatform/security.h>
#include <vlplatform/sessions.h>
#include <vlplatform/system.h>
#include <vlplatform/text.h>
#include <vlplatform/time.h>
#include <vlplatform/version.h>

#endif
