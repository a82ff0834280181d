// The heart of the library: a whole configuration in a cache, reached by flat keys.
#pragma once

#include <corvane/foundations/CaseFolding.h>
#include <corvane/foundations/FailureCode.h>
#include <corvane/foundations/ThreadLock.h>
#include <corvane/foundations/WideString.h>
#include <corvane/sources/ConfigChange.h>

#include <cstddef>
#include <list>
#include <memory>
#include <set>
#include <vector>

class IConfigSource;

namespace corvane {
class ComfortAccess;
class SectionMap;
class TagMap;
} // namespace corvane

/// Loads a configuration, in practice a settings file, into a cache and answers for it by keys of the form
/// `Section:Tag`: the first colon splits, letter case does not count, blanks belong to the names, and a name
/// ends at a NUL.
///
/// One lock serves all managers of the process; any thread may call, but must keep construction, destruction,
/// copying, IsReady, GetConfigSource and SourceWasModified apart from changes of the same manager. Results
/// are 0 for success and FAILURE_GENERAL, unless told otherwise; every failure is in the log. On failure
/// nothing has changed, the caller's own variables included, unless told otherwise. Exceptions come from lack
/// of memory alone and leave no lock held; a write that ends in one may have reached the file.
class CORVANE_API ConfigManager {
public:
    /// One tag of the cache.
    struct ConfigValue {
        corvane::wstring value; ///< the text as it was loaded or written
        bool cacheOnly = false; ///< the value lives in the cache alone and the source does not hold it
    };

    /// The order in which names are listed, without regard to letter case.
    using CaseInsensitiveLess = corvane::CaseInsensitiveLess;

    /// The tags of one section of the cache.
    using TagMap = corvane::TagMap;
    /// The sections of the cache.
    using SectionMap = corvane::SectionMap;

    /// An empty manager without a source.
    ConfigManager();
    /// A copy has a cache of its own and shares the source, which goes with its last owner. What one of them
    /// writes the other sees after a forced load only: to the shared source it is no change.
    ConfigManager(const ConfigManager&);
    /// As the copy; lets go of the cache and source of before.
    ConfigManager& operator=(const ConfigManager&);
    ~ConfigManager();

    /// Makes a key: section, a colon, tag. A null part is left out; nothing is examined.
    corvane::wstring BuildKey(const corvane::wchar* section, const corvane::wchar* tag) const;
    /// @overload
    corvane::wstring BuildKey(const corvane::wstring& section, const corvane::wstring& tag) const;
    /// @overload
    corvane::wstring BuildKey(const corvane::wchar* section, const corvane::wstring& tag) const;
    /// @overload
    corvane::wstring BuildKey(const corvane::wstring& section, const corvane::wchar* tag) const;

    /// The name of the loaded configuration or null; it lasts until the next successful load or Clear.
    const corvane::wchar* GetConfigName() const;

    /// The source or null; it stays the manager's and lasts until the next successful load or Clear.
    IConfigSource* GetConfigSource() const;

    /// Whether a configuration with at least one section is loaded.
    bool IsReady() const;

    /// Loads the configuration `name`, for a file its path, whole or not at all: after a failure the manager
    /// goes on answering for what it had. With `reloadPolicy` zero or above, a configuration that is loaded
    /// already and was not modified is not loaded again; below zero it is. Names that differ in letter case
    /// alone are one name here, even where they are two files. Holds the lock while it reads the file.
    int Update(const corvane::wchar* name, int reloadPolicy);

    /// Whether the source is newer than the load, in whole seconds, or cannot be examined; true without a
    /// source.
    bool SourceWasModified() const;

    /// Lets go of source and cache.
    void Clear();

    /// Copies the value of `key` to `value`.
    int GetValue(const corvane::wstring& key, corvane::wstring& value);

    /// The same with `defaultValue` where there is no such value. Always 0.
    int GetValue(const corvane::wstring& key, corvane::wstring& value, corvane::wstring defaultValue);

    /// Whether the cache has the key's tag, or with an empty tag its section. Logs nothing.
    bool Exists(const corvane::wstring& key) const;

    /// Writes a value to the source and then to the cache. With `cacheOnly` it goes to the cache alone, into
    /// a section that the cache does not have yet; further plain writes into that section stay in the cache
    /// too, if the name has the same letter case or the cache still has the section: otherwise they go to the
    /// source. That is so for `_$CACHE$_` as well, which is reserved in that very letter case alone. While
    /// the file is busy it is tried again once a second, 30 times by default, with the lock held.
    int SetValue(const corvane::wstring& key, const corvane::wstring& value, bool cacheOnly = false);

    /// Deletes a tag, or with an empty tag the section, from the source and then from the cache. 0 also if
    /// the source refused, which leaves the value readable; FAILURE_GENERAL if the cache had no such entry: a
    /// tag whose value is empty in the file is not in the cache, and goes from the file all the same. Values
    /// of `_$CACHE$_` stay.
    int DeleteValue(const corvane::wstring& key);

    /// Makes all changes or none, in their order: to the source in one step, and then to the cache. The last
    /// change of a tag counts; deleting what is not there is no failure. A section that is in the cache alone
    /// when this is called stays there, and the source is not asked for its changes. A change that SetValue
    /// would refuse, or a deletion in the reserved section, refuses them all, and the log names its key.
    /// While the file is busy it is tried again, as by SetValue. Lack of memory changes nothing either.
    int ApplyChanges(const std::vector<corvane::ConfigChange>& changes);

    /// Adds the names of all sections at the end of `subKeys`, in the order of the cache. Returns its size.
    std::size_t EnumerateSubKeys(std::vector<corvane::wstring>& subKeys) const;

    /// Adds the tag names of the key's section, `Section:`, at the end of `tags`, in the order of the cache.
    /// Returns its size; 0, with `tags` untouched, if there is no such section.
    std::size_t EnumerateTags(const corvane::wstring& key, std::list<corvane::wstring>& tags) const;
    /// @overload
    std::size_t EnumerateTags(const corvane::wstring& key, std::vector<corvane::wstring>& tags) const;

    /// Copies the file under a name of its own and gives that name.
    int CreateSnapshot(corvane::wstring& snapshotName);

    /// Puts the copy in the file's place and loads it. The result may be an `errno` if a file is out of
    /// reach. If the file was replaced and cannot be loaded, the manager goes on answering from its old
    /// cache.
    int RestoreSnapshot(const corvane::wstring& snapshotName);

private:
    friend class corvane::ComfortAccess;

    int Initialize(const corvane::wchar* name, int reloadPolicy);
    int _GetValue(const corvane::wstring& key, corvane::wstring& value);
    int _SetValue(const corvane::wstring& key, const corvane::wstring& value, bool cacheOnly);
    int _SetValue(const corvane::wstring& key, const corvane::wstring& value,
                  const corvane::wstring& sourceText, bool cacheOnly);
    int ApplyChangesAs(const std::vector<corvane::ConfigChange>& changes,
                       const std::vector<corvane::ConfigChange>& forSource);
    bool ValidateCacheOnlyKey(const corvane::wstring& key, bool cacheOnly) CORVANE_REQUIRES(m_lock);
    void PreserveCacheOnlyValues(SectionMap& preserved, const SectionMap& cache, const bool& newName)
        CORVANE_REQUIRES(m_lock);
    void RestoreCacheOnlyValues(const SectionMap& preserved, SectionMap& cache) CORVANE_REQUIRES(m_lock);
    corvane::wstring GetKeyFromCache(const corvane::wstring& key) const CORVANE_REQUIRES(m_lock);

    std::unique_ptr<SectionMap> m_cache CORVANE_GUARDED_BY(m_lock); // never null
    std::shared_ptr<IConfigSource> m_source CORVANE_GUARDED_BY(m_lock);
    std::set<corvane::wstring> m_cacheOnlySections CORVANE_GUARDED_BY(m_lock);

    static ThreadLock m_lock; // one for all managers
};
