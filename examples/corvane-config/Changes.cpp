#include "Changes.h"

#include "Failure.h"
#include "Log.h"

namespace {

bool IsThere(const Settings& settings, const Key& key) {
    return key.tag.empty() ? settings.Find(key.section) != nullptr : FindTag(settings, key) != nullptr;
}

void MakeOne(const Change& change, ConfigManager& config) {
    const std::string key = change.key.Text();
    const bool done = change.value ? corvane::Set(config, key, *change.value)
                                   : config.GetConfigSource()->DeleteValue(corvane::ToWide(key));
    if (!done)
        throw Failure(Refused,
                      "cannot write '" + corvane::ToUtf8(config.GetConfigName()) + "'" + LoggedReason());
}

} // namespace

void CheckChange(const Change& change) {
    const std::string key = change.key.Text();
    const std::string refusal = change.value ? corvane::Refusal(key, *change.value) : std::string();
    if (!refusal.empty())
        throw Failure(Usage, "'" + key + "' cannot be written: " + refusal);
}

void Make(const std::vector<Change>& changes, SettingsFile& file, bool ignoreMissing) {
    const Settings settings = file.Read();
    for (const Change& change : changes)
        if (!IsThere(settings, change.key) && !change.value && !ignoreMissing)
            throw Failure(No, "there is no '" + change.key.Text() + "' to delete");
    const RetryWhileBusy retries(*file.Config().GetConfigSource());
    for (const Change& change : changes)
        MakeOne(change, file.Config());
}
