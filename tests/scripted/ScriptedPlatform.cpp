#include "ScriptedPlatform.h"

#include <corvane/foundations/CaseFolding.h>
#include <corvane/foundations/Utf.h>
#include <corvane/platform/Platform.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>

// A load here sees whatever the test says at each read.
class corvane::posix::ProfileRun {};

namespace {

ScriptedPlatform scripted;
thread_local bool inPlatform = false;

struct PlatformScope {
    PlatformScope() { inPlatform = true; }
    PlatformScope(const PlatformScope&) = delete;
    PlatformScope& operator=(const PlatformScope&) = delete;
    ~PlatformScope() { inPlatform = false; }
};

std::string Shown(const char* text) {
    return text ? text : "null";
}

std::string Shown(const corvane::wchar* text) {
    return text ? corvane::ToUtf8(text) : "null";
}

// What fits of a list goes into the buffer, as the real operation does it.
corvane::ulong GiveList(const std::string& list, char* buffer, corvane::ulong size) {
    const std::size_t count = std::min<std::size_t>(list.size(), size - 2);
    std::memcpy(buffer, list.data(), count);
    std::memset(buffer + count, 0, 2);
    return static_cast<corvane::ulong>(count);
}

template <class Text>
int Write(const char* operation, Text section, Text tag, Text value, Text file) {
    const PlatformScope scope;
    scripted.calls.push_back(operation + (" " + Shown(section)) + " " + Shown(tag) + " " + Shown(value) +
                             " " + Shown(file));
    if (scripted.throwOnWrite)
        throw std::runtime_error("scripted");
    scripted.lastError = scripted.refusals.empty() ? scripted.refuseAlways : scripted.refusals.front();
    if (!scripted.refusals.empty())
        scripted.refusals.pop_front();
    return scripted.lastError == 0 ? 7 : 0;
}

} // namespace

bool InPlatform() {
    return inPlatform;
}

ScriptedPlatform& Platform() {
    return scripted;
}

void Reset() {
    scripted = {};
}

namespace corvane::platform {

LoadScope::LoadScope() : m_outer(nullptr) {}
LoadScope::~LoadScope() {
    static_cast<void>(m_outer);
}

ulong GetLastError() noexcept {
    return scripted.lastError;
}

void Sleep(ulong milliseconds) noexcept {
    const PlatformScope scope;
    scripted.calls.push_back("Sleep " + std::to_string(milliseconds));
}

int MultiByteToWideChar(unsigned, ulong, const char* text, int length, wchar* buffer, int) noexcept {
    const std::string_view utf8(text, static_cast<std::size_t>(length));
    return static_cast<int>(buffer ? utf::ToWide(utf8, buffer) : utf::WideLength(utf8));
}

wchar LowerInvariant(wchar unit) noexcept {
    return unit;
}

int _wcsicmp(const wchar* a, const wchar* b) noexcept {
    return CompareIgnoringCase(a, b);
}

int _waccess(const wchar*, int mode) noexcept {
    if (mode == 6 || scripted.accessible)
        return 0;
    errno = EACCES;
    return -1;
}

int _wstat64(const wchar*, _stat64* info) noexcept {
    info->st_mtime = scripted.time;
    return 0;
}

int _wutime64(const wchar*, const __utimbuf64*) noexcept {
    return scripted.touchResult;
}

int CopyFileW(const wchar* from, const wchar* to, int failIfExists) noexcept {
    const PlatformScope scope;
    scripted.calls.push_back("CopyFileW " + Shown(from) + " " + Shown(to) + " " +
                             std::to_string(failIfExists));
    return scripted.copyResult;
}

ulong GetPrivateProfileStringA(const char* section, const char* tag, const char* defaultText, char* buffer,
                               ulong size, const char* file) {
    const PlatformScope scope;
    scripted.calls.push_back("Read " + Shown(section) + " " + Shown(tag) + " " + Shown(defaultText) + " " +
                             std::to_string(size) + " " + Shown(file));
    if (scripted.throwOnRead)
        throw std::runtime_error("scripted");
    std::string list;
    for (const auto& [name, tags] : scripted.sections) {
        if (!section) {
            list.append(name).push_back('\0');
            continue;
        }
        for (const auto& [tagName, value] : tags) {
            if (name != section)
                break;
            if (!tag) {
                list.append(tagName).push_back('\0');
            } else if (tagName == tag) {
                const std::size_t count = std::min<std::size_t>(value.size(), size - 1);
                std::memcpy(buffer, value.data(), count);
                buffer[count] = '\0';
                return static_cast<ulong>(count);
            }
        }
    }
    return GiveList(list, buffer, size);
}

ulong GetPrivateProfileSectionA(const char* section, char* buffer, ulong size, const char*) {
    const PlatformScope scope;
    scripted.calls.push_back("ReadSection " + std::to_string(size));
    if (scripted.throwOnRead)
        throw std::runtime_error("scripted");
    std::string list;
    for (const auto& [name, tags] : scripted.sections) {
        for (const auto& [tag, value] : tags) {
            if (name == section)
                (list += tag + "=" + value).push_back('\0');
        }
    }
    return GiveList(list, buffer, size);
}

int WritePrivateProfileStringA(const char* section, const char* tag, const char* value, const char* file) {
    return Write("WriteA", section, tag, value, file);
}

int WritePrivateProfileStringW(const wchar* section, const wchar* tag, const wchar* value,
                               const wchar* file) {
    return Write("WriteW", section, tag, value, file);
}

} // namespace corvane::platform
