#include <corvane/comfort/ComfortAccess.h>
#include <corvane/comfort/Reports.h>
#include <corvane/comfort/Values.h>
#include <corvane/manager/Log.h>

namespace corvane {

std::optional<std::string> detail::ReadText(const ConfigManager& config, std::string_view key) {
    wstring text;
    if (ComfortAccess::Read(config, ToWide(key), text) != 0)
        return std::nullopt;
    return ToUtf8(text);
}

void detail::ReportWrongForm(std::string_view key, std::string_view text, const std::string& form) {
    constexpr std::size_t most = 200; // bytes of the value to show
    const std::string shown = OnOneLine(text.substr(0, most)) + (text.size() > most ? "..." : "");
    Log().logProblem(ToWide("the value '" + shown + "' of '" + OnOneLine(key) + "' is not " + form).c_str());
}

std::string Refusal(std::string_view key, std::string_view text) {
    return ForFile(MakeFileEntry(key, text)).refusal;
}

bool Set(ConfigManager& config, std::string_view key, std::string_view text) {
    const FileEntry entry = ForFile(MakeFileEntry(key, text));
    if (!entry.refusal.empty())
        return detail::RefuseToSet(key, entry.refusal.c_str());
    return ComfortAccess::Write(config, entry) == 0;
}

bool detail::RefuseToSet(std::string_view key, const char* refusal) {
    return ReportRefusal("corvane::Set", key, refusal) == 0;
}

bool Delete(ConfigManager& config, std::string_view key) {
    const FileEntry entry = ForFile(MakeDeletion(key));
    if (!entry.refusal.empty())
        return ReportRefusal("corvane::Delete", key, entry.refusal.c_str()) == 0;
    return config.Exists(entry.key) && config.DeleteValue(entry.key) == 0 && !config.Exists(entry.key);
}

} // namespace corvane
