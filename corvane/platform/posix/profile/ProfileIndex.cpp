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

// Each chain is in the order of the file, so that the first of two is found that only another locale holds
// equal.
void ProfileIndex::LinkSections() {
    m_sectionBuckets.assign(m_sections.size(), none);
    for (std::uint32_t at = 0; at < m_sections.size(); ++at) {
        const std::string_view name = Text(m_sections[at].name);
        std::uint32_t* link = &m_sectionBuckets[SectionBucket(name)];
        while (*link != none && !SameName(Text(m_sections[*link].name), name))
            link = &m_sections[*link].next;
        if (*link == none)
            *link = at;
        else
            m_sections[at].next = shadowed;
    }
}

void ProfileIndex::LinkTags() {
    m_tagBuckets.assign(m_lines.size(), none);
    for (const Section& section : m_sections) {
        for (std::uint32_t at = section.firstLine; at < section.endLine; ++at) {
            if (m_lines[at].name.size == 0)
                continue;
            const std::string_view name = Text(m_lines[at].name);
            std::uint32_t* link = &m_tagBuckets[TagBucket(section, name)];
            while (*link != none && !IsTag(*link, section, name))
                link = &m_lines[*link].next;
            if (*link == none)
                *link = at;
            else
                m_lines[at].next = shadowed;
        }
    }
}

bool ProfileIndex::IsTag(std::uint32_t line, const Section& section, std::string_view name) const noexcept {
    return line >= section.firstLine && line < section.endLine && SameName(Text(m_lines[line].name), name);
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
    for (std::uint32_t at = m_tagBuckets[TagBucket(section, tag)]; at != none; at = m_lines[at].next) {
        if (IsTag(at, section, tag))
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
