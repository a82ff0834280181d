#include <corvane/platform/posix/profile/ProfileCache.h>
#include <corvane/platform/posix/profile/ProfileRun.h>

#include <cstring>
#include <ctime>

namespace corvane::posix {
namespace {

std::int64_t Now(clockid_t clock) noexcept {
    timespec time{};
    ::clock_gettime(clock, &time);
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

} // namespace

ProfileRun& ProfileRun::OfThisThread() {
    thread_local ProfileRun run;
    return run;
}

// The coarse clock costs a quarter of the exact one and moves every few milliseconds. The exact one decides
// where it has moved, and is read now and then to have something to compare with.
bool ProfileRun::IsPrompt() noexcept {
    constexpr std::int64_t longestPause = 2'000'000;
    constexpr unsigned readsBetween = 16;
    const std::int64_t tick = Now(CLOCK_MONOTONIC_COARSE);
    const bool sameTick = tick == m_tick;
    if (sameTick && ++m_readsSinceTime < readsBetween)
        return true;
    const std::int64_t time = Now(CLOCK_MONOTONIC);
    const bool prompt = sameTick || time - m_time <= longestPause;
    m_tick = tick;
    m_time = time;
    m_readsSinceTime = 0;
    return prompt;
}

ProfileRun::Profile ProfileRun::Continue(const char* file, const char* section, const char* tag) {
    if (!file || !section || m_file != file)
        return nullptr;
    Profile profile = m_profile.lock();
    if (!profile || !IsPrompt())
        return nullptr;
    const bool follows = tag ? StepToTag(*profile, section, tag) : StepToList(*profile, section);
    return follows ? profile : nullptr;
}

void ProfileRun::Begin(const char* file, const Profile& profile, const Section* section, const Line* line) {
    m_file = file;
    m_profile = profile;
    m_section = section;
    m_line = line;
    m_tick = Now(CLOCK_MONOTONIC_COARSE);
    m_time = Now(CLOCK_MONOTONIC);
    m_readsSinceTime = 0;
}

void ProfileRun::Answered(const ProfileIndex& profile, bool cut) {
    m_cut = cut;
    if (cut || (m_section && NextTag(profile)) || NextSection(profile))
        return;
    m_profile.reset();
    ProfileCache::Instance().Forget(m_file.c_str());
}

bool ProfileRun::StepToList(const ProfileIndex& profile, const char* section) noexcept {
    const bool again = m_cut && m_section && !m_line;
    if (!again && m_section && NextTag(profile))
        return false;
    const Section* const next = again ? m_section : NextSection(profile);
    if (!next || next->IsShadowed() || profile.Text(next->name) != section)
        return false;
    m_section = next;
    m_line = nullptr;
    return true;
}

bool ProfileRun::StepToTag(const ProfileIndex& profile, const char* section, const char* tag) noexcept {
    if (!m_section || profile.Text(m_section->name) != section)
        return false;
    const Line* const next = m_cut && m_line ? m_line : NextTag(profile);
    if (!next || next->IsShadowed() || profile.Text(next->name) != tag)
        return false;
    m_line = next;
    return true;
}

const ProfileRun::Line* ProfileRun::NextTag(const ProfileIndex& profile) const noexcept {
    const Line* line = m_line ? m_line + 1 : profile.Begin(*m_section);
    while (line != profile.End(*m_section) && line->name.size == 0)
        ++line;
    return line != profile.End(*m_section) ? line : nullptr;
}

const ProfileRun::Section* ProfileRun::NextSection(const ProfileIndex& profile) const noexcept {
    const auto& sections = profile.Sections();
    const Section* section = m_section ? m_section + 1 : sections.data();
    while (section != sections.data() + sections.size() && section->name.size == 0)
        ++section;
    return section != sections.data() + sections.size() ? section : nullptr;
}

} // namespace corvane::posix
