// Any bytes as a settings file, and one change of it. The first line of the input says which: the kind of
// change, a section, a tag and a value between bars, where `#n` is the n-th section or tag of the file.
#include "Fuzz.h"

#include <corvane/manager/ConfigManager.h>
#include <corvane/sources/IConfigSource.h>

#include <algorithm>

using namespace fuzz;

namespace {

/// One piece of a line changes, or new ones come at the end of one.
void CheckWritten(const std::string& before, const std::string& after) {
    const auto [head, newHead] = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    const auto tail = std::mismatch(before.rbegin(), std::make_reverse_iterator(head), after.rbegin(),
                                    std::make_reverse_iterator(newHead));
    const std::string gone(head, tail.first.base());
    Require(gone.find_first_of("\r\n") == std::string::npos, "a write takes nothing but the value");
}

void CheckDeleted(const std::string& before, const std::string& after) {
    std::size_t kept = 0;
    for (const char byte : before)
        kept += kept < after.size() && byte == after[kept] ? 1U : 0U;
    Require(kept == after.size(), "a deletion adds and moves nothing");
}

/// The state without one tag, or with an empty tag without one section.
std::vector<Entry> Without(std::vector<Entry> state, const wstring& section, const wstring& tag) {
    const auto isConcerned = [&](const Entry& entry) {
        const auto& [itsSection, itsTag, itsValue] = entry;
        return corvane::SameIgnoringCase(itsSection, section) &&
               (tag.empty() || itsTag.empty() || corvane::SameIgnoringCase(itsTag, tag));
    };
    state.erase(std::remove_if(state.begin(), state.end(), isConcerned), state.end());
    return state;
}

wstring Chosen(const std::string& text, std::vector<wstring> names) {
    if (text.empty() || text[0] != '#' || names.empty())
        return corvane::ToWide(text);
    wstring name = names[std::strtoul(text.c_str() + 1, nullptr, 10) % names.size()];
    for (auto& unit : name) // the letter case doesn't count
        unit = static_cast<corvane::wchar>(unit >= 'a' && unit <= 'z' ? unit - 'a' + 'A' : unit);
    return name;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const std::string kind = input.Until('|');
    const std::string sectionText = input.Until('|');
    const std::string tagText = input.Until('|');
    const std::string valueText = input.Until('\n');
    const std::string before(input.Rest());
    const std::string path = Folder().Write("f", before);
    const wstring file = corvane::ToWide(path);

    ConfigManager manager;
    if (manager.Update(file.c_str(), -1) != 0) {
        Require(!manager.IsReady() && Bytes(path) == before, "a failed load changes nothing");
        return 0;
    }
    const std::vector<Entry> old = StateOf(manager);
    std::vector<wstring> names;
    manager.EnumerateSubKeys(names);
    wstring section = Chosen(sectionText, names);
    section = section.substr(0, section.find(u':'));
    names.clear();
    manager.EnumerateTags(section + u":", names);
    const wstring tag = Chosen(tagText, names);
    const wstring key = section + u':' + tag;
    const wstring value = corvane::ToWide(valueText);

    const bool isDeletion = kind == "d";
    const bool isReserved = section == u"_$CACHE$_" && !manager.Exists(section + u":");
    const bool existed = manager.Exists(key) && !section.empty();
    const int result = isDeletion ? manager.DeleteValue(key) : manager.SetValue(key, value);
    const std::string after = Bytes(path);
    // A tag that the cache does not have is deleted from the file all the same, and reported as missing.
    Require(result == 0 || (isDeletion ? !existed : after == before), "a refusal changes nothing");
    Require(Without(StateOf(manager), section, tag) == Without(old, section, tag),
            "nothing else changes in the cache");
    if (result != 0 && !isDeletion)
        return 0;
    // As the names stand in the file: ended by a NUL, and when they are written without the blanks around
    // them.
    const auto inFile = [isDeletion](const wstring& name) {
        const std::string text = corvane::ToUtf8(name.c_str());
        return corvane::ToWide(isDeletion ? text : Trimmed(text));
    };
    const wstring fileSection = inFile(section);
    const wstring fileTag = inFile(tag);
    const wstring fileKey = fileSection + u':' + fileTag;
    ConfigManager reader;
    reader.Update(file.c_str(), -1);
    Require(Without(StateOf(reader), fileSection, fileTag) == Without(old, fileSection, fileTag),
            "nothing else changes in the file");
    if (isDeletion) {
        CheckDeleted(before, after);
        Require(!existed || !reader.Exists(fileKey), "what is deleted is gone");
    }
    Require(!isReserved || isDeletion || after == before, "the reserved section is in no file");
    if (isDeletion || isReserved)
        return 0;
    CheckWritten(before, after);
    const std::string wanted = AsRead(corvane::ToUtf8(value.c_str()));
    wstring read;
    Require(reader.GetValue(fileKey, read) == (wanted.empty() ? FAILURE_GENERAL : 0) &&
                corvane::ToUtf8(read) == wanted,
            "what was written is read back");
    Require(manager.SetValue(key, value) == 0 && Bytes(path) == after, "the same again changes nothing");
    return 0;
}
