#include <corvane/foundations/FindUnit.h>
#include <corvane/foundations/StringUtility.h>
#include <corvane/foundations/Utf.h>
#include <corvane/sources/NarrowChanges.h>

#include <stdexcept>

using corvane::wchar;
using corvane::wstring;

void NarrowChanges::Add(const wstring& section, const wstring& tag, const std::optional<wstring>& value) {
    if (corvane::IsEmptyName(section) || (corvane::IsEmptyName(tag) && value))
        throw std::invalid_argument("a key is a section, a colon and a tag");
    const wchar* const valueText = value ? string_skipWhiteSpaceW(value->c_str()) : nullptr;
    for (const wchar* text : {section.c_str(), tag.c_str(), valueText}) {
        if (!text || !corvane::utf::HasLoneSurrogate(text))
            continue;
        if (!value)
            return;
        throw std::invalid_argument("half of a surrogate pair has no form in UTF-8");
    }
    const corvane::platform::ProfileChange change{
        Keep(section.c_str()), corvane::IsEmptyName(tag) ? nullptr : Keep(tag.c_str()), Keep(valueText)};
    corvane::platform::CheckProfileChange(change);
    m_changes.push_back(change);
}

const char* NarrowChanges::Keep(const wchar* text) {
    return text ? m_texts.emplace_back(corvane::ToUtf8(text)).c_str() : nullptr;
}
