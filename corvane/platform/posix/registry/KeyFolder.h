// The folders of keys: found, made, listed. Only folder descriptors are gone by, so that no symbolic link
// below the top of a tree is ever followed.
#pragma once

#include <corvane/platform/posix/files/FileHandle.h>
#include <corvane/platform/posix/registry/KeyName.h>

#include <memory>

namespace corvane::posix {

using SharedFolder = std::shared_ptr<const FileHandle>;

/// An open folder of a key and where it stood when it was opened.
struct KeyFolder {
    SharedFolder folder;
    SharedFolder parent;    ///< the folder that holds it; null at the top of a tree
    std::string entry;      ///< its name in `parent`
    bool isPrivate = false; ///< in the user's tree, which nobody else may read

    int Get() const noexcept { return folder->Get(); }

    /// Whether the folder is gone from where it was opened: the key was deleted.
    bool IsDeleted() const noexcept;
};

/// Opens the top of a tree, or makes it with the missing folders above.
ulong OpenTop(const std::string& path, bool create, KeyFolder& top);

/// ERROR_FILE_NOT_FOUND if there is no such key.
ulong FindSubkey(const KeyFolder& key, wstring_view name, KeyFolder& subkey);

/// Finds or makes a subkey; `created` is set if it was made here. Whole and on disk, or not there.
ulong CreateSubkey(const KeyFolder& key, wstring_view name, KeyFolder& subkey, bool& created);

/// The names of the subkeys in the order of their lower-cased code units.
ulong ListSubkeys(const KeyFolder& key, std::vector<wstring>& names);

/// Deletes a key that has no subkeys (otherwise ERROR_ACCESS_DENIED): it is there with all its values or
/// gone.
ulong RemoveSubkey(const KeyFolder& key, wstring_view name);

/// ErrorFromErrno, except that a read-only file system is a denied access to a key.
ulong KeyError(int error) noexcept;

} // namespace corvane::posix
