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
    return items.size() * sizeof(T);
}

} // namespace

ProfileIndex::ProfileIndex(FileText content) : m_content(std::move(content)) {
    if (IsUtf16(Content()))
        return;
    Parse();
    if (m_keyed) // as it turned out on the way
        Parse();
}

void ProfileIndex::Parse() {
    constexpr std::size_t bytesOfLine = 24; // or more, in most files: what is not needed is never touched
    m_sections.clear();
    m_lines.clear();
    m_tagBuckets.clear();
    m_lines.reserve(m_content.Size() / bytesOfLine);
    m_tagBuckets.reserve(m_content.Size() / bytesOfLine);
    ProfileLines lines(Content());
    for (ProfileLine line; lines.Next(line);) {
        if (line.kind == ProfileLine::Kind::Header) {
            CloseSection();
            const auto position = static_cast<std::uint32_t>(m_lines.size());
            m_sections.push_back({{none}, SpanOf(line.name), position, position});
        } else if (m_sections.empty()) { // out of every reader's reach
            continue;
        } else if (line.kind == ProfileLine::Kind::Tag) {
            m_lines.push_back({{none}, SpanOf(line.name), SpanOf(line.value).size});
        } else if (line.kind == ProfileLine::Kind::Other) {
            const Span text = SpanOf(TrimBlanks(UntilNul(line.text)));
            m_lines.push_back({{none}, {text.begin, 0}, text.size});
        }
    }
    CloseSection();
    LinkSections();
}

void ProfileIndex::CloseSection() {
    if (m_sections.empty())
        return;
    Section& section = m_sections.back();
    section.endLine = static_cast<std::uint32_t>(m_lines.size());
    m_tagBuckets.resize(m_lines.size(), none);
    for (std::uint32_t at = section.firstLine; at < section.endLine; ++at) {
        if (m_lines[at].name.size != 0)
            Link(m_lines, at, m_tagBuckets[TagBucket(section, Text(m_lines[at].name))]);
    }
}

void ProfileIndex::LinkSections() {
    m_sectionBuckets.assign(m_sections.size(), none);
    for (std::uint32_t at = 0; at < m_sections.size(); ++at)
        Link(m_sections, at, m_sectionBuckets[SectionBucket(Text(m_sections[at].name))]);
}

// Each chain is in the order of the file, so that the first of two is found that only another locale holds
// equal. A long one is of names that were made for it.
template <typename Item>
void ProfileIndex::Link(std::vector<Item>& items, std::uint32_t at, std::uint32_t& bucket) noexcept {
    constexpr int longestChain = 64;
    const std::string_view name = Text(items[at].name);
    std::uint32_t* link = &bucket;
    for (int length = 0; *link != none && !SameName(Text(items[*link].name), name); ++length) {
        link = &items[*link].next;
        m_keyed = m_keyed || length == longestChain;
    }
    if (*link == none)
        *link = at;
    else
        items[at].next = shadowed;
}

std::string_view ProfileIndex::Value(const Line& line) const noexcept {
    if (line.valueSize == 0)
        return {};
    const char* begin = Content().data() + line.name.begin;
    if (line.name.size != 0) {
        begin += line.name.size;
        while (*begin != '=')
            ++begin;
        do
            ++begin;
        while (IsBlank(*begin));
    }
    return {begin, line.valueSize};
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
    if (tag.empty() || section.firstLine == section.endLine)
        return nullptr;
    for (std::uint32_t at = m_tagBuckets[TagBucket(section, tag)]; at != none; at = m_lines[at].next) {
        if (SameName(Text(m_lines[at].name), tag))
            return &m_lines[at];
    }
    return nullptr;
}

std::size_t ProfileIndex::Footprint() const noexcept {
    return sizeof *this + m_content.Room() + BytesOf(m_sections) + BytesOf(m_lines) +
           BytesOf(m_sectionBuckets) + BytesOf(m_tagBuckets);
}

ProfileIndex::Span ProfileIndex::SpanOf(std::string_view piece) const noexcept {
    if (piece.empty())
        return {};
    return {static_cast<std::uint32_t>(piece.data() - Content().data()),
            static_cast<std::uint32_t>(piece.size())};
}

std::uint64_t ProfileIndex::HashOf(std::string_view name) const noexcept {
    return m_keyed ? KeyedHashName(name) : HashName(name);
}

std::size_t ProfileIndex::SectionBucket(std::string_view name) const noexcept {
    return BucketOf(HashOf(name), m_sectionBuckets.size());
}

std::size_t ProfileIndex::TagBucket(const Section& section, std::string_view tag) const noexcept {
    return section.firstLine + BucketOf(HashOf(tag), section.endLine - section.firstLine);
}

} // namespace corvane::posix
