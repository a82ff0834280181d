#include <corvane/foundations/Utf.h>
#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/LinuxPlatform.h>
#include <corvane/platform/linux/files/FileUpdate.h>
#include <corvane/platform/linux/profile/EditProfile.h>
#include <corvane/platform/linux/profile/ProfileLine.h>

#include <algorithm>
#include <stdexcept>

namespace corvane {

using namespace platform;
using namespace os;

namespace {

bool NamesSomething(const ProfileEdit& edit) noexcept {
    return !edit.section.empty() && (!edit.tag || !edit.tag->empty());
}

// Removals use the names as given: no file contains one with blanks around it.
ProfileEdit EditFor(const ProfileChange& change) {
    const auto name = [&change](std::string_view text) { return change.value ? TrimBlanks(text) : text; };
    CheckProfileChange(change);
    ProfileEdit edit;
    edit.section = name(change.section);
    if (change.tag)
        edit.tag = name(change.tag);
    if (change.value)
        edit.value = change.value;
    return edit;
}

ulong Write(const std::vector<ProfileEdit>& edits, const std::string& file) {
    const bool writes =
        std::any_of(edits.begin(), edits.end(), [](const ProfileEdit& edit) { return edit.value; });
    FileUpdate update;
    if (const ulong error =
            update.Begin(file, writes ? FileUpdate::Missing::Create : FileUpdate::Missing::Refuse))
        return error == ERROR_FILE_NOT_FOUND && !writes ? ERROR_SUCCESS : error;
    if (IsUtf16(update.Content())) {
        if (writes)
            throw std::invalid_argument("a profile file in UTF-16 is not written");
        return ERROR_SUCCESS;
    }
    const std::optional<TextFragments> text = Edited(update.Content(), edits);
    return text ? update.Commit(*text) : ERROR_SUCCESS;
}

} // namespace

int platform::WritePrivateProfileChanges(const std::vector<ProfileChange>& changes, const char* file) {
    std::vector<ProfileEdit> edits;
    edits.reserve(changes.size());
    for (const ProfileChange& change : changes)
        if (const ProfileEdit edit = EditFor(change); NamesSomething(edit))
            edits.push_back(edit);
    ulong error = ERROR_SUCCESS;
    if (!file)
        error = ERROR_INVALID_PARAMETER;
    else if (!edits.empty())
        error = Write(edits, file);
    if (error != ERROR_SUCCESS)
        SetLastError(error);
    return error == ERROR_SUCCESS;
}

int platform::WritePrivateProfileStringA(const char* section, const char* tag, const char* value,
                                         const char* file) {
    if (section)
        return WritePrivateProfileChanges({{section, tag, value}}, file);
    CheckProfileChange({section, tag, value});
    SetLastError(ERROR_FILE_NOT_FOUND);
    return 0;
}

int platform::WritePrivateProfileStringW(const wchar* section, const wchar* tag, const wchar* value,
                                         const wchar* file) {
    const auto fitsNoFile = [](const wchar* text) { return text && utf::HasLoneSurrogate(text); };
    if (!value && (fitsNoFile(section) || fitsNoFile(tag)))
        return 1; // nothing to remove: its UTF-8 form would be another name
    const auto narrow = [](const wchar* text) { return text ? ToUtf8(text) : std::string(); };
    const std::string texts[] = {narrow(section), narrow(tag), narrow(value), narrow(file)};
    return WritePrivateProfileStringA(section ? texts[0].c_str() : nullptr, tag ? texts[1].c_str() : nullptr,
                                      value ? texts[2].c_str() : nullptr, file ? texts[3].c_str() : nullptr);
}

} // namespace corvane
