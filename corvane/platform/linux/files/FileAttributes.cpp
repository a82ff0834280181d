#include <corvane/platform/linux/files/FileAttributes.h>

#include <algorithm>
#include <cerrno>
#include <map>
#include <optional>
#include <string>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

namespace corvane::os {
namespace {

// Distinguishes a failing or full disk from attributes that the file system or the caller's rights do not
// allow.
int Refusal(int error) noexcept {
    return error == ENOSPC || error == EDQUOT || error == EIO || error == ENOMEM ? error : EPERM;
}

std::vector<std::string> AttributeNames(int descriptor) {
    std::string list;
    for (ssize_t size = 0; (size = ::flistxattr(descriptor, nullptr, 0)) > 0;) {
        list.resize(static_cast<std::size_t>(size));
        size = ::flistxattr(descriptor, list.data(), list.size());
        list.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
        if (size >= 0 || errno != ERANGE)
            break;
    }
    std::vector<std::string> names;
    for (std::size_t at = 0; at < list.size(); at += names.back().size() + 1)
        names.emplace_back(list.c_str() + at);
    return names;
}

std::optional<std::string> Attribute(int descriptor, const std::string& name) {
    for (;;) {
        const ssize_t size = ::fgetxattr(descriptor, name.c_str(), nullptr, 0);
        if (size < 0)
            return std::nullopt;
        std::string value(static_cast<std::size_t>(size), '\0');
        const ssize_t length = ::fgetxattr(descriptor, name.c_str(), value.data(), value.size());
        if (length < 0 && errno == ERANGE)
            continue;
        if (length < 0)
            return std::nullopt;
        value.resize(static_cast<std::size_t>(length));
        return value;
    }
}

// Copies as much as possible; returns the first error.
int CopyAttributes(int from, int to) {
    int refusal = 0;
    const auto note = [&refusal](int error) { refusal = refusal ? refusal : error; };
    const std::vector<std::string> names = AttributeNames(from);
    for (const std::string& name : AttributeNames(to)) {
        const bool wanted = std::find(names.begin(), names.end(), name) != names.end();
        if (!wanted && ::fremovexattr(to, name.c_str()) != 0)
            note(Refusal(errno));
    }
    for (const std::string& name : names) {
        const std::optional<std::string> value = Attribute(from, name);
        if (!value)
            note(EPERM);
        else if (Attribute(to, name) != value &&
                 ::fsetxattr(to, name.c_str(), value->data(), value->size(), 0) != 0)
            note(Refusal(errno));
    }
    return refusal;
}

using AccessLists = std::map<std::string, std::optional<std::string>>;

AccessLists AccessListsOf(int descriptor) {
    AccessLists lists;
    for (const std::string& name : AttributeNames(descriptor)) {
        if (name.rfind("system.", 0) == 0)
            lists[name] = Attribute(descriptor, name);
    }
    return lists;
}

// The permissions of a copy without access list whose owner or group differs: the original owner or group
// members now belong to the group or to all others, who must not get more rights than the original gave them.
mode_t WithoutWhatIsLost(mode_t mode, bool ownerIsLost, bool groupIsLost) noexcept {
    const mode_t owner = mode >> 6 & 07;
    mode_t group = mode >> 3 & 07;
    mode_t others = mode & 07;
    if (groupIsLost)
        group = others = group & others;
    if (ownerIsLost) {
        group &= owner;
        others &= owner;
    }
    return owner << 6 | group << 3 | others;
}

} // namespace

int CopyMetadata(int from, const struct stat& status, int to) {
    struct stat own {};
    if (::fstat(to, &own) != 0)
        return errno;
    const bool owned = own.st_uid == status.st_uid && own.st_gid == status.st_gid;
    if (!owned && ::fchown(to, status.st_uid, status.st_gid) != 0)
        return Refusal(errno);
    if (const int error = CopyAttributes(from, to))
        return error;
    return ::fchmod(to, status.st_mode & 07777) == 0 ? 0 : Refusal(errno);
}

int CopyMetadataWherePossible(int from, const struct stat& status, int to) {
    const bool groupIsLost = ::fchown(to, status.st_uid, status.st_gid) != 0 &&
                             ::fchown(to, static_cast<uid_t>(-1), status.st_gid) != 0;
    CopyAttributes(from, to);
    struct stat own {};
    if (::fstat(to, &own) != 0)
        return errno;
    const bool ownerIsLost = own.st_uid != status.st_uid;
    const AccessLists lists = AccessListsOf(from);
    mode_t mode = WithoutWhatIsLost(status.st_mode & 0777, ownerIsLost, groupIsLost);
    // With an access list, the group bits are a mask and do not describe any single user's rights.
    if (AccessListsOf(to) != lists || (!lists.empty() && (ownerIsLost || groupIsLost)))
        mode &= 0700;
    return ::fchmod(to, mode) == 0 ? 0 : errno;
}

void SetModificationTime(int descriptor, const struct stat& status) noexcept {
    const timespec times[] = {{0, UTIME_OMIT}, status.st_mtim};
    ::futimens(descriptor, times);
}

} // namespace corvane::os
