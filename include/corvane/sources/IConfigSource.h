// The store behind a configuration manager.
#pragma once

#include <corvane/foundations/WideString.h>
#include <corvane/sources/ConfigChange.h>

#include <cstdint>
#include <vector>

/// The store of a configuration. ConfigManager::GetConfigSource gives access to that of a manager, which
/// keeps owning it. Not thread-safe: operations take no lock, also not against calls of the manager on other
/// threads. Failures are logged before an operation returns.
class CORVANE_API IConfigSource {
public:
    IConfigSource();
    /// A copy has seen the store when the original did.
    IConfigSource(const IConfigSource&);
    /// As the copy.
    IConfigSource& operator=(const IConfigSource&);
    virtual ~IConfigSource();

    /// The name of the source, for a file its path; never null, and valid as long as the source lives.
    virtual const corvane::wchar* GetConfigName() = 0;

    /// Whether the source can serve reads and writes; fixed when it is created.
    virtual bool IsReady() = 0;

    /// Whether the store is newer than GetModifyTime, in whole seconds, or cannot be examined.
    virtual bool WasModified() = 0;

    /// Stores the current modification time of the store; changes nothing if the store cannot be examined.
    virtual void UpdateModifyTime() = 0;

    /// Reads the lines of one section, each followed by a NUL, with another NUL at the end. Returns the
    /// number of bytes read, above zero; 0 if there is nothing; FAILURE_GENERAL for a failure.
    virtual std::int32_t ReadSection(const corvane::wstring& section, corvane::wstring& text) = 0;

    /// Adds every section name of the store to `sections`. False, with `sections` empty, if there is none.
    virtual bool EnumerateSections(std::vector<corvane::wstring>& sections) = 0;

    /// Appends the tag names of a section to `tags`: none for a section without tags, or for one with a colon
    /// in its name, which no key can address. False for an empty name.
    virtual bool EnumerateTags(const corvane::wstring& section, std::vector<corvane::wstring>& tags) = 0;

    /// Splits a key at its first colon; both parts may be empty. False for a key without one; for an empty
    /// key the outputs are unchanged. Neither output may be the key itself.
    virtual bool ParseKey(const corvane::wstring& key, corvane::wstring& section, corvane::wstring& tag) = 0;

    /// Reads one value from the store. Returns its length in the store's bytes, above zero; 0, with `value`
    /// empty, if there is no such tag or it is empty; FAILURE_GENERAL for a failure. A key with an empty tag
    /// reads the names of the section's tags, one with an empty section the names of all sections, each
    /// followed by a NUL, with another NUL at the end.
    virtual std::int32_t ReadValue(const corvane::wstring& key, corvane::wstring& value) = 0;

    /// Writes one value through to the store. Neither 0 nor FAILURE_GENERAL means that it was written; both
    /// of those mean that it was not. Takes as long as the retries last.
    virtual std::int32_t WriteValue(const corvane::wstring& key, const corvane::wstring& value) = 0;

    /// Removes a tag from the store, or with an empty tag the whole section. True if it was removed or did
    /// not exist. Takes as long as the retries last.
    virtual bool DeleteValue(const corvane::wstring& key) = 0;

    /// Copies the store and returns the copy's name in `snapshotName`. 0, or a failure code with
    /// `snapshotName` unchanged.
    virtual std::int32_t CreateSnapshot(corvane::wstring& snapshotName) = 0;

    /// Replaces the store by the copy of that name. 0, or a failure code, which may be an `errno`.
    virtual std::int32_t RestoreSnapshot(const corvane::wstring& snapshotName) = 0;

    /// Sets how many attempts a write may take, one second apart; at least one is made. The default is 30,
    /// again after each load, which creates a new source.
    virtual void SetWriteRetries(std::uint32_t count) = 0;
    /// The current number of attempts.
    virtual std::uint32_t GetWriteRetries() = 0;

    /// Makes all changes in order, or none; the last change of a tag counts. Neither 0 nor FAILURE_GENERAL
    /// means that they were made; both of those mean that none was. Takes as long as the retries last.
    /// Refused by a source that does not override it.
    virtual std::int32_t WriteChanges(const std::vector<corvane::ConfigChange>& changes);

    /// The store's modification time as the source last saw it, in seconds since 1970 UTC; 0 if it never did.
    std::int64_t GetModifyTime() const;

protected:
    std::int64_t m_modifyTime = 0; ///< what GetModifyTime gives
};
