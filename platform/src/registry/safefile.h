/// Files that are whole at every moment.
#ifndef VLPLATFORM_SRC_REGISTRY_SAFEFILE_H
#define VLPLATFORM_SRC_REGISTRY_SAFEFILE_H

#include <optional>
#include <string>
#include <string_view>

namespace vlplatform::registry {

/// Replaces the file (where `path` is a link, the one it leads to), or makes it. Returns what went wrong, empty if
/// nothing did; then the file is what it was.
std::string replaceFile(const std::string& path, std::string_view bytes);

/// The bytes of a file; none if there is no such file. `*error` tells why one that is there can't be read.
std::optional<std::string> readFile(const std::string& path, std::string* error);

}  // namespace vlplatform::registry

#endif
