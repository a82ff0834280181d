#include <corvane/platform/posix/profile/ProfileCache.h>
#include <corvane/platform/posix/profile/ProfileRun.h>

#include <ctime>
#include <utility>

namespace corvane::posix {
namespace {

// Moves every few milliseconds, and costs a quarter of what the exact clock does.
std::int64_t Now() noexcept {
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC_COARSE, &time);
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

} // namespace

ProfileRun& ProfileRun::OfThisThread() {
    thread_local ProfileRun run;
    return run;
}

// The pause leaves room for a load that has to wait for the processor on a busy machine.
bool ProfileRun::IsPrompt() noexcept {
    constexpr std::int64_t longestPause = 250'000'000;
    const std::int64_t now = Now();
    return now - std::exchange(m_time, now) <= longestPause;
}

bool ProfileRun::IsCurrent(const Profile& profile) const {
    Profile current;
    return ProfileCache::Instance().Load(m_file.c_str(), current) == 0 && current == profile;
}

ProfileRun::Profile ProfileRun::Continue(const char* file, const char* section, const char* tag) {
    if (!file || !section || m_file != file)
        return nullptr;
    Profile profile = m_profile.lock();
    if (!profile || !(IsPrompt() || IsCurrent(profile)))
        return nullptr;
    const bool follows = tag ? StepToTag(*profile, section, tag) : StepToList(*profile, section);
    return follows ? profile : nullptr;
}

void ProfileRun::Begin(const char* file, const Profile& profile) {
    m_file = file;
    m_profile = profile;
    m_place = nullptr;
    m_section = nullptr;
    m_line = nullptr;
    m_time = Now();
}

void ProfileRun::Answered(const ProfileIndex& profile, bool cut) {
    m_cut = cut;
    if (cut || (m_section && NextTag(profile)) || NextSection(profile))
        return;
    m_profile.reset();
    ProfileCache::Instance().Forget(m_file.c_str());
}

// A section or tag that has the name of one before it gives what that one holds.
bool ProfileRun::StepToList(const ProfileIndex& profile, const char* section) noexcept {
    const bool again = m_cut && m_section && !m_line;
    if (!again && m_section && NextTag(profile))
        return false;
    const Section* const next = again ? m_place : NextSection(profile);
    if (!next || profile.Text(next->name) != section)
        return false;
    m_place = next;
    m_section = next->IsShadowed() ? profile.FindSection(section) : next;
    m_line = nullptr;
    return true;
}

bool ProfileRun::StepToTag(const ProfileIndex& profile, const char* section, const char* tag) noexcept {
    if (!m_place || profile.Text(m_place->name) != section)
        return false;
    const Line* const next = m_cut && m_line ? m_line : NextTag(profile);
    if (!next || profile.Text(next->name) != tag)
        return false;
    m_line = next;
    return true;
}

const ProfileRun::Line* ProfileRun::CurrentLine(const ProfileIndex& profile) const noexcept {
    return m_line && m_line->IsShadowed() ? profile.FindTag(*m_section, profile.Text(m_line->name)) : m_line;
}

const ProfileRun::Line* ProfileRun::NextTag(const ProfileIndex& profile) const noexcept {
    const Line* line = m_line ? m_line + 1 : profile.Begin(*m_section);
    while (line != profile.End(*m_section) && line->name.size == 0)
        ++line;
    return line != profile.End(*m_section) ? line : nullptr;
}

const ProfileRun::Section* ProfileRun::NextSection(const ProfileIndex& profile) const noexcept {
    const auto& sections = profile.Sections();
    const Section* section = m_place ? m_place + 1 : sections.data();
    while (section != sections.data() + sections.size() && section->name.size == 0)
        ++section;
    return section != sections.data() + sections.size() ? section : nullptr;
}

} // namespace corvane::posix
