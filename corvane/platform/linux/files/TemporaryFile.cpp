#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/files/FileLock.h>
#include <corvane/platform/linux/files/FolderEntries.h>
#include <corvane/platform/linux/files/TemporaryFile.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <functional>
#include <sys/random.h>
#include <sys/stat.h>

namespace corvane::os {

using namespace platform;

namespace {

constexpr char openFiles[] = "/proc/self/fd/"; // for linking a file without a name
constexpr int maxTries = 8;                    // to find a free name

constexpr std::string_view lastPart = ".tmp";
constexpr std::size_t digitCount = 16; // of the random number before it

// The part before that number. Truncated to the system's limit on names, it stays unique enough.
std::string FirstPart(const std::string& name) {
    return std::string(".").append(name, 0, NAME_MAX - 2 - digitCount - lastPart.size()).append(".");
}

int TemporaryName(const std::string& name, std::string& result) {
    std::uint64_t number = 0;
    if (::getrandom(&number, sizeof number, 0) != sizeof number)
        return errno;
    char digits[digitCount + 1];
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(number));
    result = FirstPart(name).append(digits).append(lastPart);
    return 0;
}

bool IsTemporaryName(std::string_view name, std::string_view firstPart) noexcept {
    if (name.size() != firstPart.size() + digitCount + lastPart.size())
        return false;
    const std::string_view digits = name.substr(firstPart.size(), digitCount);
    return name.substr(0, firstPart.size()) == firstPart &&
           name.substr(name.size() - lastPart.size()) == lastPart &&
           digits.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

// A process holds the lock of its temporary file as long as the file has its temporary name: an unlocked one
// was left by a killed process.
void RemoveIfFree(int folder, const char* name) noexcept {
    const FileHandle file(::openat(folder, name, O_RDWR | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status {};
    if (!file || ::fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode) ||
        TryLock(file.Get()) != ERROR_SUCCESS)
        return;
    ::unlinkat(folder, name, 0);
    Unlock(file.Get());
}

// True once per name and process (a forked child counts as another); rarely more often.
bool IsNewToProcess(int folder, const std::string& name) noexcept {
    static std::atomic<std::size_t> last[64];
    struct stat status {};
    if (::fstat(folder, &status) != 0)
        return false;
    std::size_t hash = std::hash<std::string>()(name);
    for (const std::uint64_t part :
         {std::uint64_t{status.st_ino}, std::uint64_t{status.st_dev}, static_cast<std::uint64_t>(::getpid())})
        hash = hash * 31 + std::hash<std::uint64_t>()(part);
    return last[hash % std::size(last)].exchange(hash, std::memory_order_relaxed) != hash;
}

// Removes temporary files of `name` that killed processes left. Does not search a huge folder to its end.
void RemoveLeftovers(int folder, const std::string& name) {
    constexpr int maxEntries = 10'000;
    if (!IsNewToProcess(folder, name))
        return;
    const std::string firstPart = FirstPart(name);
    FolderEntries entries(folder);
    for (int i = 0; i < maxEntries; ++i) {
        const char* const entry = entries.Next();
        if (!entry)
            return;
        if (IsTemporaryName(entry, firstPart))
            RemoveIfFree(folder, entry);
    }
}

int OpenNameless(int folder) noexcept {
    if (::access(openFiles, X_OK) != 0)
        return -1;
    return ::openat(folder, ".", O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
}

} // namespace

TemporaryFile::~TemporaryFile() {
    if (!m_temporaryName.empty())
        ::unlinkat(m_folder, m_temporaryName.c_str(), 0);
}

int TemporaryFile::Create(int folder, const std::string& name) {
    m_folder = folder;
    m_name = name;
    RemoveLeftovers(folder, name);
    // File systems without support for unnamed files report it by various errors. Any other error recurs for
    // the named file.
    m_file = FileHandle(OpenNameless(folder));
    if (!m_file)
        return CreateNamed();
    TryLock(m_file.Get());
    return 0;
}

int TemporaryFile::CreateNamed() {
    const auto create = [this](const std::string& name) {
        m_file = FileHandle(
            ::openat(m_folder, name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
        if (!m_file)
            return errno;
        if (TryLock(m_file.Get()) != ERROR_SHARING_VIOLATION)
            return 0;
        ::unlinkat(m_folder, name.c_str(), 0); // another process takes it for a leftover and is removing it
        return EEXIST;
    };
    if (const int error = TryTemporaryNames(create))
        return error;
    // The umask may have removed the owner's rights, and the folder's access list may have granted others
    // some.
    return ::fchmod(m_file.Get(), 0600) == 0 || errno == EPERM ? 0 : errno;
}

// Leaves anything that already has the name alone, a planted link for example, and tries another name.
template <typename Operation>
int TemporaryFile::TryTemporaryNames(Operation take) {
    std::string name;
    for (int tries = 1;; ++tries) {
        if (const int error = TemporaryName(m_name, name))
            return error;
        const int error = take(name);
        if (error == 0)
            m_temporaryName.swap(name);
        if (error != EEXIST || tries == maxTries)
            return error;
    }
}

int TemporaryFile::LinkTo(const std::string& name) noexcept {
    char path[48];
    std::snprintf(path, sizeof path, "%s%d", openFiles, m_file.Get());
    return ::linkat(AT_FDCWD, path, m_folder, name.c_str(), AT_SYMLINK_FOLLOW) == 0 ? 0 : errno;
}

int TemporaryFile::Replace() {
    if (::fsync(m_file.Get()) != 0)
        return errno;
    if (m_temporaryName.empty()) {
        const auto link = [this](const std::string& name) { return LinkTo(name); };
        if (const int error = TryTemporaryNames(link))
            return error;
    }
    if (::renameat(m_folder, m_temporaryName.c_str(), m_folder, m_name.c_str()) != 0)
        return errno;
    return FinishPublishing();
}

int TemporaryFile::FinishPublishing() noexcept {
    m_temporaryName.clear();
    Unlock(m_file.Get()); // it would now be a lock on the file itself
    // The file is visible from here on, so a failed flush of the folder is not reported: a failure would mean
    // that nothing has changed.
    FlushFolder(m_folder);
    return 0;
}

int TemporaryFile::Publish() noexcept {
    if (::fsync(m_file.Get()) != 0)
        return errno;
    if (m_temporaryName.empty()) {
        const int error = LinkTo(m_name);
        return error ? error : FinishPublishing();
    }
    if (::renameat2(m_folder, m_temporaryName.c_str(), m_folder, m_name.c_str(), RENAME_NOREPLACE) == 0)
        return FinishPublishing();
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    if (::linkat(m_folder, m_temporaryName.c_str(), m_folder, m_name.c_str(), 0) != 0)
        return errno;
    FlushFolder(m_folder); // the destructor removes the temporary name
    return 0;
}

void FlushFolder(int folder) noexcept {
    const FileHandle readable(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (readable)
        ::fsync(readable.Get());
}

} // namespace corvane::os
