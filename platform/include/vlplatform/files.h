/// Files and folders, in the folder that stands for "C:" (vlplatform/machine/files.h). Without one nothing is found.
///
/// The rules are the platform's:
/// - Names are found in any case. "/" is a separator too, repeated separators count once, and "." and ".." are taken
///   out of a path before anything is looked up. A path without a drive begins in "C:\".
/// - A path of 260 characters and more, an empty one, or one on another drive is ERROR_PATH_NOT_FOUND, as is one with a
///   missing folder on its way; where only the last name is missing it is ERROR_FILE_NOT_FOUND.
/// - A symbolic link is a reparse point, and a folder if it leads to one. What removes it removes the link. As a folder
///   on the way to another name it is followed.
/// - A file whose owner may not write it is read-only.
///
/// Not modelled: names without their trailing dots and blanks, short names, streams, "\\?\" and the network.
#ifndef VLPLATFORM_FILES_H
#define VLPLATFORM_FILES_H

#include <vlplatform/basetypes.h>

#define INVALID_FILE_ATTRIBUTES 0xFFFFFFFFu
#define FILE_ATTRIBUTE_READONLY 0x1u
#define FILE_ATTRIBUTE_DIRECTORY 0x10u
#define FILE_ATTRIBUTE_NORMAL 0x80u
#define FILE_ATTRIBUTE_REPARSE_POINT 0x400u

#define MOVEFILE_DELAY_UNTIL_REBOOT 4u

/// The times are seconds since 1970, UTC. The time of creation is that of the last change.
struct _wfinddata64i32_t {
  unsigned attrib;
  std::int64_t time_create;
  std::int64_t time_access;
  std::int64_t time_write;
  std::uint32_t size;
  wchar_t name[260];
};

extern "C" {
VLPLATFORM_API DWORD GetFileAttributesW(LPCWSTR path);
/// ERROR_SHARING_VIOLATION for a file in use; ERROR_ACCESS_DENIED for a folder and for a read-only file.
VLPLATFORM_API BOOL DeleteFileW(LPCWSTR path);
/// ERROR_DIR_NOT_EMPTY, ERROR_SHARING_VIOLATION; ERROR_DIRECTORY for what is none; ERROR_ACCESS_DENIED for "C:\".
VLPLATFORM_API BOOL RemoveDirectoryW(LPCWSTR path);
/// Only with a null target and MOVEFILE_DELAY_UNTIL_REBOOT (ERROR_NOT_SUPPORTED otherwise): notes the path, whether it
/// is there or not, where the platform looks at the next start, behind what is noted already: in the value
/// PendingFileRenameOperations of HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Control\Session Manager, as the text
/// "\??\" with the full path and an empty one. ERROR_ACCESS_DENIED if something else is stored there.
VLPLATFORM_API BOOL MoveFileExW(LPCWSTR path, LPCWSTR target, DWORD flags);

/// The runtime's walk over the names that match a pattern ("*" and "?" in its last name), by name, "." and ".." first
/// but in "C:\". What is there at the first call is what the walk finds. -1 at the start, and from _findclose, and -1
/// at the end: errno is ENOENT then, as if nothing matches, or EINVAL for no handle.
VLPLATFORM_API std::intptr_t _wfindfirst64i32(const wchar_t* pattern, _wfinddata64i32_t* entry);
VLPLATFORM_API int _wfindnext64i32(std::intptr_t handle, _wfinddata64i32_t* entry);
VLPLATFORM_API int _findclose(std::intptr_t handle);
}

#endif
