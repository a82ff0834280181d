#include <corvane/comfort/ComfortAccess.h>
#include <corvane/comfort/Values.h>
#include <corvane/foundations/FailureReport.h>

#include <algorithm>

namespace corvane {
namespace {

// For a log line, which is one line.
wstring Shown(std::string_view text) {
    wstring wide = ToWide(text);
    std::replace_if(
        wide.begin(), wide.end(), [](wchar unit) { return unit < ' '; }, wchar(' '));
    return wide;
}

bool ReportRefusal(const char* function, std::string_view key, const std::string& refusal) {
    failure_reportFormatted(FAILURE_GENERAL, CORVANE_TEXT("%S: '%s'"), configChannel, function, __LINE__,
                            refusal.c_str(), Shown(key).c_str());
    return false;
}

} // namespace

std::string Refusal(std::string_view key, std::string_view text) {
    return MakeFileEntry(key, text).refusal;
}

bool Set(ConfigManager& config, std::string_view key, std::string_view text) {
    const FileEntry entry = MakeFileEntry(key, text);
    if (!entry.refusal.empty())
        return ReportRefusal("corvane::Set", key, entry.refusal);
    return ComfortAccess::Write(config, entry) == 0;
}

bool detail::RefuseToSet(std::string_view key, const char* refusal) {
    return ReportRefusal("corvane::Set", key, refusal);
}

bool Delete(ConfigManager& config, std::string_view key) {
    const FileEntry entry = MakeDeletion(key);
    if (!entry.refusal.empty())
        return ReportRefusal("corvane::Delete", key, entry.refusal);
    return config.Exists(entry.key) && config.DeleteValue(entry.key) == 0 && !config.Exists(entry.key);
}

} // namespace corvane
