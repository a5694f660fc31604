/// What is found under a path.
#ifndef VLPLATFORM_SRC_FILES_CONTENT_H
#define VLPLATFORM_SRC_FILES_CONTENT_H

#include <filesystem>

#include <vlplatform/basetypes.h>

#include "path.h"

namespace vlplatform::files {

/// ERROR_SUCCESS and where it is on the computer at hand, or why there is nothing.
DWORD find(const FullPath& path, std::filesystem::path* found);

/// 0 for a file that has none, INVALID_FILE_ATTRIBUTES if it is gone.
DWORD attributesOf(const std::filesystem::path& file);

/// As the platform compares: "C:\name" in lower case.
std::wstring comparable(FullPath path);

}  // namespace vlplatform::files

#endif
