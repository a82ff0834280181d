// Where a profile is read: one answer after another, mostly in the order of the file.
#pragma once

#include <corvane/platform/linux/profile/ProfileIndex.h>

#include <memory>

namespace corvane::os {

/// A profile and the place after the last answer: what stands there is found by one comparison, anything else
/// by a search. For one thread.
class ProfileCursor {
public:
    using Section = ProfileIndex::Section;
    using Line = ProfileIndex::Line;

    /// The cursor for a read of `file`: that of the calling thread's LoadScope, if it holds this file or none
    /// so far, otherwise `single`, with the file as it is now. Null, with the error in GetLastError, when the
    /// file cannot be read.
    static ProfileCursor* Open(const char* file, ProfileCursor& single);

    const ProfileIndex& Profile() const noexcept { return *m_profile; }

    /// Null, with the error in GetLastError, when there is none.
    const Section* FindSection(const char* name) noexcept;

    /// A tag of the section that was found last, or the same null.
    const Line* FindTag(const char* name) noexcept;

protected:
    std::shared_ptr<const ProfileIndex> m_profile;

private:
    const Section* m_section = nullptr;
    const Line* m_next = nullptr; // in the section
};

} // namespace corvane::os
