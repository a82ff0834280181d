#include <corvane/platform/Mutex.h>
#include <corvane/platform/RegistryFolders.h>
#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/registry/KeyPath.h>
#include <corvane/platform/linux/registry/RegistryRoots.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>
#include <pwd.h>
#include <unistd.h>

namespace corvane {

using namespace platform;

namespace {

struct Root {
    HKEY key;
    bool isPrivate; // in the user's tree
    const wchar* path;
};

const Root roots[] = {
    {HKEY_CURRENT_USER, true, u"HKEY_CURRENT_USER"},
    {HKEY_LOCAL_MACHINE, false, u"HKEY_LOCAL_MACHINE"},
    {HKEY_USERS, false, u"HKEY_USERS"},
    {HKEY_CLASSES_ROOT, false, u"HKEY_LOCAL_MACHINE\\Software\\Classes"},
    {HKEY_CURRENT_CONFIG, false,
     u"HKEY_LOCAL_MACHINE\\System\\CurrentControlSet\\Hardware Profiles\\Current"},
    {HKEY_DYN_DATA, false, u"HKEY_DYN_DATA"},
    {HKEY_PERFORMANCE_DATA, false, u"HKEY_PERFORMANCE_DATA"},
};

const Root* FindRoot(HKEY key) noexcept {
    const auto* const found =
        std::find_if(std::begin(roots), std::end(roots), [&](const Root& root) { return root.key == key; });
    return found == std::end(roots) ? nullptr : found;
}

// The home folder from the user database; empty if there is none.
std::string HomeFolder(uid_t user) {
    std::array<char, 16384> texts{};
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(user, &entry, texts.data(), texts.size(), &found) != 0 || !found || !found->pw_dir)
        return {};
    return found->pw_dir;
}

constexpr const char* defaultMachine = "/var/lib/corvane/registry";

struct TreeFolders {
    Mutex mutex;
    std::string user CORVANE_GUARDED_BY(mutex); // empty for the one under the home folder
    std::string machine CORVANE_GUARDED_BY(mutex) = defaultMachine;
    std::optional<uid_t> homeOwner CORVANE_GUARDED_BY(mutex); // the user whose home is in `home`
    std::string home CORVANE_GUARDED_BY(mutex);
};

TreeFolders& Folders() {
    static auto* const folders = new TreeFolders; // never destroyed: destructors of statics may read keys
    return *folders;
}

// The top of the user's or the machine's tree; empty if the user has no home.
std::string TopOf(bool isPrivate) {
    TreeFolders& folders = Folders();
    const MutexGuard guard(folders.mutex);
    if (!isPrivate)
        return folders.machine;
    if (!folders.user.empty())
        return folders.user;
    if (const uid_t user = ::geteuid(); folders.homeOwner != user) {
        folders.home = HomeFolder(user);
        folders.homeOwner = user;
    }
    return folders.home.empty() || folders.home.front() != '/'
               ? std::string()
               : folders.home + "/.local/share/corvane/registry";
}

} // namespace

bool SetRegistryFolders(const std::string& user, const std::string& machine) {
    for (const std::string& path : {user, machine}) {
        if (!path.empty() && (path.front() != '/' || path.find('\0') != std::string::npos))
            return false;
    }
    std::string newUser = user;
    std::string newMachine = machine.empty() ? defaultMachine : machine;
    TreeFolders& folders = Folders();
    const MutexGuard guard(folders.mutex);
    folders.user.swap(newUser);
    folders.machine.swap(newMachine);
    return true;
}

bool os::IsRoot(HKEY key) noexcept {
    return FindRoot(key) != nullptr;
}

ulong os::OpenRoot(HKEY key, bool create, KeyFolder& root) {
    const Root* const known = FindRoot(key);
    if (!known)
        return ERROR_INVALID_HANDLE;
    const std::string path = TopOf(known->isPrivate);
    if (path.empty())
        return ERROR_PATH_NOT_FOUND;
    root.isPrivate = known->isPrivate;
    if (const ulong error = OpenTop(path, create, root))
        return error;
    bool created = false;
    const ulong error = create ? CreatePath(root, known->path, created) : FindPath(root, known->path);
    root.isRoot = true;
    return error;
}

} // namespace corvane
