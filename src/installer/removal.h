/// Removal of files and folders, with the restart as the one fall-back. Nothing reports a failure.
#ifndef VL_INSTALLER_REMOVAL_H
#define VL_INSTALLER_REMOVAL_H

namespace vl {

/// Has the platform remove a file or an empty folder when the machine starts next.
void markForRestart(const wchar_t* path);

/// Deletes a file, or marks it.
void removeEntry(const wchar_t* path);

/// `folder` ends in a backslash. A link is not followed.
void emptyTree(const wchar_t* folder);
void removeTree(const wchar_t* folder);

}  // namespace vl

#endif
