#include <corvane/platform/linux/profile/EditProfile.h>
#include <corvane/platform/linux/profile/NamedList.h>
#include <corvane/platform/linux/profile/ProfileLine.h>

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace corvane::os {
namespace {

using Kind = ProfileLine::Kind;

// What a series of edits comes to for a tag, and for a section.
struct TagEdit {
    std::string_view name;
    std::optional<std::string_view> value; // none: it goes
    bool isDone = false;                   // the text has the value
};

struct SectionEdit {
    std::string_view name;
    bool goes = false;    // with all that the text has of it
    bool isThere = false; // in the new text
    NamedList<TagEdit> tags;
};

const char* EndOf(std::string_view text) noexcept {
    return text.data() + text.size();
}

std::string_view EndingOf(const ProfileLine& line) noexcept {
    return line.whole.substr(line.text.size());
}

std::string_view EndingOf(std::string_view text) noexcept {
    if (text.empty() || (text.back() != '\n' && text.back() != '\r'))
        return {};
    const bool isPair = text.size() > 1 && text.substr(text.size() - 2) == "\r\n";
    return text.substr(text.size() - (isPair ? 2 : 1));
}

class ProfileEditor {
public:
    ProfileEditor(std::string_view text, const std::vector<ProfileEdit>& edits)
        : m_text(text), m_kept(text.data()) {
        for (const ProfileEdit& edit : edits)
            Plan(edit);
        for (const SectionEdit& section : m_sections)
            CountTasks(section);
    }

    std::optional<TextFragments> Run() {
        ProfileLines lines(m_text);
        for (ProfileLine line; (m_values > 0 || m_removes) && lines.Next(line);) {
            if (line.kind == Kind::Header) {
                LeaveSection(m_end);
                EnterSection(line);
            } else if (m_section) {
                VisitLine(line);
            }
            if (!m_section)
                lines.SkipToHeader();
        }
        LeaveSection(EndOf(m_text));
        if (m_values > 0)
            AddSections();
        if (!m_isChanged)
            return std::nullopt;
        Keep(EndOf(m_text));
        return std::move(m_pieces);
    }

private:
    void Plan(const ProfileEdit& edit) {
        SectionEdit& section = m_sections.FindOrAdd(edit.section);
        if (edit.tag) {
            section.tags.FindOrAdd(*edit.tag).value = edit.value;
        } else {
            section.goes = true;
            section.tags = {};
        }
    }

    void CountTasks(const SectionEdit& section) {
        m_removes = m_removes || section.goes;
        for (const TagEdit& tag : section.tags) {
            m_values += tag.value ? 1U : 0U;
            m_removes = m_removes || !tag.value;
        }
    }

    void EnterSection(const ProfileLine& header) {
        m_section = m_sections.Find(header.name);
        if (!m_section)
            return;
        m_isFirst = !m_section->isThere;
        m_section->isThere = !m_section->goes;
        m_begin = header.whole.data();
        m_end = EndOf(header.whole);
        m_last = header;
        m_lastGoes = false;
    }

    void VisitLine(const ProfileLine& line) {
        if (line.kind != Kind::Comment)
            m_end = EndOf(line.whole);
        if (m_section->goes || line.kind != Kind::Tag)
            return;
        TagEdit* const edit = m_section->tags.Find(line.name);
        m_last = line;
        m_lastGoes = edit && !edit->value;
        if (m_lastGoes) {
            Replace(line.whole.data(), EndOf(line.whole));
        } else if (edit && m_isFirst && !edit->isDone) {
            ReplaceValue(line, *edit->value);
            Done(*edit);
        }
    }

    /// `end` is that of what goes with the section.
    void LeaveSection(const char* end) {
        if (m_section && m_section->goes)
            Replace(m_begin, end);
        else if (m_section && m_isFirst)
            AddTags();
        m_section = nullptr;
    }

    void ReplaceValue(const ProfileLine& line, std::string_view value) {
        const std::string_view behindEquals = line.text.substr(line.text.find('=') + 1);
        const std::size_t blanks = std::min(behindEquals.find_first_not_of(" \t"), behindEquals.size());
        const char* begin = behindEquals.data() + blanks;
        const char* end = begin + line.value.size();
        if (!value.empty() && IsBlank(value.front()))
            begin = behindEquals.data();
        if (!value.empty() && IsBlank(value.back()))
            end = EndOf(line.text);
        if (value != std::string_view(begin, static_cast<std::size_t>(end - begin)))
            Replace(begin, end, {value});
    }

    void AddTags() {
        const std::string_view ending = EndingBeside(EndingOf(m_last));
        const char* const place = EndOf(m_last.whole);
        std::string_view missing = EndingOf(m_last).empty() && !m_lastGoes ? ending : "";
        for (TagEdit& tag : m_section->tags) {
            if (!tag.value || tag.isDone)
                continue;
            Replace(place, place, {missing, tag.name, "=", *tag.value, ending});
            missing = {};
            Done(tag);
        }
    }

    void AddSections() {
        Keep(EndOf(m_text));
        const std::string_view last = m_pieces.empty() ? "" : m_pieces.back();
        const std::string_view ending = EndingBeside(EndingOf(last));
        ProfileLine line; // there may be only a byte-order mark
        const bool hasLines = m_pieces.size() > 1 || ProfileLines(last).Next(line);
        Put({hasLines && EndingOf(last).empty() ? ending : ""});
        m_isChanged = true;
        for (SectionEdit& section : m_sections) {
            for (const TagEdit& tag : section.tags) {
                if (!tag.value || tag.isDone)
                    continue;
                if (!std::exchange(section.isThere, true))
                    Put({"[", section.name, "]", ending});
                Put({tag.name, "=", *tag.value, ending});
            }
        }
    }

    // The ending for a new line beside one whose own may be missing at the end of the text.
    std::string_view EndingBeside(std::string_view ending) const noexcept {
        ProfileLine first;
        if (ending.empty() && ProfileLines(m_text).Next(first))
            ending = EndingOf(first);
        return ending.empty() ? "\n" : ending;
    }

    void Done(TagEdit& edit) noexcept {
        edit.isDone = true;
        --m_values;
    }

    // From front to back, something else comes in the place of each piece that goes.
    void Replace(const char* begin, const char* end, std::initializer_list<std::string_view> pieces = {}) {
        Keep(begin);
        m_kept = end;
        Put(pieces);
        m_isChanged = true;
    }
    void Keep(const char* end) {
        Put({{m_kept, static_cast<std::size_t>(end - m_kept)}});
        m_kept = end;
    }
    void Put(std::initializer_list<std::string_view> pieces) {
        for (const std::string_view piece : pieces)
            if (!piece.empty())
                m_pieces.push_back(piece);
    }

    NamedList<SectionEdit> m_sections;
    std::size_t m_values = 0; // that the text has yet to get
    bool m_removes = false;   // something, to the end of the text

    std::string_view m_text;
    const char* m_kept; // the text up to here has gone into the pieces
    TextFragments m_pieces;
    bool m_isChanged = false;

    SectionEdit* m_section = nullptr; // of the line, if it is one to edit
    bool m_isFirst = false;           // of that name
    const char* m_begin = nullptr;    // of the section
    const char* m_end = nullptr;      // of its last line that is no comment
    ProfileLine m_last;               // its last tag, or its header
    bool m_lastGoes = false;
};

} // namespace

std::optional<TextFragments> Edited(std::string_view text, const std::vector<ProfileEdit>& edits) {
    return ProfileEditor(text, edits).Run();
}

} // namespace corvane::os
