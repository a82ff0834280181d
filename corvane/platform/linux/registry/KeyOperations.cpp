#include <corvane/platform/linux/registry/KeyPath.h>
#include <corvane/platform/linux/registry/OpenKeys.h>
#include <corvane/platform/linux/registry/RegistryRoots.h>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace corvane {

using namespace platform;
using namespace os;

namespace {

wstring_view PathOf(const wchar* subKey) noexcept {
    return subKey ? wstring_view(subKey) : wstring_view();
}

// The file permissions are the access rights. Read permission was checked when the folder was opened.
ulong CheckAccess(const KeyFolder& key, ulong access) noexcept {
    const bool isWriting = (access & (KEY_SET_VALUE | KEY_CREATE_SUB_KEY)) != 0;
    return isWriting && ::faccessat(key.Get(), ".", W_OK, AT_EACCESS) != 0 ? KeyError(errno) : ERROR_SUCCESS;
}

ulong OpenHandle(KeyFolder folder, ulong access, HKEY* opened) {
    if (const ulong error = CheckAccess(folder, access))
        return error;
    auto key = std::make_shared<OpenKey>();
    key->folder = std::move(folder);
    key->access = access;
    *opened = AddOpenKey(key);
    return ERROR_SUCCESS;
}

// The folder of a handle, regardless of the rights it was opened with: the folder's permissions decide on
// creating and opening keys.
ulong FolderOf(HKEY key, bool create, KeyFolder& folder) {
    std::shared_ptr<OpenKey> open;
    if (const ulong error = UseKey(key, 0, create, open))
        return error;
    folder = open->folder;
    return !IsRoot(key) && folder.IsDeleted() ? ERROR_KEY_DELETED : ERROR_SUCCESS;
}

// Removes the last name from `path` and returns it; empty if there is none.
wstring_view PopLastName(wstring_view& path) noexcept {
    const std::size_t end = path.find_last_not_of(u'\\') + 1;
    path = path.substr(0, end);
    const std::size_t begin = path.rfind(u'\\') + 1;
    const wstring_view name = path.substr(begin);
    path = path.substr(0, begin);
    return name;
}

ulong DeleteKey(HKEY key, const wchar* subKey) {
    wstring_view path = PathOf(subKey);
    const bool isItself = subKey && path.empty();
    const wstring_view name = PopLastName(path);
    KeyFolder folder;
    if ((name.empty() && !isItself) || name.size() > longestKeyName)
        return ERROR_INVALID_PARAMETER;
    if (const ulong error = FolderOf(key, false, folder))
        return error;
    if (isItself)
        return folder.isRoot ? ERROR_INVALID_PARAMETER : RemoveKey(folder);
    if (const ulong error = FindPath(folder, path))
        return error;
    return RemoveSubkey(folder, name);
}

} // namespace

LSTATUS platform::RegOpenKeyExW(HKEY key, const wchar* subKey, ulong options, ulong access,
                                HKEY* opened) noexcept {
    return Guarded([&]() -> ulong {
        if (!opened || options != 0)
            return ERROR_INVALID_PARAMETER;
        *opened = nullptr;
        KeyFolder folder;
        if (const ulong error = FolderOf(key, false, folder))
            return error;
        if (const ulong error = FindPath(folder, PathOf(subKey)))
            return error;
        return OpenHandle(std::move(folder), access, opened);
    });
}

LSTATUS platform::RegCreateKeyExW(HKEY key, const wchar* subKey, ulong reserved, wchar*, ulong options,
                                  ulong access, const void*, HKEY* opened, ulong* disposition) noexcept {
    return Guarded([&]() -> ulong {
        if (!opened || reserved != 0 || options != REG_OPTION_NON_VOLATILE)
            return ERROR_INVALID_PARAMETER;
        *opened = nullptr;
        KeyFolder folder;
        bool created = false;
        if (const ulong error = FolderOf(key, true, folder))
            return error;
        if (const ulong error = CreatePath(folder, PathOf(subKey), created))
            return error;
        if (disposition)
            *disposition = created ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
        return OpenHandle(std::move(folder), access, opened);
    });
}

LSTATUS platform::RegCloseKey(HKEY key) noexcept {
    return Guarded([&] { return IsRoot(key) || CloseOpenKey(key) ? ERROR_SUCCESS : ERROR_INVALID_HANDLE; });
}

LSTATUS platform::RegDeleteKeyW(HKEY key, const wchar* subKey) noexcept {
    return Guarded([&] { return DeleteKey(key, subKey); });
}

LSTATUS platform::RegDeleteKeyExW(HKEY key, const wchar* subKey, ulong, ulong reserved) noexcept {
    return Guarded([&] { return reserved != 0 ? ERROR_INVALID_PARAMETER : DeleteKey(key, subKey); });
}

} // namespace corvane
