#pragma once

#include <corvane/foundations/WideString.h>
#include <corvane/platform/linux/files/FileHandle.h>

#include <fcntl.h>
#include <string>

namespace corvane::os {

/// A resolved path: the open folder and a name in it, which is not a symbolic link and need not exist.
struct TargetPath {
    FileHandle folder; ///< for use with the `...at` operations only
    std::string name;
};

/// Splits `path` into its open folder and its last name, which may be missing or anything, a symbolic link
/// included. A relative path is resolved against the open folder `base`. ERROR_PATH_NOT_FOUND for a missing
/// folder.
ulong OpenFolderOf(const std::string& path, TargetPath& target, int base = AT_FDCWD);

/// Follows `path` and the symbolic links at its end to the target. ERROR_PATH_NOT_FOUND for a missing folder,
/// ERROR_ACCESS_DENIED for a loop of links.
ulong FindTarget(std::string path, TargetPath& target);

} // namespace corvane::os
