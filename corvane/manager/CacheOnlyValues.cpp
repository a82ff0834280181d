// How values that exist in the cache only survive a load.
#include <corvane/cache/SectionMap.h>
#include <corvane/manager/ConfigManager.h>
#include <corvane/manager/ReservedSection.h>

void ConfigManager::PreserveCacheOnlyValues(SectionMap& preserved, const SectionMap& cache,
                                            const bool& newName) {
    const auto* const reserved = cache.Find(corvane::reservedSection);
    if (newName && reserved) {
        preserved.Insert(reserved->first, TagMap(reserved->second));
        return;
    }
    for (const auto* const section : cache.Ordered()) {
        if (!section->second.HasCacheOnly())
            continue;
        TagMap kept;
        for (const auto& tag : section->second) {
            if (tag.cacheOnly)
                kept.Insert(tag.name, {corvane::wstring(tag.value), true});
        }
        preserved.Insert(section->first, std::move(kept));
    }
}

void ConfigManager::RestoreCacheOnlyValues(const SectionMap& preserved, SectionMap& cache) {
    for (const auto* const section : preserved.Ordered()) {
        const auto& [name, tags] = *section;
        if (corvane::IsReserved(name)) {
            if (!tags.Empty())
                cache.Insert(name, TagMap(tags));
        } else if (auto* const loaded = cache.Find(name)) {
            for (const auto& tag : tags)
                loaded->second.Insert(tag.name, {corvane::wstring(tag.value), true});
        }
    }
}
