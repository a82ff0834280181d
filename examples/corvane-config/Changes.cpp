#include "Changes.h"

#include "Failure.h"
#include "Log.h"

namespace {

bool IsThere(const Settings& settings, const Key& key) {
    return key.tag.empty() ? settings.Find(key.section) != nullptr : FindTag(settings, key) != nullptr;
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
    corvane::WriteBatch batch;
    for (const Change& change : changes) {
        if (change.value)
            batch.Set(change.key.Text(), *change.value);
        else
            batch.Delete(change.key.Text());
    }
    ConfigManager& config = file.Config();
    const RetryWhileBusy retries(*config.GetConfigSource());
    if (!corvane::Write(config, batch))
        throw Failure(Refused, "cannot write '" + NameOf(config) + "'" + LoggedReason());
}
