#include <corvane/foundations/Utf.h>
#include <corvane/platform/ProfileRules.h>
#include <corvane/platform/posix/Errors.h>
#include <corvane/platform/posix/PosixPlatform.h>
#include <corvane/platform/posix/files/FileUpdate.h>
#include <corvane/platform/posix/profile/EditProfile.h>
#include <corvane/platform/posix/profile/ProfileLine.h>

#include <optional>
#include <stdexcept>

namespace corvane {

using namespace platform;
using namespace posix;

namespace {

using OptionalText = std::optional<std::string_view>; // nothing for a null

ulong Commit(FileUpdate& update, const ProfileChanges& changes) {
    return changes.empty() ? ERROR_SUCCESS : update.Commit(Changed(update.Content(), changes));
}

ulong Write(std::string_view section, std::string_view tag, std::string_view value, const std::string& file) {
    FileUpdate update;
    if (const ulong error = update.Begin(file, FileUpdate::Missing::Create))
        return error;
    if (IsUtf16(update.Content()))
        throw std::invalid_argument("a profile file in UTF-16 is not written");
    return Commit(update, SetTag(update.Content(), section, tag, value));
}

// Goes by the names as they are given: one with blanks around it is found in no file.
ulong Remove(std::string_view section, const OptionalText& tag, const std::string& file) {
    if (section.empty() || (tag && tag->empty()))
        return ERROR_SUCCESS;
    FileUpdate update;
    if (const ulong error = update.Begin(file, FileUpdate::Missing::Refuse))
        return error == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : error;
    if (IsUtf16(update.Content()))
        return ERROR_SUCCESS;
    return Commit(update, tag ? RemoveTag(update.Content(), section, *tag)
                              : RemoveSection(update.Content(), section));
}

} // namespace

int platform::WritePrivateProfileStringA(const char* section, const char* tag, const char* value,
                                         const char* file) {
    if (value)
        RefuseUnreadable(section, tag, value);
    ulong error = ERROR_SUCCESS;
    if (!section)
        error = ERROR_FILE_NOT_FOUND;
    else if (!file)
        error = ERROR_INVALID_PARAMETER;
    else if (value)
        error = Write(TrimBlanks(section), TrimBlanks(tag), value, file);
    else
        error = Remove(section, tag ? OptionalText(tag) : std::nullopt, file);
    if (error != ERROR_SUCCESS)
        SetLastError(error);
    return error == ERROR_SUCCESS;
}

int platform::WritePrivateProfileStringW(const wchar* section, const wchar* tag, const wchar* value,
                                         const wchar* file) {
    const auto fitsNoFile = [](const wchar* text) { return text && utf::HasLoneSurrogate(text); };
    if (!value && (fitsNoFile(section) || fitsNoFile(tag)))
        return 1; // gone already: what it would narrow to is another name
    const auto narrow = [](const wchar* text) { return text ? ToUtf8(text) : std::string(); };
    const std::string texts[] = {narrow(section), narrow(tag), narrow(value), narrow(file)};
    return WritePrivateProfileStringA(section ? texts[0].c_str() : nullptr, tag ? texts[1].c_str() : nullptr,
                                      value ? texts[2].c_str() : nullptr, file ? texts[3].c_str() : nullptr);
}

} // namespace corvane
