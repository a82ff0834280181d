// Loading, reloading and releasing a configuration.
#include <corvane/cache/SectionMap.h>
#include <corvane/manager/ConfigManager.h>
#include <corvane/manager/Log.h>
#include <corvane/manager/ReservedSection.h>
#include <corvane/platform/Platform.h>
#include <corvane/sources/CreateConfigSource.h>

using corvane::Fail;
using corvane::Log;
using corvane::wchar;
using corvane::wstring;

namespace {

constexpr const char* initialize = "ConfigManager::Initialize";

int FailLoad(const wchar* explanation, std::int32_t line) {
    Log().logProblem(explanation);
    return Fail(initialize, line);
}

bool SameConfiguration(IConfigSource& source, const wchar* name) {
    return platform::_wcsicmp(name, source.GetConfigName()) == 0;
}

// Reads the tags of one section after another into the same buffers.
class TagReader {
public:
    explicit TagReader(IConfigSource& source) : m_source(source) {
        constexpr std::size_t units = 100; // of most keys and values
        m_key.reserve(units);
        m_loaded.value.reserve(units);
    }

    // Replaces the content of `tagMap`. Leaves out tags whose value is empty or cannot be read. `sectionKey`
    // is the section and a colon.
    void Read(const wstring& sectionKey, const std::vector<wstring>& tags, ConfigManager::TagMap& tagMap) {
        tagMap.Clear();
        tagMap.Reserve(tags.size());
        m_key = sectionKey;
        for (const wstring& tag : tags) {
            m_key.resize(sectionKey.size());
            m_key += tag;
            m_loaded.value.clear();
            const std::int32_t result = m_source.ReadValue(m_key, m_loaded.value);
            const bool failed = result == FAILURE_GENERAL && m_loaded.value.empty();
            if (result > 0 && !failed)
                tagMap.Insert(tag, m_loaded);
        }
    }

private:
    IConfigSource& m_source;
    wstring m_key;
    ConfigManager::ConfigValue m_loaded;
};

} // namespace

int ConfigManager::Update(const wchar* name, int reloadPolicy) {
    // `name` may point into the present source, which ends if a log sink makes the program load.
    const wstring kept(name ? name : CORVANE_TEXT(""));
    name = name ? kept.c_str() : nullptr;
    if (Initialize(name, reloadPolicy) == 0)
        return 0;
    return failure_reportFormatted(FAILURE_GENERAL,
                                   CORVANE_TEXT("failed to initialize config manager from '%s'"),
                                   configChannel, "ConfigManager::Update", __LINE__, name);
}

int ConfigManager::Initialize(const wchar* name, int reloadPolicy) {
    if (!name || !*name)
        return Fail(initialize, __LINE__, CORVANE_TEXT("empty or invalid config name"));
    const ThreadLockGuard guard(m_lock);
    if (m_source && reloadPolicy >= 0 && SameConfiguration(*m_source, name) && !m_source->WasModified()) {
        Log().logProgress(CORVANE_TEXT("config source was not modified, reload not performed"));
        return 0;
    }

    Log().logProgress(CORVANE_TEXT("loading config from '%s'"), name);
    const bool newName = !m_source || !SameConfiguration(*m_source, name);
    auto newCache = std::make_unique<SectionMap>();
    const platform::LoadScope consistentView;
    std::shared_ptr<IConfigSource> newSource(CreateConfigSource(name));
    if (!newSource->IsReady())
        return FailLoad(CORVANE_TEXT("new configuration object is not ready"), __LINE__);

    SectionMap preserved;
    PreserveCacheOnlyValues(preserved, *m_cache, newName);

    std::vector<wstring> sections;
    if (!newSource->EnumerateSections(sections))
        return FailLoad(CORVANE_TEXT("failed to get sections from new config source"), __LINE__);
    newCache->Reserve(sections.size());
    std::vector<wstring> tags;
    TagMap tagMap;
    TagReader reader(*newSource);
    for (const wstring& section : sections) {
        tags.clear();
        if (section == corvane::reservedSection)
            return FailLoad(CORVANE_TEXT("cache node specified in config file (illegal)"), __LINE__);
        if (newCache->Find(section)) // the first of several sections of one name counts
            continue;
        if (!newSource->EnumerateTags(section, tags))
            continue;
        reader.Read(BuildKey(section, nullptr), tags, tagMap);
        newCache->InsertCopy(section, tagMap);
    }
    RestoreCacheOnlyValues(preserved, *newCache);

    // Nothing can fail from here on.
    m_source = std::move(newSource);
    m_cache.swap(newCache);
    return 0;
}

bool ConfigManager::SourceWasModified() const CORVANE_TAKES_NO_LOCK {
    return !m_source || m_source->WasModified();
}

void ConfigManager::Clear() {
    const ThreadLockGuard guard(m_lock);
    std::set<wstring> cacheOnlySections{corvane::reservedSection};
    m_cache = std::make_unique<SectionMap>();
    m_source.reset();
    m_cacheOnlySections.swap(cacheOnlySections);
}
