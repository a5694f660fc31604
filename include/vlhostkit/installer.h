/// Custom actions of an installer: they clear away the product's resource files, and tell whether the machine offers
/// Terminal Services. The installer finds them by name in a DLL of the package; docs/installer.md tells how a package
/// is written.
///
/// Nothing here writes to the log. No state is kept between calls: every action loads the installer's library
/// ("msi.dll") and releases it before it returns. An action runs on the thread that the installer calls it on.
#ifndef VLHOSTKIT_INSTALLER_H
#define VLHOSTKIT_INSTALLER_H

#include <vlhostkit/types.h>

#ifdef _WIN32
#include <msi.h>
#endif

extern "C" {

/// The three clean-up actions read one property, CustomActionData, and remove what it names. `install` is the
/// installer's session handle.
///
/// They return 0, also if nothing could be removed or marked, and otherwise
///   1  the environment variable CommonProgramFiles is unset, or longer than 259 characters: the tree below the
///      property is done by then, nothing else is, and no folder around is marked (not MSIDeleteFile)
///   2  CustomActionData can't be read, or has more than 259 characters
///   or the platform's number if "msi.dll" or its MsiGetPropertyW is not there.
/// With an EMPTY CustomActionData nothing is removed or marked but what CommonProgramFiles names.
///
/// How they remove:
/// - A file is deleted. If that fails (it is in use, read-only or protected), it is marked: the platform removes it
///   when the machine starts next. If that fails too, it stays, and nobody is told.
/// - A folder is emptied to its full depth and then deleted; if something stayed in it, it is marked behind its
///   content. A mark removes a folder only if it is empty at the restart. A name that is not there may be marked too.
/// - A folder with a reparse point (symbolic link, junction, a cloud's placeholder) is never walked, at no depth, a
///   Merged folder that is one included: it is removed or marked, and what it leads to stays. Links in the path above
///   Merged are the platform's affair. Whoever may write in a Merged folder could exchange a folder for a link while it
///   is being walked: let only administrators write there.
/// - A path of more than 259 characters is left alone: the entry, or all below a folder so deep, stays, and so does
///   then the folder around it.

/// Removes the resource trees. CustomActionData is the product's folder, WITH a backslash at its end ("C:\Product\"):
/// it is joined to the next word as it is. CommonProgramFiles names the shared program files ("C:\Common").
///
/// Removed, with all they hold: "C:\Product\Resources\Merged\" and "C:\Common\Velorin\Resources\Merged\".
/// Marked: "C:\Product\Resources\", "C:\Product\", "C:\Product\\..\" (the folder around the product's),
/// "C:\Common\Velorin\Resources\" and "C:\Common\Velorin\", in this order, so that of them all those go that are
/// empty at the restart.
/// Never touched: anything else, the other files of these folders included.
VLHOSTKIT_API DWORD WINAPI MSIDeleteResourceFiles(MSIHANDLE install);

/// Removes the one file whose path CustomActionData is. A folder is not deleted; it is marked, and goes at the restart
/// if it is empty then.
VLHOSTKIT_API DWORD WINAPI MSIDeleteFile(MSIHANDLE install);

/// Removes what is in the two Merged folders, sub-folders included, and leaves the two folders in place.
/// CustomActionData as for MSIDeleteResourceFiles. Only content that can't be deleted is marked, and the names of the
/// sub-folders. A Merged folder that is a link is left alone.
VLHOSTKIT_API DWORD WINAPI MSICleanMergedFolders(MSIHANDLE install);

/// Whether the machine offers Terminal Services: 1 yes, 0 no, -1 undetermined. Nothing is changed.
///
///   systems outside the NT line   -1
///   major version 4 and less      1 if "Terminal Server" is in the registry's list of product suites, else 0
///   minor version 0 and 1         what the platform's test of the suite says; -1 without that test
///   minor version 2 and more      the same, but where the suite is there: 1 if the registry allows connections,
///                                 0 if it denies them, -1 if it does not say
/// Only the minor version counts in the last two rows: 5.0 and 6.1 are alike, and so are 5.2 and 6.2.
VLHOSTKIT_API int IsTerminalServicesEnabled();

/// The same as an installer's action: the answer is also put into the property TSE_ENABLED, as "1", "0" or "-1". The
/// property stays as it was if the installer's library is not there.
///
/// The result is the ANSWER and no Win32 number. Installers take 1 and -1 for a failed action: the package must say
/// that the result is to be ignored (Return="ignore").
VLHOSTKIT_API int WINAPI DetectTSE(MSIHANDLE install);

}  // extern "C"

#endif
