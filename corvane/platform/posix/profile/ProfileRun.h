// Reads that follow each other in the order of the file, as a load makes them.
#pragma once

#include <corvane/platform/posix/profile/ProfileIndex.h>

#include <memory>
#include <string>

namespace corvane::posix {

/// Follows the reads of a load: from the list of sections on, through each section's list of tags and each
/// tag, in the order of the file and without the doubles of a section. They are answered from the picture of
/// the file that the run began with, whoever writes meanwhile: that needs neither a look at the file nor a
/// search. Any other read looks at the file itself. There is a run only while a platform::LoadScope lives; it
/// belongs to the scope's thread.
class ProfileRun {
public:
    using Profile = std::shared_ptr<const ProfileIndex>;
    using Section = ProfileIndex::Section;
    using Line = ProfileIndex::Line;

    /// The run of the calling thread's innermost scope, or null.
    static ProfileRun*& OfThisThread() noexcept;

    /// Goes on to what is asked for, the list of a section's tags or with a tag its value, if that comes
    /// next, or again after an answer that was cut. Null otherwise, and the run stands as it was. The picture
    /// is the run's.
    const ProfileIndex* Continue(const char* file, const char* section, const char* tag);

    /// Begins at the list of sections of a profile that is valid now.
    void Begin(const char* file, const Profile& profile);

    /// Nothing follows any more.
    void End() noexcept { m_profile.reset(); }

    /// Null at the list of sections.
    const Section* CurrentSection() const noexcept { return m_section; }
    /// Null at a list.
    const Line* CurrentLine() const noexcept { return m_answer; }

    /// Tells how the answer went. Behind the file's last tag, the run is over and the picture is let go.
    void Answered(const ProfileIndex& profile, bool cut) {
        m_cut = cut;
        if (!cut && !m_next && !NextSection(profile, m_section))
            LetGo();
    }

private:
    bool StepToList(const ProfileIndex& profile, const char* section) noexcept;
    bool StepToTag(const ProfileIndex& profile, const char* section, const char* tag) noexcept;
    static const Line* FirstTag(const Line* line, const Line* end) noexcept;
    static const Section* NextSection(const ProfileIndex& profile, const Section* place) noexcept;
    static bool Is(std::string_view name, const char* text) noexcept;
    void LetGo();

    Profile m_profile;
    std::string m_file;
    const Section* m_section = nullptr;
    const Line* m_line = nullptr;   // in the section, null before its first tag
    const Line* m_next = nullptr;   // the tag behind it, null at the section's end
    const Line* m_answer = nullptr; // the first of the line's name
    bool m_cut = false;
};

} // namespace corvane::posix
