#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/LinuxPlatform.h>
#include <corvane/platform/linux/profile/ProfileCache.h>
#include <corvane/platform/linux/profile/ProfileCursor.h>
#include <corvane/platform/linux/profile/ProfileLine.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <utility>

namespace corvane {

using namespace platform;
using namespace os;

/// The cursor of a load, which keeps the first file that it reads.
class os::LoadCursor : public ProfileCursor {
public:
    bool IsPinned() const noexcept { return m_profile != nullptr; }
    bool Holds(const char* file) const noexcept { return std::strcmp(m_file.c_str(), file) == 0; }

    void NoteStatus(const char* file, const struct stat& status) {
        m_file = file;
        m_status = status;
    }

    const struct stat& NotedStatus() const noexcept { return m_status; }

    // Bypasses the cache of parsed files: the text is not needed after the load.
    ulong Pin(const char* file) {
        struct stat status {};
        if (!Holds(file)) {
            if (::stat(file, &status) != 0)
                return ErrorOfPath(file, errno);
            NoteStatus(file, status);
        }
        FileSnapshot snapshot;
        if (const ulong error = ReadSnapshot(file, m_status, snapshot))
            return error;
        m_profile = std::make_shared<const ProfileIndex>(std::move(snapshot.content));
        return ERROR_SUCCESS;
    }

private:
    std::string m_file;
    struct stat m_status {}; // before the file was read
};

namespace {

thread_local LoadCursor* cursorOfLoad = nullptr; // of the innermost LoadScope

bool Is(std::string_view name, const char* text) noexcept {
    return std::strncmp(name.data(), text, name.size()) == 0 && text[name.size()] == '\0';
}

} // namespace

ProfileCursor* ProfileCursor::Open(const char* file, ProfileCursor& single) {
    LoadCursor* const load = cursorOfLoad;
    ProfileCursor* cursor = load;
    ulong error = ERROR_SUCCESS;
    if (!file) {
        error = ERROR_INVALID_PARAMETER;
    } else if (load && !load->IsPinned()) {
        error = load->Pin(file);
    } else if (!load || !load->Holds(file)) {
        cursor = &single;
        error = ProfileCache::Instance().Load(file, single.m_profile);
    }
    if (error == ERROR_SUCCESS && IsUtf16(cursor->Profile().Content()))
        error = ERROR_INVALID_DATA;
    platform::SetLastError(error);
    return error == ERROR_SUCCESS ? cursor : nullptr;
}

// Whether the item is the one that a search for `name` finds.
template <typename Item>
bool ProfileCursor::IsFirst(const Item& item, const char* name) const noexcept {
    return item.name.size != 0 && !item.IsShadowed() && Is(m_profile->Text(item.name), name);
}

const ProfileCursor::Section* ProfileCursor::FindSection(const char* name) noexcept {
    if (!m_section || !IsFirst(*m_section, name)) {
        const auto& sections = m_profile->Sections();
        const Section* const next = m_section ? m_section + 1 : sections.data();
        const bool isNext = next != sections.data() + sections.size() && IsFirst(*next, name);
        m_section = isNext ? next : m_profile->FindSection(TrimBlanks(name));
        m_next = m_section ? m_profile->Begin(*m_section) : nullptr;
    }
    if (!m_section)
        platform::SetLastError(ERROR_FILE_NOT_FOUND);
    return m_section;
}

const ProfileCursor::Line* ProfileCursor::FindTag(const char* name) noexcept {
    const Line* line = m_next;
    if (line == m_profile->End(*m_section) || !IsFirst(*line, name))
        line = m_profile->FindTag(*m_section, TrimBlanks(name));
    if (line)
        m_next = line + 1;
    else
        platform::SetLastError(ERROR_FILE_NOT_FOUND);
    return line;
}

LoadScope::LoadScope()
    : m_cursor(std::make_unique<LoadCursor>()), m_outer(std::exchange(cursorOfLoad, m_cursor.get())) {}

LoadScope::~LoadScope() {
    cursorOfLoad = m_outer;
}

void LoadScope::NoteStatus(const char* file, const _stat64& status) {
    if (cursorOfLoad && !cursorOfLoad->IsPinned())
        cursorOfLoad->NoteStatus(file, status);
}

bool LoadScope::RecallStatus(const char* file, _stat64& status) noexcept {
    if (!cursorOfLoad || cursorOfLoad->IsPinned() || !cursorOfLoad->Holds(file))
        return false;
    status = cursorOfLoad->NotedStatus();
    return true;
}

} // namespace corvane
