// How values that no source holds come through a load.
#include <corvane/manager/ConfigManager.h>
#include <corvane/manager/ReservedSection.h>

void ConfigManager::PreserveCacheOnlyValues(SectionMap& preserved, const SectionMap& cache,
                                            const bool& newName) {
    const std::uint32_t reserved = cache.Find(corvane::reservedSection);
    if (newName && reserved != SectionMap::none) {
        preserved.Insert(cache.Name(reserved), cache.Tags(reserved));
        return;
    }
    for (const std::uint32_t section : cache.Names().Order()) {
        const TagMap& tags = cache.Tags(section);
        TagMap kept;
        tags.ForEach([&](const TagMap::Tag& tag) {
            if (!tag.cacheOnly)
                return;
            kept.Reserve(tags.Size());
            kept.Insert(tag);
        });
        if (!kept.Empty())
            preserved.Insert(cache.Name(section), std::move(kept));
    }
}

void ConfigManager::RestoreCacheOnlyValues(const SectionMap& preserved, SectionMap& cache) {
    for (const std::uint32_t section : preserved.Names().Order()) {
        const corvane::wstring_view name = preserved.Name(section);
        const TagMap& tags = preserved.Tags(section);
        const std::uint32_t loaded = cache.Find(name);
        if (name == corvane::reservedSection) {
            if (!tags.Empty())
                cache.Insert(name, tags);
        } else if (loaded != SectionMap::none) {
            TagMap& target = cache.Tags(loaded);
            target.Reserve(target.Size() + tags.Size());
            tags.ForEach([&target](const TagMap::Tag& tag) { target.Insert(tag); });
        }
    }
}
