#include <corvane/comfort/ComfortAccess.h>
#include <corvane/comfort/FileWatch.h>
#include <corvane/platform/Platform.h>

#include <utility>

namespace corvane {

FileWatch::FileWatch(const ConfigManager& config) {
    ComfortAccess::StateAtLoad(config, m_path, m_seen);
}

bool FileWatch::Differs() noexcept {
    if (m_path.empty())
        return false;
    const auto stoodFor = m_lastLook - m_seenSince;
    m_lastLook = Clock::now();
    const FileState before = std::exchange(m_seen, platform::ExamineFile(m_path.c_str()));
    if (!(m_seen == before)) {
        m_seenSince = Clock::now();
        return true;
    }
    // A remote clock cannot be read, but it moves on as this one does.
    const bool isNew = stoodFor < std::chrono::nanoseconds(coarsestFileTime);
    return before.racy || (isNew && before.error == 0 && platform::HasRemoteClock(m_path.c_str()));
}

} // namespace corvane
