// Finds, creates, lists and removes the folders of keys. All access is relative to folder descriptors, so
// that no symbolic link below the top of a tree is ever followed.
#pragma once

#include <corvane/platform/linux/files/FileHandle.h>
#include <corvane/platform/linux/registry/KeyName.h>

#include <memory>

namespace corvane::os {

using SharedFolder = std::shared_ptr<const FileHandle>;

/// An open folder of a key and its location when it was opened.
struct KeyFolder {
    SharedFolder folder;
    SharedFolder parent;    ///< the folder that contains it; null at the top of a tree
    SharedFolder keyAbove;  ///< the folder of the key that it is a subkey of; not `parent` for a long name
    std::string entry;      ///< its name in `parent`
    bool isPrivate = false; ///< in the user's tree, which no other user may read
    bool isRoot = false;    ///< a predefined key

    int Get() const noexcept { return folder->Get(); }

    /// Whether the folder is no longer where it was opened: the key was deleted.
    bool IsDeleted() const noexcept;
};

/// Opens the top of a tree; with `create`, creates it and its missing parents.
ulong OpenTop(const std::string& path, bool create, KeyFolder& top);

/// ERROR_FILE_NOT_FOUND if there is no such key.
ulong FindSubkey(const KeyFolder& key, wstring_view name, KeyFolder& subkey);

/// Finds or creates a subkey; `created` is set if it was created. Atomic and durable.
ulong CreateSubkey(const KeyFolder& key, wstring_view name, KeyFolder& subkey, bool& created);

/// The names of the subkeys in the order of their lower-cased code units.
ulong ListSubkeys(const KeyFolder& key, std::vector<wstring>& names);

/// Deletes a key that has no subkeys (otherwise ERROR_ACCESS_DENIED), atomically with all its values.
ulong RemoveSubkey(const KeyFolder& key, wstring_view name);

/// The same for an open key itself, which is no predefined one. ERROR_KEY_DELETED if it is gone already.
ulong RemoveKey(const KeyFolder& key);

/// As ErrorFromErrno, except that EROFS becomes ERROR_ACCESS_DENIED.
ulong KeyError(int error) noexcept;

} // namespace corvane::os
