// Reads that follow each other in the order of the file, as a load makes them.
#pragma once

#include <corvane/platform/posix/profile/ProfileIndex.h>

#include <cstdint>
#include <memory>
#include <string>

namespace corvane::posix {

/// Follows one thread's reads from the list of sections on, through each section's list of tags and each tag,
/// in the order of the file. A read that asks within a quarter of a second for what comes next is answered
/// from the picture that the run began with: it needs neither a look at the file nor a search, and a load
/// sees the file as it was when it began, whoever writes meanwhile. After a longer pause the run goes on if
/// the file is still the same. Any other read ends the run and looks at the file itself.
class ProfileRun {
public:
    using Profile = std::shared_ptr<const ProfileIndex>;
    using Section = ProfileIndex::Section;
    using Line = ProfileIndex::Line;

    static ProfileRun& OfThisThread();

    /// Goes on to what is asked for, the list of a section's tags or with a tag its value, if that comes
    /// next, or again after an answer that was cut. Null otherwise, and the run stands as it was.
    Profile Continue(const char* file, const char* section, const char* tag);

    /// Begins at the list of sections of a profile that is valid now.
    void Begin(const char* file, const Profile& profile);

    /// Nothing follows any more.
    void End() noexcept { m_profile.reset(); }

    /// Null at the list of sections.
    const Section* CurrentSection() const noexcept { return m_section; }
    /// Null at a list.
    const Line* CurrentLine(const ProfileIndex& profile) const noexcept;

    /// Tells how the answer went. Behind the file's last tag, the run is over and the profile is let go.
    void Answered(const ProfileIndex& profile, bool cut);

private:
    bool IsPrompt() noexcept;
    bool IsCurrent(const Profile& profile) const;
    bool StepToList(const ProfileIndex& profile, const char* section) noexcept;
    bool StepToTag(const ProfileIndex& profile, const char* section, const char* tag) noexcept;
    const Line* NextTag(const ProfileIndex& profile) const noexcept;
    const Section* NextSection(const ProfileIndex& profile) const noexcept;

    std::weak_ptr<const ProfileIndex> m_profile;
    std::string m_file;
    const Section* m_place = nullptr;   // in the list of sections
    const Section* m_section = nullptr; // the first of that name
    const Line* m_line = nullptr;
    bool m_cut = false;
    std::int64_t m_time = 0; // of the last read, in nanoseconds
};

} // namespace corvane::posix
