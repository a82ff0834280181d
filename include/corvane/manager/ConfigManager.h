// A configuration in a cache, accessed by flat keys.
#pragma once

#include <corvane/detail/CaseFolding.h>
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

/// Loads a configuration, in practice a settings file, into a cache and accesses it by keys of the form
/// `Section:Tag` (a tag is what other libraries call a key): the first colon is the separator, letter case is
/// ignored, blanks are part of the names, and a name ends at a NUL.
///
/// One lock protects all managers of the process, and any thread may call; but construction, destruction,
/// copying, IsReady, GetConfigSource and SourceWasModified must not run at the same time as changes of the
/// same manager. Results are 0 for success and FAILURE_GENERAL unless stated otherwise; every failure is
/// logged and changes nothing, the caller's variables included, unless stated otherwise. The only exceptions
/// are std::bad_alloc and std::length_error; they leave no lock held, but a write that ends in one may have
/// reached the file.
class CORVANE_API ConfigManager {
public:
    /// One tag of the cache.
    struct ConfigValue {
        corvane::wstring value; ///< the text as it was loaded or written
        bool cacheOnly = false; ///< the value is in the cache only, not in the source
    };

    /// The case-insensitive order in which names are listed.
    using CaseInsensitiveLess = corvane::CaseInsensitiveLess;

    /// The tags of one section of the cache.
    using TagMap = corvane::TagMap;
    /// The sections of the cache.
    using SectionMap = corvane::SectionMap;

    /// An empty manager without a source.
    ConfigManager();
    /// A copy has its own cache and shares the source, which its last owner destroys. A write through one of
    /// them is visible to the other only after a forced load: the shared source does not count it as a
    /// change.
    ConfigManager(const ConfigManager&);
    /// As the copy; releases the previous cache and source.
    ConfigManager& operator=(const ConfigManager&);
    ~ConfigManager();

    /// Joins section, colon and tag. A null part is omitted; nothing is validated.
    corvane::wstring BuildKey(const corvane::wchar* section, const corvane::wchar* tag) const;
    /// @overload
    corvane::wstring BuildKey(const corvane::wstring& section, const corvane::wstring& tag) const;
    /// @overload
    corvane::wstring BuildKey(const corvane::wchar* section, const corvane::wstring& tag) const;
    /// @overload
    corvane::wstring BuildKey(const corvane::wstring& section, const corvane::wchar* tag) const;

    /// The name of the loaded configuration or null; valid until the next successful load or Clear.
    const corvane::wchar* GetConfigName() const;

    /// The source or null; owned by the manager and valid until the next successful load or Clear.
    IConfigSource* GetConfigSource() const;

    /// Whether a configuration with at least one section is loaded.
    bool IsReady() const;

    /// Loads the configuration `name`, for a file its path, atomically: after a failure the manager keeps
    /// what it had. With a negative `reloadPolicy` it always loads; otherwise not if that configuration is
    /// loaded already and was not modified. Names that differ only in letter case count as one, even where
    /// they are two files. Holds the lock while it reads the file.
    int Update(const corvane::wchar* name, int reloadPolicy);

    /// Whether the source is newer than the load, in whole seconds, or cannot be examined; true without a
    /// source. corvane::FileWatch also notices changes within the same second.
    bool SourceWasModified() const;

    /// Releases the source and the cache.
    void Clear();

    /// Copies the value of `key` to `value`.
    int GetValue(const corvane::wstring& key, corvane::wstring& value);

    /// The same with `defaultValue` if there is no such value. Always returns 0.
    int GetValue(const corvane::wstring& key, corvane::wstring& value, corvane::wstring defaultValue);

    /// Whether the cache contains the key's tag, or with an empty tag its section. Logs nothing.
    bool Exists(const corvane::wstring& key) const;

    /// Writes a value to the source and then to the cache. With `cacheOnly` it is written to the cache only,
    /// in a section that the cache does not contain yet. Later plain writes to that section also stay in the
    /// cache if they use the same letter case or the cache still contains the section; otherwise they go to
    /// the source. The same holds for `_$CACHE$_`, which is reserved in exactly this letter case. While the
    /// file is busy, the write is retried once a second, 30 times by default, with the lock held.
    int SetValue(const corvane::wstring& key, const corvane::wstring& value, bool cacheOnly = false);

    /// Deletes a tag, or with an empty tag the section, from the source and then from the cache. Also returns
    /// 0 if the source refused; the value then stays. FAILURE_GENERAL if the cache has no such entry: a tag
    /// whose value is empty in the file is not in the cache, but is deleted from the file. Values of
    /// `_$CACHE$_` are not deleted.
    int DeleteValue(const corvane::wstring& key);

    /// Applies all changes in order, or none: to the source in one step and then to the cache. The last
    /// change of a tag counts; deleting a missing tag is not an error. Changes to cache-only sections do not
    /// reach the source. If SetValue would refuse one of the changes, or one deletes in the reserved section,
    /// none is applied and the log names its key. Retried like SetValue while the file is busy. Running out
    /// of memory changes nothing.
    int ApplyChanges(const std::vector<corvane::ConfigChange>& changes);

    /// Appends the names of all sections to `subKeys`, in the order of the cache. Returns the size of
    /// `subKeys`.
    std::size_t EnumerateSubKeys(std::vector<corvane::wstring>& subKeys) const;

    /// Appends the tag names of the key's section, `Section:`, to `tags`, in the order of the cache. Returns
    /// the size of `tags`; 0, with `tags` unchanged, if there is no such section.
    std::size_t EnumerateTags(const corvane::wstring& key, std::list<corvane::wstring>& tags) const;
    /// @overload
    std::size_t EnumerateTags(const corvane::wstring& key, std::vector<corvane::wstring>& tags) const;

    /// Copies the file beside itself and returns the copy's name in `snapshotName`.
    int CreateSnapshot(corvane::wstring& snapshotName);

    /// Replaces the file by the copy and loads it. The result may be an `errno` if a file is inaccessible. If
    /// the file was replaced but cannot be loaded, the manager keeps its old cache.
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
