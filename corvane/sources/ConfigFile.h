// A configuration in a private-profile file in UTF-8.
#pragma once

#include <corvane/detail/FileState.h>
#include <corvane/sources/IConfigSource.h>
#include <corvane/sources/NarrowString.h>

/// Reads and writes one file through the platform's private-profile operations, one call each. Keeps the path
/// and none of the content. The file must exist and be readable and writable when the object is created.
class ConfigFile : public IConfigSource {
public:
    explicit ConfigFile(const corvane::wchar* fileName);

    const corvane::wchar* GetConfigName() override;
    bool IsReady() override;
    bool WasModified() override;
    void UpdateModifyTime() override;
    std::int32_t ReadSection(const corvane::wstring& section, corvane::wstring& text) override;
    bool EnumerateSections(std::vector<corvane::wstring>& sections) override;
    bool EnumerateTags(const corvane::wstring& section, std::vector<corvane::wstring>& tags) override;
    bool ParseKey(const corvane::wstring& key, corvane::wstring& section, corvane::wstring& tag) override;
    std::int32_t ReadValue(const corvane::wstring& key, corvane::wstring& value) override;
    std::int32_t WriteValue(const corvane::wstring& key, const corvane::wstring& value) override;
    bool DeleteValue(const corvane::wstring& key) override;
    std::int32_t CreateSnapshot(corvane::wstring& snapshotName) override;
    std::int32_t RestoreSnapshot(const corvane::wstring& snapshotName) override;
    void SetWriteRetries(std::uint32_t count) override;
    std::uint32_t GetWriteRetries() override;
    std::int32_t WriteChanges(const std::vector<corvane::ConfigChange>& changes) override;

    /// The file's state before anything was read from it.
    const corvane::FileState& StateAtLoad() const noexcept { return m_stateAtLoad; }

private:
    bool HasNarrowFileName();
    static void Utf8ToWide(const char* text, std::int32_t length, corvane::wstring& result);
    static bool SplitNameList(const corvane::wstring& list, std::vector<corvane::wstring>& names);
    std::int32_t WritePrivateProfileStringWithRetry(const char* section, const char* tag, const char* value,
                                                    const char* file) const;
    std::int32_t WritePrivateProfileStringWithRetry(const corvane::wchar* section, const corvane::wchar* tag,
                                                    const corvane::wchar* value,
                                                    const corvane::wchar* file) const;

    corvane::wstring m_fileName;
    corvane::FileState m_stateAtLoad;
    NarrowString m_narrowFileName; // for the reads, which are frequent; null until it could be converted
    std::uint32_t m_writeRetries = 30;
};
