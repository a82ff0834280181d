#include <corvane/platform/posix/profile/ProfileIndex.h>
#include <corvane/platform/posix/profile/ProfileLine.h>

#include <utility>

namespace corvane::posix {
namespace {

std::size_t BucketOf(std::uint64_t hash, std::size_t count) noexcept {
    const std::uint64_t spread = (hash * 0x9E3779B97F4A7C15) >> 32;
    return static_cast<std::size_t>((spread * count) >> 32);
}

template <typename T>
std::size_t BytesOf(const std::vector<T>& items) noexcept {
    return items.capacity() * sizeof(T);
}

} // namespace

ProfileIndex::ProfileIndex(std::string content) : m_content(std::move(content)) {
    if (IsUtf16(m_content))
        return;
    TakeLines();
    LinkSections();
    LinkTags();
}

void ProfileIndex::TakeLines() {
    ProfileLines lines(m_content);
    for (ProfileLine line; lines.Next(line);) {
        const auto position = static_cast<std::uint32_t>(m_lines.size());
        if (line.kind == ProfileLine::Kind::Header) {
            m_sections.push_back({{none}, SpanOf(line.name), position, position});
            continue;
        }
        if (m_sections.empty()) // out of every reader's reach
            continue;
        if (line.kind == ProfileLine::Kind::Tag)
            m_lines.push_back({{none}, SpanOf(line.name), SpanOf(line.value)});
        else if (line.kind == ProfileLine::Kind::Other)
            m_lines.push_back({{none}, {}, SpanOf(TrimBlanks(UntilNul(line.text)))});
        m_sections.back().endLine = static_cast<std::uint32_t>(m_lines.size());
    }
    m_sections.shrink_to_fit();
    m_lines.shrink_to_fit();
}

void ProfileIndex::LinkSections() {
    m_sectionBuckets.assign(m_sections.size(), none);
    for (std::size_t i = 0; i < m_sections.size(); ++i) {
        Section& section = m_sections[i];
        const std::string_view name = Text(section.name);
        section.next = FindSection(name) ? shadowed
                                         : std::exchange(m_sectionBuckets[SectionBucket(name)],
                                                         static_cast<std::uint32_t>(i));
    }
}

void ProfileIndex::LinkTags() {
    m_tagBuckets.assign(m_lines.size(), none);
    for (const Section& section : m_sections) {
        for (std::uint32_t at = section.firstLine; at < section.endLine; ++at) {
            Line& line = m_lines[at];
            if (line.name.size == 0)
                continue;
            std::uint32_t& bucket = m_tagBuckets[TagBucket(section, Text(line.name))];
            line.next = FindIn(bucket, section, Text(line.name)) ? shadowed : std::exchange(bucket, at);
        }
    }
}

const ProfileIndex::Section* ProfileIndex::FindSection(std::string_view name) const noexcept {
    if (name.empty() || m_sections.empty())
        return nullptr;
    for (std::uint32_t at = m_sectionBuckets[SectionBucket(name)]; at != none; at = m_sections[at].next) {
        if (SameName(Text(m_sections[at].name), name))
            return &m_sections[at];
    }
    return nullptr;
}

const ProfileIndex::Line* ProfileIndex::FindTag(const Section& section, std::string_view tag) const noexcept {
    if (tag.empty() || m_lines.empty())
        return nullptr;
    return FindIn(m_tagBuckets[TagBucket(section, tag)], section, tag);
}

const ProfileIndex::Line* ProfileIndex::FindIn(std::uint32_t bucket, const Section& section,
                                               std::string_view tag) const noexcept {
    for (std::uint32_t at = bucket; at != none; at = m_lines[at].next) {
        const bool inSection = at >= section.firstLine && at < section.endLine;
        if (inSection && SameName(Text(m_lines[at].name), tag))
            return &m_lines[at];
    }
    return nullptr;
}

std::size_t ProfileIndex::Footprint() const noexcept {
    return sizeof *this + m_content.capacity() + BytesOf(m_sections) + BytesOf(m_lines) +
           BytesOf(m_sectionBuckets) + BytesOf(m_tagBuckets);
}

ProfileIndex::Span ProfileIndex::SpanOf(std::string_view piece) const noexcept {
    if (piece.empty())
        return {};
    return {static_cast<std::uint32_t>(piece.data() - m_content.data()),
            static_cast<std::uint32_t>(piece.size())};
}

std::size_t ProfileIndex::SectionBucket(std::string_view name) const noexcept {
    return BucketOf(HashName(name), m_sectionBuckets.size());
}

std::size_t ProfileIndex::TagBucket(const Section& section, std::string_view tag) const noexcept {
    return BucketOf(HashName(tag) + section.firstLine, m_tagBuckets.size());
}

} // namespace corvane::posix
