// The parsed profiles that this process read most recently.
#pragma once

#include <corvane/platform/Mutex.h>
#include <corvane/platform/linux/files/FileSnapshot.h>
#include <corvane/platform/linux/profile/ProfileIndex.h>

#include <cstddef>
#include <list>
#include <memory>
#include <string>

namespace corvane::os {

/// Keeps a few parsed profiles, most recently used first, and returns a profile only if it is the file's
/// present content. Bounded in number and bytes; a single profile above the bound is kept alone, so that a
/// program that reads tag by tag does not parse a huge file for each. Thread-safe; files are read outside the
/// lock.
class ProfileCache {
public:
    /// The cache of the process. Never destroyed: constructors and destructors of static objects may read.
    static ProfileCache& Instance();

    /// Gets the profile at `path` (UTF-8). Returns ERROR_SUCCESS, or the error with `profile` unchanged.
    ulong Load(const char* path, std::shared_ptr<const ProfileIndex>& profile);

private:
    using Profile = std::shared_ptr<const ProfileIndex>;

    struct Entry {
        std::string path;
        FileStamp stamp;
        bool racy = true;
        Profile profile;
    };

    struct Found {
        bool valid = false; // known to be the file's present content
        Profile profile;
    };

    static constexpr std::size_t maximumCount = 16;
    static constexpr std::size_t maximumBytes = std::size_t{64} << 20;

    Found Find(const char* path, const FileStamp& stamp);
    void Keep(Entry entry);
    std::list<Entry>::iterator Position(const char* path) CORVANE_REQUIRES(m_lock);

    platform::Mutex m_lock;
    std::list<Entry> m_entries CORVANE_GUARDED_BY(m_lock);
};

} // namespace corvane::os
