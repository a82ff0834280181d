#include <corvane/comfort/ComfortAccess.h>
#include <corvane/comfort/FileWatch.h>
#include <corvane/platform/Platform.h>

namespace corvane {

FileWatch::FileWatch(const ConfigManager& config) {
    ComfortAccess::StateAtLoad(config, m_path, m_seen);
}

bool FileWatch::Differs() noexcept {
    if (m_path.empty())
        return false;
    const FileState before = m_seen;
    m_seen = platform::ExamineFile(m_path.c_str());
    return !before.settled || !(m_seen == before);
}

} // namespace corvane
