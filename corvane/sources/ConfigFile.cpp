// Path, modification time and key syntax of a configuration file.
#include <corvane/foundations/FindUnit.h>
#include <corvane/platform/Platform.h>
#include <corvane/sources/ConfigFile.h>

ConfigFile::ConfigFile(const corvane::wchar* fileName) {
    constexpr int readAndWrite = 6;
    if (!fileName || !*fileName || platform::_waccess(fileName, readAndWrite) != 0)
        return;
    m_fileName = fileName;
    m_narrowFileName.Convert(fileName);
    ConfigFile::UpdateModifyTime();
    m_stateAtLoad = platform::ExamineFile(fileName);
}

const corvane::wchar* ConfigFile::GetConfigName() {
    return m_fileName.c_str();
}

// Retried if memory was short before: a file that can be written must also be readable.
bool ConfigFile::HasNarrowFileName() {
    return m_narrowFileName.Get() || m_narrowFileName.Convert(m_fileName.c_str());
}

bool ConfigFile::IsReady() {
    return !m_fileName.empty();
}

bool ConfigFile::WasModified() {
    platform::_stat64 info{};
    return platform::_wstat64(m_fileName.c_str(), &info) < 0 || info.st_mtime > m_modifyTime;
}

void ConfigFile::UpdateModifyTime() {
    platform::_stat64 info{};
    if (platform::_wstat64(m_fileName.c_str(), &info) >= 0)
        m_modifyTime = info.st_mtime;
}

bool ConfigFile::ParseKey(const corvane::wstring& key, corvane::wstring& section, corvane::wstring& tag) {
    if (key.empty())
        return false;
    section.clear();
    tag.clear();
    const std::size_t colon = corvane::FindUnit(key, ':');
    if (colon == key.size())
        return false;
    section.append(key, 0, colon);
    tag.append(key, colon + 1);
    return true;
}

void ConfigFile::SetWriteRetries(std::uint32_t count) {
    m_writeRetries = count;
}

std::uint32_t ConfigFile::GetWriteRetries() {
    return m_writeRetries;
}
