// A position in a profile, for reads that mostly follow the order of the file.
#pragma once

#include <corvane/platform/linux/profile/ProfileIndex.h>

#include <memory>

namespace corvane::os {

/// A profile and the position after the last answer: the next entry is found by one comparison, any other by
/// a search. Not thread-safe.
class ProfileCursor {
public:
    using Section = ProfileIndex::Section;
    using Line = ProfileIndex::Line;

    /// The cursor for a read of `file`: that of the calling thread's LoadScope, if it holds this file or none
    /// yet, otherwise `single`, with the file as it is now. Null, with the error in GetLastError, if the file
    /// cannot be read.
    static ProfileCursor* Open(const char* file, ProfileCursor& single);

    const ProfileIndex& Profile() const noexcept { return *m_profile; }

    /// Null, with the error in GetLastError, if there is none.
    const Section* FindSection(const char* name) noexcept;

    /// A tag of the section that was last found; null as above.
    const Line* FindTag(const char* name) noexcept;

protected:
    std::shared_ptr<const ProfileIndex> m_profile;

private:
    template <typename Item>
    bool IsFirst(const Item& item, const char* name) const noexcept;

    const Section* m_section = nullptr;
    const Line* m_next = nullptr; // in the section
};

} // namespace corvane::os
