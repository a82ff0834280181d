#include <corvane/platform/Mutex.h>
#include <corvane/platform/RegistryFolders.h>
#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/registry/OpenKeys.h>

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

class TreeFolders {
public:
    void Set(const std::string& user, const std::string& machine) {
        std::string newUser = user;
        std::string newMachine = machine.empty() ? std::string(defaultMachine) : machine;
        const platform::MutexGuard guard(m_mutex);
        m_user.swap(newUser);
        m_machine.swap(newMachine);
    }

    std::string Machine() {
        const platform::MutexGuard guard(m_mutex);
        return m_machine;
    }

    // Empty if the user has no home.
    std::string User() {
        const platform::MutexGuard guard(m_mutex);
        if (!m_user.empty())
            return m_user;
        if (const uid_t user = ::geteuid(); m_homeOwner != user) {
            m_home = HomeFolder(user);
            m_homeOwner = user;
        }
        return m_home.empty() || m_home.front() != '/' ? std::string()
                                                       : m_home + "/.local/share/corvane/registry";
    }

private:
    static constexpr const char* defaultMachine = "/var/lib/corvane/registry";

    platform::Mutex m_mutex;
    std::string m_user CORVANE_GUARDED_BY(m_mutex); // empty for the one under the home folder
    std::string m_machine CORVANE_GUARDED_BY(m_mutex) = defaultMachine;
    std::optional<uid_t> m_homeOwner CORVANE_GUARDED_BY(m_mutex); // the user whose home is in m_home
    std::string m_home CORVANE_GUARDED_BY(m_mutex);
};

TreeFolders& Folders() {
    static auto* const folders = new TreeFolders; // never destroyed: destructors of statics may read keys
    return *folders;
}

} // namespace

bool SetRegistryFolders(const std::string& user, const std::string& machine) {
    for (const std::string& path : {user, machine}) {
        if (!path.empty() && (path.front() != '/' || path.find('\0') != std::string::npos))
            return false;
    }
    Folders().Set(user, machine);
    return true;
}

bool os::IsRoot(HKEY key) noexcept {
    return FindRoot(key) != nullptr;
}

ulong os::OpenRoot(HKEY key, bool create, KeyFolder& root) {
    const Root* const known = FindRoot(key);
    if (!known)
        return ERROR_INVALID_HANDLE;
    const std::string path = known->isPrivate ? Folders().User() : Folders().Machine();
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
