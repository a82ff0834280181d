// How values that no source holds come through a load.
#include <corvane/manager/ConfigManager.h>
#include <corvane/manager/ReservedSection.h>

void ConfigManager::PreserveCacheOnlyValues(SectionMap& preserved, const SectionMap& cache,
                                            const bool& newName) {
    if (newName) {
        const auto reserved = cache.find(corvane::reservedSection);
        if (reserved != cache.end()) {
            preserved.insert(*reserved);
            return;
        }
    }
    for (const auto& [sectionName, tags] : cache) {
        for (const auto& tag : tags) {
            if (tag.second.cacheOnly)
                preserved[sectionName].insert(tag);
        }
    }
}

void ConfigManager::RestoreCacheOnlyValues(const SectionMap& preserved, SectionMap& cache) {
    for (const auto& section : preserved) {
        const auto& [name, tags] = section;
        if (name == corvane::reservedSection) {
            if (!tags.empty())
                cache.insert(section);
            continue;
        }
        const auto loaded = cache.find(name);
        if (loaded != cache.end())
            loaded->second.insert(tags.begin(), tags.end()); // a loaded tag of the same name stands
    }
}
