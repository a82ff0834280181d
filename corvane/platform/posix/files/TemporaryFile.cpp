#include <corvane/platform/posix/Errors.h>
#include <corvane/platform/posix/files/FileLock.h>
#include <corvane/platform/posix/files/FolderEntries.h>
#include <corvane/platform/posix/files/TemporaryFile.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <functional>
#include <sys/random.h>
#include <sys/stat.h>

namespace corvane::posix {

using namespace platform;

namespace {

constexpr char openFiles[] = "/proc/self/fd/"; // how a file without a name is reached for giving it one
constexpr int mostTries = 8;                   // for a name that is free

constexpr std::string_view lastPart = ".tmp";
constexpr std::size_t digitCount = 16; // of the random number before it

// The part before that number. A name that is cut short for the system's limit is still one of a kind.
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

// Whoever makes a temporary file holds its lock for as long as it has its name: one that is free was left by
// a process that was killed.
void RemoveIfFree(int folder, const char* name) noexcept {
    const FileHandle file(::openat(folder, name, O_RDWR | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status {};
    if (!file || ::fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode) ||
        LockAtOnce(file.Get()) != ERROR_SUCCESS)
        return;
    ::unlinkat(folder, name, 0);
    Unlock(file.Get());
}

// For most names, says so once only in the life of the process, of which a fork begins another.
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

// What processes before this one left on their way to `name`. A huge folder is not searched to its end.
void RemoveLeftovers(int folder, const std::string& name) {
    constexpr int mostEntries = 10'000;
    if (!IsNewToProcess(folder, name))
        return;
    const std::string firstPart = FirstPart(name);
    FolderEntries entries(folder);
    for (int i = 0; i < mostEntries; ++i) {
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
    // The file system may not know files without names, and has several ways to say so. Whatever else it
    // refuses, it refuses for the named one too.
    m_file = FileHandle(OpenNameless(folder));
    if (!m_file)
        return CreateNamed();
    LockAtOnce(m_file.Get());
    return 0;
}

int TemporaryFile::CreateNamed() {
    const auto create = [this](const std::string& name) {
        m_file = FileHandle(
            ::openat(m_folder, name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
        if (!m_file)
            return errno;
        if (LockAtOnce(m_file.Get()) != ERROR_SHARING_VIOLATION)
            return 0;
        ::unlinkat(m_folder, name.c_str(), 0); // as is about to do who took it for one that was left
        return EEXIST;
    };
    if (const int error = TakeTemporaryName(create))
        return error;
    // An umask may have taken away the owner's own rights, and a folder's access list may have given others
    // some.
    return ::fchmod(m_file.Get(), 0600) == 0 || errno == EPERM ? 0 : errno;
}

// What somebody planted under a name, a link maybe, is left alone, and another name is tried.
template <typename Operation>
int TemporaryFile::TakeTemporaryName(Operation take) {
    std::string name;
    for (int tries = 1;; ++tries) {
        if (const int error = TemporaryName(m_name, name))
            return error;
        const int error = take(name);
        if (error == 0)
            m_temporaryName.swap(name);
        if (error != EEXIST || tries == mostTries)
            return error;
    }
}

int TemporaryFile::LinkTo(const std::string& name) noexcept {
    char path[48];
    std::snprintf(path, sizeof path, "%s%d", openFiles, m_file.Get());
    return ::linkat(AT_FDCWD, path, m_folder, name.c_str(), AT_SYMLINK_FOLLOW) == 0 ? 0 : errno;
}

int TemporaryFile::Replace() {
    if (m_temporaryName.empty()) {
        const auto link = [this](const std::string& name) { return LinkTo(name); };
        if (const int error = TakeTemporaryName(link))
            return error;
    }
    if (::renameat(m_folder, m_temporaryName.c_str(), m_folder, m_name.c_str()) != 0)
        return errno;
    return InPlace();
}

// The lock of the temporary file would be one on the file now.
int TemporaryFile::InPlace() noexcept {
    m_temporaryName.clear();
    Unlock(m_file.Get());
    return 0;
}

int TemporaryFile::Appear() noexcept {
    if (m_temporaryName.empty()) {
        const int error = LinkTo(m_name);
        return error ? error : InPlace();
    }
    if (::renameat2(m_folder, m_temporaryName.c_str(), m_folder, m_name.c_str(), RENAME_NOREPLACE) == 0)
        return InPlace();
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    // The temporary name is left to the destructor.
    return ::linkat(m_folder, m_temporaryName.c_str(), m_folder, m_name.c_str(), 0) == 0 ? 0 : errno;
}

void FlushFolder(int folder) noexcept {
    const FileHandle readable(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (readable)
        ::fsync(readable.Get());
}

} // namespace corvane::posix
