// A private-profile text, parsed once and then looked up in without scanning.
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

/// Owns the text (of at most maximumFileSize bytes) and the places of its names and values in it: 20 bytes a
/// line. Built in time in proportion to the text. Immutable, so safe to share between threads; every view
/// that it hands out lasts as long as the index. A UTF-16 text has no sections.
class ProfileIndex {
public:
    static constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();
    static constexpr std::uint32_t shadowed = none - 1;

    /// A piece of the text.
    struct Span {
        std::uint32_t begin = 0;
        std::uint32_t size = 0;
    };

    /// The sections, and the tags of a section, are a table of as many buckets. Each bucket is a chain of
    /// which no two are equal: what has the name of one before it is in none, so that nobody finds it by
    /// name.
    struct Link {
        std::uint32_t bucket = none; ///< the first one in the bucket that has this one's place
        std::uint32_t next = none;   ///< behind this one in the same bucket
        bool IsShadowed() const noexcept { return next == shadowed; }
    };

    /// A tag, or with an empty name another line that stands in the section's text. There are many: where a
    /// value begins is not kept, but found behind the name.
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

    /// All sections in order, including duplicates and the one without a name.
    const std::vector<Section>& Sections() const noexcept { return m_sections; }
    const Line* Begin(const Section& section) const noexcept { return m_lines.data() + section.firstLine; }
    const Line* End(const Section& section) const noexcept { return m_lines.data() + section.endLine; }

    /// The first section of that name, letter case ignored; null when there is none, or the name is empty.
    const Section* FindSection(std::string_view name) const noexcept;

    /// The section's first tag of that name, letter case ignored, or null.
    const Line* FindTag(const Section& section, std::string_view tag) const noexcept;

    /// The memory that the index takes, in bytes.
    std::size_t Footprint() const noexcept;

private:
    void Parse();
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
