#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/files/FolderEntries.h>
#include <corvane/platform/linux/files/TemporaryFile.h>
#include <corvane/platform/linux/registry/FolderLock.h>
#include <corvane/platform/linux/registry/KeyFolder.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace corvane::os {

using namespace platform;

namespace {

constexpr int topFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
constexpr int folderFlags = topFlags | O_NOFOLLOW;

mode_t FolderMode(bool isPrivate) noexcept {
    return isPrivate ? 0700 : 0755;
}

// ERROR_FILE_NOT_FOUND for anything but a folder, symbolic links included.
ulong OpenEntry(const SharedFolder& parent, const std::string& entry, KeyFolder& opened) {
    FileHandle handle(::openat(parent->Get(), entry.c_str(), folderFlags));
    if (!handle)
        return errno == ENOTDIR || errno == ELOOP ? ERROR_FILE_NOT_FOUND : KeyError(errno);
    opened.folder = std::make_shared<const FileHandle>(std::move(handle));
    opened.parent = parent;
    opened.entry = entry;
    return ERROR_SUCCESS;
}

// Creates a folder with the intended mode, regardless of the umask.
ulong MakeEntry(const SharedFolder& parent, const std::string& entry, KeyFolder& made) {
    const mode_t mode = FolderMode(made.isPrivate);
    if (::mkdirat(parent->Get(), entry.c_str(), mode) != 0)
        return errno == EEXIST ? ERROR_ACCESS_DENIED : KeyError(errno);
    if (const ulong error = OpenEntry(parent, entry, made))
        return error;
    if (::fchmod(made.Get(), mode) != 0)
        return KeyError(errno);
    FlushFolder(parent->Get());
    return ERROR_SUCCESS;
}

// Creates the missing folders of an absolute path, each flushed to disk before the next.
bool MakeFolders(const std::string& path, mode_t mode) {
    for (std::size_t begin = 0, end = 0; end != std::string::npos; begin = end) {
        end = path.find('/', begin + 1);
        const std::string folder = path.substr(0, end);
        if (::mkdir(folder.c_str(), mode) != 0) {
            if (errno != EEXIST)
                return false;
            continue;
        }
        const FileHandle above(::open(path.substr(0, begin + 1).c_str(), topFlags));
        if (::chmod(folder.c_str(), mode) != 0)
            return false;
        if (above)
            ::fsync(above.Get());
    }
    return true;
}

using Parts = std::vector<NamePart>;

// Tries the requested letter case first and reads the folder only if that is missing.
ulong FindParts(const SharedFolder& folder, Parts::const_iterator part, KeyFolder& found) {
    const auto findBelow = [&](const std::string& entry) {
        const ulong error = OpenEntry(folder, entry, found);
        if (error || part->isLast)
            return error;
        const SharedFolder next = found.folder;
        return FindParts(next, part + 1, found);
    };
    const std::string exact = FolderNameOf(*part);
    if (const ulong error = findBelow(exact); error != ERROR_FILE_NOT_FOUND)
        return error;
    FolderEntries entries(folder->Get());
    NamePart other;
    while (const char* entry = entries.Next()) {
        if (entry == exact || !ParseFolderName(entry, other) || other.isLast != part->isLast ||
            other.text.size() != part->text.size() || CompareKeyNames(other.text, part->text) != 0)
            continue;
        if (const ulong error = findBelow(entry); error != ERROR_FILE_NOT_FOUND)
            return error;
    }
    return entries.Error() ? KeyError(entries.Error()) : ERROR_FILE_NOT_FOUND;
}

ulong MakeParts(SharedFolder folder, const Parts& parts, KeyFolder& made) {
    for (const NamePart& part : parts) {
        const std::string entry = FolderNameOf(part);
        ulong error = part.isLast ? ERROR_FILE_NOT_FOUND : OpenEntry(folder, entry, made);
        if (error == ERROR_FILE_NOT_FOUND)
            error = MakeEntry(folder, entry, made);
        if (error)
            return error;
        folder = made.folder;
    }
    return ERROR_SUCCESS;
}

ulong AppendNames(int folder, const wstring& front, std::vector<wstring>& names) {
    FolderEntries entries(folder);
    NamePart part;
    while (const char* entry = entries.Next()) {
        if (!ParseFolderName(entry, part) || !entries.IsFolder() ||
            front.size() + part.text.size() > longestKeyName)
            continue;
        if (part.isLast) {
            names.push_back(front + part.text);
            continue;
        }
        const FileHandle inner(::openat(folder, entry, folderFlags));
        if (!inner)
            return KeyError(errno);
        if (const ulong error = AppendNames(inner.Get(), front + part.text, names))
            return error;
    }
    return KeyError(entries.Error());
}

} // namespace

bool KeyFolder::IsDeleted() const noexcept {
    struct stat own {};
    struct stat there {};
    return parent && (::fstat(Get(), &own) != 0 ||
                      ::fstatat(parent->Get(), entry.c_str(), &there, AT_SYMLINK_NOFOLLOW) != 0 ||
                      own.st_ino != there.st_ino || own.st_dev != there.st_dev);
}

ulong OpenTop(const std::string& path, bool create, KeyFolder& top) {
    FileHandle handle(::open(path.c_str(), topFlags));
    if (!handle && errno == ENOENT && create) {
        if (!MakeFolders(path, FolderMode(top.isPrivate)))
            return KeyError(errno);
        handle = FileHandle(::open(path.c_str(), topFlags));
    }
    if (!handle)
        return KeyError(errno);
    top.folder = std::make_shared<const FileHandle>(std::move(handle));
    return ERROR_SUCCESS;
}

ulong FindSubkey(const KeyFolder& key, wstring_view name, KeyFolder& subkey) {
    const Parts parts = PartsOf(name);
    subkey.isPrivate = key.isPrivate;
    subkey.keyAbove = key.folder;
    return FindParts(key.folder, parts.begin(), subkey);
}

ulong CreateSubkey(const KeyFolder& key, wstring_view name, KeyFolder& subkey, bool& created) {
    if (const ulong error = FindSubkey(key, name, subkey); error != ERROR_FILE_NOT_FOUND)
        return error;
    FolderLock lock;
    if (const ulong error = lock.Acquire(key))
        return error;
    // Another process may have created it before the lock was acquired, perhaps in another letter case.
    if (const ulong error = FindSubkey(key, name, subkey); error != ERROR_FILE_NOT_FOUND)
        return error;
    created = true;
    return MakeParts(key.folder, PartsOf(name), subkey);
}

ulong ListSubkeys(const KeyFolder& key, std::vector<wstring>& names) {
    names.clear();
    if (const ulong error = AppendNames(key.Get(), wstring(), names))
        return error;
    std::sort(names.begin(), names.end(),
              [](const wstring& a, const wstring& b) { return CompareKeyNames(a, b) < 0; });
    return ERROR_SUCCESS;
}

ulong KeyError(int error) noexcept {
    return error == EROFS ? ERROR_ACCESS_DENIED : ErrorFromErrno(error);
}

} // namespace corvane::os
