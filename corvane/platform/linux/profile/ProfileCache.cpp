#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/files/FileTime.h>
#include <corvane/platform/linux/profile/ProfileCache.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace corvane::os {

using namespace platform;

ProfileCache& ProfileCache::Instance() {
    static ProfileCache& cache = *new ProfileCache;
    return cache;
}

ulong ProfileCache::Load(const char* path, std::shared_ptr<const ProfileIndex>& profile) {
    struct stat status {};
    if (::stat(path, &status) != 0)
        return ErrorOfPath(path, errno);
    auto [valid, kept] = Find(path, FileStamp(status));
    if (valid) {
        profile = std::move(kept);
        return ERROR_SUCCESS;
    }

    FileSnapshot snapshot;
    if (const ulong error = ReadSnapshot(path, status, snapshot))
        return error;
    if (!kept || kept->Content() != snapshot.content.View())
        kept = std::make_shared<const ProfileIndex>(std::move(snapshot.content));
    Keep({path, snapshot.stamp, snapshot.racy || HasRemoteClock(path), kept});
    profile = std::move(kept);
    return ERROR_SUCCESS;
}

ProfileCache::Found ProfileCache::Find(const char* path, const FileStamp& stamp) {
    const MutexGuard guard(m_lock);
    const auto entry = Position(path);
    if (entry == m_entries.end())
        return {};
    m_entries.splice(m_entries.begin(), m_entries, entry);
    return {!entry->racy && entry->stamp == stamp, entry->profile};
}

void ProfileCache::Keep(Entry entry) {
    std::list<Entry> kept;
    kept.push_back(std::move(entry));
    // What is evicted is freed after the lock is released.
    std::list<Entry> evicted;
    const MutexGuard guard(m_lock);
    if (const auto old = Position(kept.front().path.c_str()); old != m_entries.end())
        evicted.splice(evicted.begin(), m_entries, old);
    m_entries.splice(m_entries.begin(), kept);

    std::size_t bytes = 0;
    std::size_t count = 0;
    const auto last = std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry& each) {
        bytes += each.profile->Footprint();
        return ++count > 1 && (count > maximumCount || bytes > maximumBytes);
    });
    evicted.splice(evicted.begin(), m_entries, last, m_entries.end());
}

std::list<ProfileCache::Entry>::iterator ProfileCache::Position(const char* path) {
    return std::find_if(m_entries.begin(), m_entries.end(),
                        [path](const Entry& entry) { return entry.path == path; });
}

} // namespace corvane::os
