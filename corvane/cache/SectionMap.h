// The sections of the cache.
#pragma once

#include <corvane/cache/NameHash.h>
#include <corvane/cache/TagMap.h>

#include <unordered_map>
#include <utility>

namespace corvane {

/// A hash map from section names to tags that ignores letter case. If an operation throws, for lack of
/// memory, nothing has changed. Not thread-safe, not even for reading.
class SectionMap {
public:
    using Section = std::pair<const wstring, TagMap>;

    SectionMap() = default;
    SectionMap(const SectionMap& other) : m_sections(other.m_sections) {}
    SectionMap& operator=(const SectionMap&) = delete;
    ~SectionMap() = default;

    std::size_t Size() const noexcept { return m_sections.size(); }
    bool Empty() const noexcept { return m_sections.empty(); }

    /// The section, whose address is stable until it is erased, or null.
    Section* Find(const wstring& name) noexcept {
        ++m_revision;
        return const_cast<Section*>(std::as_const(*this).Find(name));
    }
    const Section* Find(const wstring& name) const noexcept;

    /// Increases with each change and with each look-up that allows one.
    std::uint64_t Revision() const noexcept { return m_revision; }

    /// All sections, sorted by name; valid until the next change.
    const std::vector<const Section*>& Ordered() const;

    /// Reserves capacity for that many sections in all.
    void Reserve(std::size_t sections) { m_sections.reserve(sections); }

    /// Adds a section; does nothing if the name exists.
    void Insert(const wstring& name, TagMap&& tags);

    /// The same with a copy of `tags` in large blocks of memory, for the many sections of a load.
    void InsertCopy(const wstring& name, const TagMap& tags);

    void Erase(const Section& section) noexcept;

    /// Moves all sections of `sections` here, replacing those of the same name; one without tags only removes
    /// its namesake. Cannot fail if capacity is reserved for the new ones.
    void Replace(SectionMap& sections) noexcept;

private:
    // Not noexcept: otherwise the standard library would hash again instead of keeping the results.
    struct Hash {
        std::size_t operator()(const wstring& name) const { return HashIgnoringCase(name); }
    };
    struct Equal {
        bool operator()(const wstring& a, const wstring& b) const noexcept { return SameIgnoringCase(a, b); }
    };

    void Changed() noexcept {
        m_order.clear();
        ++m_revision;
    }

    Arena m_arena;
    std::unordered_map<wstring, TagMap, Hash, Equal> m_sections;
    mutable std::vector<const Section*> m_order; // computed on demand; empty until then
    std::uint64_t m_revision = 0;
};

} // namespace corvane
