// The sections of the cache.
#pragma once

#include <corvane/cache/NameHash.h>
#include <corvane/cache/TagMap.h>

#include <unordered_map>
#include <utility>

namespace corvane {

/// A hash map from section names to tags, without regard to letter case. An operation that throws, for lack
/// of memory, has changed nothing. Not for two threads at once, even if both only read.
class SectionMap {
public:
    using Section = std::pair<const wstring, TagMap>;

    SectionMap() = default;
    SectionMap(const SectionMap& other) : m_sections(other.m_sections) {}
    SectionMap& operator=(const SectionMap&) = delete;
    ~SectionMap() = default;

    std::size_t Size() const noexcept { return m_sections.size(); }
    bool Empty() const noexcept { return m_sections.empty(); }

    /// The section, which stays where it is until it is erased, or null.
    Section* Find(const wstring& name) noexcept;
    const Section* Find(const wstring& name) const noexcept {
        return const_cast<SectionMap*>(this)->Find(name);
    }

    /// All sections in the order of the names, until the next change.
    const std::vector<const Section*>& Ordered() const;

    /// Makes room for that many sections in all.
    void Reserve(std::size_t sections) { m_sections.reserve(sections); }

    /// Adds a section; the first of two equal names stands.
    void Insert(const wstring& name, TagMap tags);

    /// The same with a copy of `tags` in large blocks of memory, for the many sections of a load.
    void InsertCopy(const wstring& name, const TagMap& tags);

    void Erase(const Section& section) noexcept;

    /// Takes all sections of `sections`, each in the place of the one of its name; one without tags only
    /// removes that. Cannot fail if there is room for those that are new.
    void Replace(SectionMap& sections) noexcept;

private:
    // Not noexcept: otherwise the standard library would hash again instead of keeping the results.
    struct Hash {
        std::size_t operator()(const wstring& name) const { return HashIgnoringCase(name); }
    };
    struct Equal {
        bool operator()(const wstring& a, const wstring& b) const noexcept { return SameIgnoringCase(a, b); }
    };

    Arena m_arena;
    std::unordered_map<wstring, TagMap, Hash, Equal> m_sections;
    mutable std::vector<const Section*> m_order; // empty until somebody asks
};

} // namespace corvane
