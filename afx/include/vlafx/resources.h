/// Which module holds a resource.
#ifndef VLAFX_RESOURCES_H
#define VLAFX_RESOURCES_H

#include <vlhostkit/types.h>

/// The first module that has the string resource `id`: the program, then the modules of AfxAddResourceModule, in order;
/// the program's handle if none has it. An empty string is as good as none.
VLAFX_API HINSTANCE AfxFindStringResourceHandle(UINT id);

/// The same for a dialog template, by its name or by MAKEINTRESOURCEW of its id.
VLAFX_API HINSTANCE AfxFindDialogResourceHandle(const wchar_t* templateName);

/// Adds a module to the search, with a CMemoryException* out of memory; one that is there already is not added again.
/// Takes one back. Any thread.
VLAFX_API void AfxAddResourceModule(HINSTANCE module);
VLAFX_API void AfxRemoveResourceModule(HINSTANCE module);

#endif
