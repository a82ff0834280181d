// A parsed private-profile text, for lookups without scanning.
#pragma once

#include <corvane/platform/LargeBlocks.h>
#include <corvane/platform/linux/files/FileText.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>
#include <vector>

namespace corvane::os {

/// Owns the text (at most maximumFileSize bytes) and the positions of its names and values: 20 bytes a line.
/// Built in linear time. Immutable, so safe to share between threads; its views are valid as long as the
/// index.
class ProfileIndex {
public:
    static constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();
    static constexpr std::uint32_t shadowed = none - 1;

    /// A part of the text.
    struct Span {
        std::uint32_t begin = 0;
        std::uint32_t size = 0;
    };

    /// The sections, and the tags of each section, form a hash table with as many buckets, which are chains
    /// of distinct names. A shadowed item, whose name another one before it has, is in no chain.
    struct Link {
        std::uint32_t bucket = none; ///< the first item of the bucket with this item's index
        std::uint32_t next = none;   ///< the next item of the same bucket
        bool IsShadowed() const noexcept { return next == shadowed; }
    };

    /// A tag, or with an empty name another line of the section's text. There are many lines, so the start of
    /// a value is not stored but found after the name.
    struct Line : Link {
        Span name;
        std::uint32_t valueSize = 0;
    };

    struct Section : Link {
        Span name;
        std::uint32_t firstLine = 0;
        std::uint32_t endLine = 0;
    };

    explicit ProfileIndex(FileText content);

    std::string_view Content() const noexcept { return m_content.View(); }
    std::string_view Text(Span span) const noexcept { return {Content().data() + span.begin, span.size}; }

    /// A tag's value with its quotes, or another line.
    std::string_view Value(const Line& line) const noexcept;

    /// All sections in order, including duplicates and the unnamed one.
    const std::vector<Section>& Sections() const noexcept { return m_sections; }
    const Line* Begin(const Section& section) const noexcept { return m_lines.data() + section.firstLine; }
    const Line* End(const Section& section) const noexcept { return m_lines.data() + section.endLine; }

    /// The first section of that name, letter case ignored; null if there is none or the name is empty.
    const Section* FindSection(std::string_view name) const noexcept;

    /// The section's first tag of that name, letter case ignored, or null.
    const Line* FindTag(const Section& section, std::string_view tag) const noexcept;

    /// The memory used by the index, in bytes.
    std::size_t Footprint() const noexcept;

private:
    void CloseSection();
    template <typename Items>
    void LinkAll(Items& items, std::size_t first) noexcept;
    template <typename Items>
    auto Find(const Items& items, std::size_t first, std::size_t end, std::string_view name) const noexcept
        -> decltype(items.data());
    Span SpanOf(std::string_view piece) const noexcept;

    FileText m_content;
    std::vector<Section> m_sections;
    std::vector<Line, platform::LargeBlockAllocator<Line>> m_lines;
};

} // namespace corvane::os
