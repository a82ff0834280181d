#include <corvane/comfort/ComfortAccess.h>
#include <corvane/comfort/Reports.h>
#include <corvane/comfort/WriteBatch.h>

namespace corvane {

WriteBatch& WriteBatch::Set(std::string_view key, std::string_view text) {
    m_changes.push_back({std::string(key), std::string(text), nullptr});
    return *this;
}

WriteBatch& WriteBatch::Delete(std::string_view key) {
    m_changes.push_back({std::string(key), std::nullopt, nullptr});
    return *this;
}

WriteBatch& WriteBatch::Refuse(std::string_view key, const char* refusal) {
    m_changes.push_back({std::string(key), std::nullopt, refusal});
    return *this;
}

bool Write(ConfigManager& config, const WriteBatch& batch) {
    const auto refuse = [](const std::string& key, const char* refusal) {
        return ReportRefusal("corvane::Write", key, refusal) == 0;
    };
    std::vector<ConfigChange> changes;
    std::vector<ConfigChange> forFile;
    for (const auto& [key, text, refusal] : batch.m_changes) {
        if (refusal)
            return refuse(key, refusal);
        FileEntry entry = text ? MakeFileEntry(key, *text) : ForFile(MakeDeletion(key));
        if (!entry.refusal.empty())
            return refuse(key, entry.refusal.c_str());
        const auto valueOrNone = [isSet = text.has_value()](wstring& value) {
            return isSet ? std::optional<wstring>(std::move(value)) : std::nullopt;
        };
        forFile.push_back({entry.key, valueOrNone(entry.fileText)});
        changes.push_back({std::move(entry.key), valueOrNone(entry.value)});
    }
    return ComfortAccess::Write(config, changes, forFile) == 0;
}

} // namespace corvane
