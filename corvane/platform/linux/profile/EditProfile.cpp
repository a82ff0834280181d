#include <corvane/platform/linux/profile/EditProfile.h>
#include <corvane/platform/linux/profile/NamedList.h>
#include <corvane/platform/linux/profile/ProfileLine.h>

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace corvane::os {
namespace {

using Kind = ProfileLine::Kind;

// The net effect of a series of edits on one tag, and on one section.
struct TagEdit {
    std::string_view name;
    std::optional<std::string_view> value;
    bool isRemoved = false; // remove all lines of this name, before the value is added
    bool isDone = false;    // the new text has the value
};

struct SectionEdit {
    std::string_view name;
    bool isRemoved = false; // remove all sections of this name from the text, before the tags are added
    bool isNamed = false;   // by a value
    bool isWritten = false; // in the new text
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
        : m_text(text), m_copied(text.data()) {
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
        CopyUntil(EndOf(m_text));
        return std::move(m_fragments);
    }

private:
    // What is new in the text has the name under which it was first written.
    void Plan(const ProfileEdit& edit) {
        SectionEdit& section = m_sections.FindOrAdd(edit.section);
        if (!edit.tag) {
            section = {edit.section, true, false, false, {}};
            return;
        }
        TagEdit& tag = section.tags.FindOrAdd(*edit.tag);
        if (!edit.value) {
            tag = {tag.name, std::nullopt, true, false};
            return;
        }
        if (!std::exchange(section.isNamed, true))
            section.name = edit.section;
        if (!tag.value)
            tag.name = *edit.tag;
        tag.value = edit.value;
    }

    void CountTasks(const SectionEdit& section) {
        m_removes = m_removes || section.isRemoved;
        for (const TagEdit& tag : section.tags) {
            m_values += tag.value ? 1U : 0U;
            m_removes = m_removes || tag.isRemoved;
        }
    }

    void EnterSection(const ProfileLine& header) {
        m_section = m_sections.Find(header.name);
        if (!m_section)
            return;
        m_isFirst = !m_section->isWritten;
        m_section->isWritten = !m_section->isRemoved;
        m_begin = header.whole.data();
        m_end = EndOf(header.whole);
        m_last = header;
        m_lastIsRemoved = false;
    }

    void VisitLine(const ProfileLine& line) {
        if (line.kind != Kind::Comment)
            m_end = EndOf(line.whole);
        if (m_section->isRemoved || line.kind != Kind::Tag)
            return;
        TagEdit* const edit = m_section->tags.Find(line.name);
        m_last = line;
        m_lastIsRemoved = edit && edit->isRemoved;
        if (m_lastIsRemoved) {
            Replace(line.whole.data(), EndOf(line.whole));
        } else if (edit && m_isFirst && !edit->isDone) {
            ReplaceValue(line, *edit->value);
            Done(*edit);
        }
    }

    /// `end` is the end of what is removed with the section.
    void LeaveSection(const char* end) {
        if (m_section && m_section->isRemoved)
            Replace(m_begin, end);
        else if (m_section && m_isFirst)
            AddTags();
        m_section = nullptr;
    }

    void ReplaceValue(const ProfileLine& line, std::string_view value) {
        const std::string_view afterEquals = line.text.substr(line.text.find('=') + 1);
        const std::size_t blanks = std::min(afterEquals.find_first_not_of(" \t"), afterEquals.size());
        const char* begin = afterEquals.data() + blanks;
        const char* end = begin + line.value.size();
        if (!value.empty() && IsBlank(value.front()))
            begin = afterEquals.data();
        if (!value.empty() && IsBlank(value.back()))
            end = EndOf(line.text);
        if (value != std::string_view(begin, static_cast<std::size_t>(end - begin)))
            Replace(begin, end, {value});
    }

    void AddTags() {
        const std::string_view ending = EndingBeside(EndingOf(m_last));
        const char* const position = EndOf(m_last.whole);
        std::string_view missing = EndingOf(m_last).empty() && !m_lastIsRemoved ? ending : "";
        for (TagEdit& tag : m_section->tags) {
            if (!tag.value || tag.isDone)
                continue;
            Replace(position, position, {missing, tag.name, "=", *tag.value, ending});
            missing = {};
            Done(tag);
        }
    }

    void AddSections() {
        CopyUntil(EndOf(m_text));
        const std::string_view last = m_fragments.empty() ? "" : m_fragments.back();
        const std::string_view ending = EndingBeside(EndingOf(last));
        ProfileLine line; // there may be only a byte-order mark
        const bool hasLines = m_fragments.size() > 1 || ProfileLines(last).Next(line);
        Put({hasLines && EndingOf(last).empty() ? ending : ""});
        m_isChanged = true;
        for (SectionEdit& section : m_sections) {
            for (const TagEdit& tag : section.tags) {
                if (!tag.value || tag.isDone)
                    continue;
                if (!std::exchange(section.isWritten, true))
                    Put({"[", section.name, "]", ending});
                Put({tag.name, "=", *tag.value, ending});
            }
        }
    }

    // The ending for a new line after one whose own may be missing at the end of the text.
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

    // Edits are made from front to back.
    void Replace(const char* begin, const char* end, std::initializer_list<std::string_view> fragments = {}) {
        CopyUntil(begin);
        m_copied = end;
        Put(fragments);
        m_isChanged = true;
    }
    void CopyUntil(const char* end) {
        Put({{m_copied, static_cast<std::size_t>(end - m_copied)}});
        m_copied = end;
    }
    void Put(std::initializer_list<std::string_view> fragments) {
        for (const std::string_view fragment : fragments)
            if (!fragment.empty())
                m_fragments.push_back(fragment);
    }

    NamedList<SectionEdit> m_sections;
    std::size_t m_values = 0; // still to be written
    bool m_removes = false;   // so the whole text must be visited

    std::string_view m_text;
    const char* m_copied; // the text up to here is in m_fragments
    TextFragments m_fragments;
    bool m_isChanged = false;

    SectionEdit* m_section = nullptr; // the current section, if it is to be edited
    bool m_isFirst = false;           // the first section of its name
    const char* m_begin = nullptr;    // of the section
    const char* m_end = nullptr;      // of its last line that is not a comment
    ProfileLine m_last;               // its last tag, or its header
    bool m_lastIsRemoved = false;
};

} // namespace

std::optional<TextFragments> Edited(std::string_view text, const std::vector<ProfileEdit>& edits) {
    return ProfileEditor(text, edits).Run();
}

} // namespace corvane::os
