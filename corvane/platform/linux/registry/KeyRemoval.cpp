#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/files/FolderEntries.h>
#include <corvane/platform/linux/files/TemporaryFile.h>
#include <corvane/platform/linux/registry/FolderLock.h>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace corvane::os {

using namespace platform;

namespace {

// A deleted key is moved to the trash in one step before its files are removed. If the process is killed in
// between, no key name reaches the folder, and the next deletion in that place removes it.
constexpr const char* trash = ".deleted";
constexpr int maxTrash = 100;
constexpr int deepestLeftover = 32;

// Files and folders that begin with '.' are our own, as are folders of parts of long names. Anything else is
// foreign and must not be removed.
bool IsOurs(const char* entry, bool isFolder) {
    NamePart part;
    return entry[0] == '.' || (isFolder && ParseFolderName(entry, part) && !part.isLast);
}

void RemoveLeftovers(int parent, const char* entry, int depth) {
    if (const FileHandle folder(::openat(parent, entry, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        folder && depth < deepestLeftover) {
        FolderEntries entries(folder.Get());
        while (const char* inner = entries.Next()) {
            if (!IsOurs(inner, entries.IsFolder()))
                continue;
            if (entries.IsFolder())
                RemoveLeftovers(folder.Get(), inner, depth + 1);
            else
                ::unlinkat(folder.Get(), inner, 0);
        }
    }
    ::unlinkat(parent, entry, AT_REMOVEDIR);
}

ulong CheckRemovable(const KeyFolder& key) {
    std::vector<wstring> subkeys;
    if (const ulong error = ListSubkeys(key, subkeys))
        return error;
    if (!subkeys.empty())
        return ERROR_ACCESS_DENIED;
    FolderEntries entries(key.Get());
    while (const char* entry = entries.Next()) {
        if (!IsOurs(entry, entries.IsFolder()))
            return ERROR_ACCESS_DENIED;
    }
    return KeyError(entries.Error());
}

// The key above is locked.
ulong Remove(const KeyFolder& subkey) {
    // No value is written and no subkey created during the removal; waiting operations find the key deleted.
    FolderLock lock;
    if (const ulong error = lock.Acquire(subkey))
        return error;
    if (const ulong error = CheckRemovable(subkey))
        return error;
    const int above = subkey.keyAbove->Get();
    for (int number = 0;; ++number) {
        const std::string trashed = trash + std::to_string(number);
        RemoveLeftovers(above, trashed.c_str(), 0);
        if (::renameat(subkey.parent->Get(), subkey.entry.c_str(), above, trashed.c_str()) == 0) {
            RemoveLeftovers(above, trashed.c_str(), 0);
            break;
        }
        // Foreign or unreadable entries stay; try the next number.
        if ((errno != ENOTEMPTY && errno != EEXIST && errno != ENOTDIR) || number == maxTrash)
            return KeyError(errno);
    }
    FlushFolder(subkey.parent->Get());
    FlushFolder(above);
    return ERROR_SUCCESS;
}

} // namespace

ulong RemoveSubkey(const KeyFolder& key, wstring_view name) {
    FolderLock lock;
    if (const ulong error = lock.Acquire(key))
        return error;
    KeyFolder subkey;
    if (const ulong error = FindSubkey(key, name, subkey))
        return error;
    return Remove(subkey);
}

ulong RemoveKey(const KeyFolder& key) {
    KeyFolder above;
    above.folder = key.keyAbove;
    FolderLock lock;
    if (const ulong error = lock.Acquire(above))
        return error;
    return Remove(key);
}

} // namespace corvane::os
