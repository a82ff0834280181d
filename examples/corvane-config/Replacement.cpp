#include "Replacement.h"

#include "Failure.h"
#include "FileText.h"
#include "Log.h"

namespace {

// The library does not report why a copy failed, so this tries again.
std::string ReasonOfFailedCopy(const std::string& file) {
    const std::filesystem::path copy = ToPath(file + ".copy");
    std::error_code error;
    std::error_code ignored;
    if (std::filesystem::exists(copy, ignored))
        return {};
    std::filesystem::copy_file(ToPath(file), copy, error);
    std::filesystem::remove(copy, ignored);
    return error ? " (" + error.message() + ")" : "";
}

} // namespace

std::string Snapshot(ConfigManager& config) {
    corvane::wstring name;
    if (config.CreateSnapshot(name) == 0)
        return corvane::ToUtf8(name);
    const std::string file = NameOf(config);
    throw Failure(Refused, "cannot create a copy of '" + file + "' in its folder" + ReasonOfFailedCopy(file));
}

void Restore(ConfigManager& config, const std::string& snapshot) {
    ConfigManager loaded;
    Load(loaded, snapshot);
    if (config.RestoreSnapshot(corvane::ToWide(snapshot)) != 0)
        throw Failure(Refused, "cannot replace '" + NameOf(config) + "'" + LoggedReason());
}

Replacement::Replacement(SettingsFile& file)
    : m_file(file), m_copy(Snapshot(file.Config())), m_original(ReadText(m_copy)) {}

Replacement::~Replacement() {
    std::error_code ignored;
    if (!m_keep)
        std::filesystem::remove(ToPath(m_copy), ignored);
}

void Replacement::Commit() {
    if (ReadText(m_copy) == m_original)
        return;
    if (ReadText(NameOf(m_file.Config())) != m_original)
        Refuse("the file has changed in the meantime");
    try {
        Restore(m_file.Config(), m_copy);
    } catch (const Failure& failure) {
        Refuse(failure.what());
    }
}

void Replacement::Refuse(const std::string& reason) {
    m_keep = true;
    throw Failure(Refused, reason + "; the file was not replaced, and your text is in '" + m_copy + "'");
}
