#include <corvane/platform/posix/files/TemporaryFile.h>

#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>

namespace corvane::posix {
namespace {

constexpr char openFiles[] = "/proc/self/fd/"; // how a file without a name is reached for giving it one
constexpr int mostTries = 8;                   // for a name that is free

// A name that is cut short for the system's limit is still one of a kind.
int TemporaryName(const std::string& name, std::string& result) {
    std::uint64_t number = 0;
    if (::getrandom(&number, sizeof number, 0) != sizeof number)
        return errno;
    char ending[24];
    const int length =
        std::snprintf(ending, sizeof ending, ".%016llx.tmp", static_cast<unsigned long long>(number));
    result = "." + name.substr(0, NAME_MAX - 1 - static_cast<std::size_t>(length)) + ending;
    return 0;
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
    // The file system may not know files without names, and has several ways to say so. Whatever else it
    // refuses, it refuses for the named one too.
    m_file = FileHandle(OpenNameless(folder));
    return m_file ? 0 : CreateNamed();
}

int TemporaryFile::CreateNamed() {
    const auto create = [this](const std::string& name) {
        m_file = FileHandle(
            ::openat(m_folder, name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
        return m_file ? 0 : errno;
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
    m_temporaryName.clear();
    return 0;
}

int TemporaryFile::Appear() noexcept {
    if (m_temporaryName.empty())
        return LinkTo(m_name);
    if (::renameat2(m_folder, m_temporaryName.c_str(), m_folder, m_name.c_str(), RENAME_NOREPLACE) == 0) {
        m_temporaryName.clear();
        return 0;
    }
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
