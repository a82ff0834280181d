#include <corvane/platform/posix/PosixPlatform.h>
#include <corvane/platform/posix/profile/ProfileCache.h>
#include <corvane/platform/posix/profile/ProfileLine.h>
#include <corvane/platform/posix/profile/ProfileRun.h>

#include <cstring>
#include <utility>

namespace corvane::posix {
namespace {

bool HasColon(std::string_view name) noexcept {
    return name.find(':') != std::string_view::npos;
}

} // namespace

ProfileRun*& ProfileRun::OfThisThread() noexcept {
    thread_local ProfileRun* run = nullptr;
    return run;
}

// A name with ill-formed bytes is not asked for with the same bytes.
inline bool ProfileRun::Is(std::string_view name, const char* text) noexcept {
    const bool same = std::strncmp(name.data(), text, name.size()) == 0 && text[name.size()] == '\0';
    return same || SameName(name, text);
}

inline const ProfileRun::Line* ProfileRun::FirstTag(const Line* line, const Line* end) noexcept {
    while (line != end && line->name.size == 0)
        ++line;
    return line != end ? line : nullptr;
}

// A tag that has the name of one before it gives what that one holds. In another locale than the one that the
// file was parsed in, there may be no such one.
inline bool ProfileRun::StepToTag(const ProfileIndex& profile, const char* section,
                                  const char* tag) noexcept {
    if (!m_section || !Is(profile.Text(m_section->name), section))
        return false;
    const Line* const next = m_cut && m_line ? m_line : m_next;
    if (!next || !Is(profile.Text(next->name), tag))
        return false;
    m_line = next;
    m_next = FirstTag(next + 1, profile.End(*m_section));
    m_answer = next->IsShadowed() ? profile.FindTag(*m_section, tag) : next;
    return m_answer != nullptr;
}

const ProfileIndex* ProfileRun::Continue(const char* file, const char* section, const char* tag) {
    if (!m_profile || !file || !section || std::strcmp(m_file.c_str(), file) != 0)
        return nullptr;
    const bool follows = tag ? StepToTag(*m_profile, section, tag) : StepToList(*m_profile, section);
    return follows ? m_profile.get() : nullptr;
}

void ProfileRun::Begin(const char* file, const Profile& profile) {
    m_file = file;
    m_profile = profile;
    m_section = nullptr;
    m_line = nullptr;
    m_next = nullptr;
    m_answer = nullptr;
}

void ProfileRun::LetGo() {
    ProfileCache::Instance().Forget(m_file.c_str(), m_profile);
    End();
}

// A section with a colon is passed over: no key leads there.
bool ProfileRun::StepToList(const ProfileIndex& profile, const char* section) noexcept {
    const bool again = m_cut && m_section && !m_line;
    if (!again && m_next)
        return false;
    const Section* next = again ? m_section : NextSection(profile, m_section);
    while (next && !Is(profile.Text(next->name), section))
        next = HasColon(profile.Text(next->name)) ? NextSection(profile, next) : nullptr;
    if (!next)
        return false;
    m_section = next;
    m_line = nullptr;
    m_next = FirstTag(profile.Begin(*next), profile.End(*next));
    m_answer = nullptr;
    return true;
}

const ProfileRun::Section* ProfileRun::NextSection(const ProfileIndex& profile,
                                                   const Section* place) noexcept {
    const auto& sections = profile.Sections();
    const Section* section = place ? place + 1 : sections.data();
    while (section != sections.data() + sections.size() && (section->name.size == 0 || section->IsShadowed()))
        ++section;
    return section != sections.data() + sections.size() ? section : nullptr;
}

} // namespace corvane::posix

namespace corvane::platform {

LoadScope::LoadScope()
    : m_run(std::make_unique<posix::ProfileRun>()),
      m_outer(std::exchange(posix::ProfileRun::OfThisThread(), m_run.get())) {}

LoadScope::~LoadScope() {
    posix::ProfileRun::OfThisThread() = m_outer;
}

} // namespace corvane::platform
