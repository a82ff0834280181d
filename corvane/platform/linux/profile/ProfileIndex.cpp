#include <corvane/platform/linux/profile/ProfileIndex.h>
#include <corvane/platform/linux/profile/ProfileLine.h>

#include <utility>

namespace corvane::os {
namespace {

std::size_t BucketOf(std::string_view name, std::size_t count) noexcept {
    return static_cast<std::size_t>((std::uint64_t{HashName(name)} * count) >> 32);
}

template <typename Items>
std::size_t BytesOf(const Items& items) noexcept {
    return items.size() * sizeof items[0];
}

} // namespace

ProfileIndex::ProfileIndex(FileText content) : m_content(std::move(content)) {
    constexpr std::size_t bytesOfLine =
        24; // or more, in most files; what is reserved but unused is never touched
    m_lines.reserve(m_content.Size() / bytesOfLine);
    m_sections.reserve(8); // all of a small file
    ProfileLines lines(Content());
    for (ProfileLine line; lines.Next(line);) {
        if (line.kind == ProfileLine::Kind::Header) {
            CloseSection();
            const auto position = static_cast<std::uint32_t>(m_lines.size());
            m_sections.push_back({{}, SpanOf(line.name), position, position});
        } else if (m_sections.empty()) { // before the first header: no read finds it
            continue;
        } else if (line.kind == ProfileLine::Kind::Tag) {
            m_lines.push_back({{}, SpanOf(line.name), SpanOf(line.value).size});
        } else if (line.kind == ProfileLine::Kind::Other) {
            const Span text = SpanOf(TrimBlanks(UntilNul(line.text)));
            m_lines.push_back({{}, {text.begin, 0}, text.size});
        }
    }
    CloseSection();
    LinkAll(m_sections, 0);
}

void ProfileIndex::CloseSection() {
    if (m_sections.empty())
        return;
    Section& section = m_sections.back();
    section.endLine = static_cast<std::uint32_t>(m_lines.size());
    LinkAll(m_lines, section.firstLine);
}

// Links all items from `first` on into their buckets. Each chain is in file order, so that of two names that
// are equal in another locale only, the first is found.
template <typename Items>
void ProfileIndex::LinkAll(Items& items, std::size_t first) noexcept {
    for (std::size_t at = first; at < items.size(); ++at) {
        const std::string_view name = Text(items[at].name);
        if (name.empty())
            continue;
        std::uint32_t* link = &items[first + BucketOf(name, items.size() - first)].bucket;
        while (*link != none && !SameName(Text(items[*link].name), name))
            link = &items[*link].next;
        if (*link == none)
            *link = static_cast<std::uint32_t>(at);
        else
            items[at].next = shadowed;
    }
}

template <typename Items>
auto ProfileIndex::Find(const Items& items, std::size_t first, std::size_t end,
                        std::string_view name) const noexcept -> decltype(items.data()) {
    if (name.empty() || first == end)
        return nullptr;
    std::uint32_t at = items[first + BucketOf(name, end - first)].bucket;
    while (at != none && !SameName(Text(items[at].name), name))
        at = items[at].next;
    return at == none ? nullptr : &items[at];
}

std::string_view ProfileIndex::Value(const Line& line) const noexcept {
    const char* begin = Content().data() + line.name.begin;
    if (line.name.size != 0 && line.valueSize != 0) {
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
    return Find(m_sections, 0, m_sections.size(), name);
}

const ProfileIndex::Line* ProfileIndex::FindTag(const Section& section, std::string_view tag) const noexcept {
    return Find(m_lines, section.firstLine, section.endLine, tag);
}

std::size_t ProfileIndex::Footprint() const noexcept {
    return sizeof *this + m_content.Capacity() + BytesOf(m_sections) + BytesOf(m_lines);
}

ProfileIndex::Span ProfileIndex::SpanOf(std::string_view piece) const noexcept {
    if (piece.empty())
        return {};
    return {static_cast<std::uint32_t>(piece.data() - Content().data()),
            static_cast<std::uint32_t>(piece.size())};
}

} // namespace corvane::os
