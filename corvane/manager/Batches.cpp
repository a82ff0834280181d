// Many changes at once: first every check, then one change of the source, then the cache.
#include <corvane/cache/SectionMap.h>
#include <corvane/manager/ConfigManager.h>
#include <corvane/manager/Log.h>
#include <corvane/manager/ReservedSection.h>
#include <corvane/manager/StillLoaded.h>
#include <corvane/sources/KeyParts.h>

#include <new>

using corvane::Fail;
using corvane::Log;
using corvane::SectionMap;
using corvane::TagMap;
using corvane::wstring;

namespace {

using Changes = std::vector<corvane::ConfigChange>;

// The effect of a batch of changes on a cache, and the changes for the source. Nothing changes until Commit.
class Batch {
public:
    Batch(SectionMap& cache, std::set<wstring>& cacheOnlySections, IConfigSource& source)
        : m_cache(cache), m_cacheOnlySections(cacheOnlySections), m_source(source) {}

    /// Checks the changes and prepares everything that Commit needs. Returns null, or the key of the change
    /// that was refused. The cache gets the values of `changes`, the source those of `forSource`.
    const wstring* Add(const Changes& changes, const Changes& forSource) {
        for (std::size_t i = 0; i < changes.size(); ++i) {
            if (!Add(changes[i], forSource[i].value))
                return &changes[i].key;
        }
        m_cache.Reserve(m_cache.Size() + m_sections.Size());
        for (const auto* section : m_reduced) {
            if (section->second.Empty())
                m_emptied.emplace_back(section->first.c_str()); // up to a NUL
        }
        return nullptr;
    }

    const Changes& ForSource() const noexcept { return m_forSource; }

    /// A section that is left without tags is removed, as by the deletion of its last tag.
    void Commit() noexcept {
        m_cache.Replace(m_sections);
        for (const wstring& section : m_emptied)
            m_cacheOnlySections.erase(section);
    }

private:
    bool Add(const corvane::ConfigChange& change, const std::optional<wstring>& sourceText) {
        if (!m_parts.Parse(m_source, change.key) || !m_parts.HasSection() ||
            (change.value && !m_parts.HasTag()))
            return false;
        const auto* const cached = m_cache.Find(m_parts.section);
        auto* section = m_sections.Find(m_parts.section);
        if (!section && (cached || change.value)) {
            m_sections.Insert(cached ? cached->first : m_parts.section,
                              cached ? TagMap(cached->second) : TagMap());
            section = m_sections.Find(m_parts.section);
        }
        const wstring& name = section ? section->first : m_parts.section;
        if (!change.value && corvane::IsReserved(name))
            return false;
        const bool cacheOnly = m_cacheOnlySections.count(wstring(corvane::UpToNul(name))) != 0;
        if (!cacheOnly)
            m_forSource.push_back({name + CORVANE_TEXT(':') + StoredTag(section), sourceText});
        if (section)
            Change(*section, change.value, cacheOnly);
        return true;
    }

    wstring StoredTag(const SectionMap::Section* section) const {
        const auto tag = section ? section->second.Find(m_parts.tag) : std::nullopt;
        return tag ? wstring(tag->name) : m_parts.tag;
    }

    void Change(SectionMap::Section& section, const std::optional<wstring>& value, bool cacheOnly) {
        TagMap& tags = section.second;
        if (value) {
            tags.Assign(m_parts.tag, {*value, cacheOnly});
            return;
        }
        m_reduced.push_back(&section);
        if (m_parts.HasTag())
            tags.Erase(m_parts.tag);
        else
            tags = TagMap();
    }

    SectionMap& m_cache;
    std::set<wstring>& m_cacheOnlySections;
    IConfigSource& m_source;
    corvane::KeyParts m_parts;
    SectionMap m_sections;                             // the changed sections in their new state
    std::vector<const SectionMap::Section*> m_reduced; // by deletions
    std::vector<wstring> m_emptied;
    Changes m_forSource;
};

void Trace(const Changes& changes) {
    for (const auto& [key, value] : changes) {
        if (value)
            Log().logTrace(CORVANE_TEXT("ApplyChanges: key: '%s', value:'%s'"), key.c_str(), value->c_str());
        else
            Log().logTrace(CORVANE_TEXT("ApplyChanges: key: '%s', deleted"), key.c_str());
    }
}

} // namespace

int ConfigManager::ApplyChanges(const Changes& changes) {
    return ApplyChangesAs(changes, changes);
}

// `forSource` has the same keys, with texts that the source reads back as the values of `changes`.
int ConfigManager::ApplyChangesAs(const Changes& changes, const Changes& forSource) {
    static constexpr const char* function = "ConfigManager::ApplyChanges";
    Trace(changes);
    if (changes.empty())
        return 0;
    const ThreadLockGuard guard(m_lock);
    if (!m_source)
        return Fail(function, __LINE__, changes.front().key.c_str());
    Batch batch(*m_cache, m_cacheOnlySections, *m_source);
    if (const wstring* const refused = batch.Add(changes, forSource))
        return Fail(function, __LINE__, refused->c_str());

    if (!batch.ForSource().empty()) {
        const auto source = m_source; // kept alive even if a log sink makes the program load
        const auto* const cache = m_cache.get();
        const std::uint64_t revision = cache->Revision();
        const std::int32_t written = source->WriteChanges(batch.ForSource());
        if (written == 0 || written == FAILURE_GENERAL)
            return Fail(function, __LINE__);
        if (!corvane::StillLoaded(m_source.get(), *source))
            return 0; // the cache now belongs to another configuration
        const bool isSameCache = m_source == source && m_cache.get() == cache;
        if (!isSameCache || cache->Revision() != revision) { // by a log sink
            try {
                Batch again(*m_cache, m_cacheOnlySections, *m_source);
                if (!again.Add(changes, forSource))
                    again.Commit();
                return 0;
            } catch (const std::bad_alloc&) {
                if (!isSameCache)
                    return 0; // the cache was reloaded after the changes were written
            }
        }
    }
    batch.Commit();
    return 0;
}
