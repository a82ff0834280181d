#pragma once

#include <corvane/foundations/WideString.h>
#include <corvane/platform/posix/files/FileHandle.h>

#include <string>

namespace corvane::posix {

/// Where a path ends: the open folder and the name in it, which is no symbolic link and need not exist.
struct TargetPath {
    FileHandle folder; ///< for use with the `...at` operations only
    std::string name;
};

/// Splits `path` into its open folder and its last name, which may be a symbolic link, anything else, or
/// missing. ERROR_PATH_NOT_FOUND for a missing folder.
ulong OpenFolderOf(const std::string& path, TargetPath& target);

/// Follows `path`, and the symbolic links at its end, to the target. ERROR_PATH_NOT_FOUND for a missing
/// folder, ERROR_ACCESS_DENIED for links that lead in a circle.
ulong FindTarget(std::string path, TargetPath& target);

} // namespace corvane::posix
