#include <corvane/comfort/ComfortAccess.h>
#include <corvane/comfort/Loading.h>
#include <corvane/comfort/Reports.h>
#include <corvane/manager/ReservedSection.h>
#include <corvane/platform/Platform.h>
#include <corvane/sources/CreateConfigSource.h>
#include <corvane/sources/IConfigSource.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <system_error>

namespace corvane {
namespace {

constexpr int ifModified = 0;
constexpr int always = -1;

enum Access { existence = 0, writing = 2, reading = 4 };

// The system's message, which may be in another encoding.
std::string SystemMessage(int error) {
    return ToUtf8(ToWide(std::generic_category().message(error)));
}

std::string WhyNotRead(ulong error) {
    constexpr ulong sharingViolation = 32;
    constexpr ulong invalidData = 13;
    switch (error) {
    case 0: return "it has no [section]";
    case invalidData: return "it is in UTF-16; it has to be in UTF-8";
    case sharingViolation: return "another program holds it";
    default: return "it cannot be read: system error " + std::to_string(error);
    }
}

std::string WhyNoSections(const wstring& path) {
    const std::unique_ptr<IConfigSource> source(CreateConfigSource(path.c_str()));
    std::vector<wstring> sections;
    platform::SetLastError(0);
    if (source->IsReady() && !source->EnumerateSections(sections))
        return WhyNotRead(platform::GetLastError());
    if (std::find(sections.begin(), sections.end(), reservedSection) != sections.end())
        return "it has a section [_$CACHE$_], a name that no file may use";
    return "another program was changing it; try again";
}

// Why the file at `path` cannot be loaded, as the second half of a sentence. Examines the file anew; it may
// have changed since the load failed.
std::string CauseOfFailure(const wstring& path) {
    const auto denies = [&path](Access access) { return platform::_waccess(path.c_str(), access) != 0; };
    if (path.empty())
        return "the path is empty";
    if (denies(existence))
        return errno == ENOENT || errno == ENOTDIR ? "there is no such file"
                                                   : "it cannot be reached: " + SystemMessage(errno);
    platform::_stat64 status{};
    if (platform::_wstat64(path.c_str(), &status) == 0 && (status.st_mode & S_IFMT) != S_IFREG)
        return (status.st_mode & S_IFMT) == S_IFDIR ? "it is a folder" : "it is no regular file";
    if (denies(reading))
        return "it may not be read: " + SystemMessage(errno);
    if (denies(writing))
        return "it can be read but not written, and loading needs both: " + SystemMessage(errno);
    return WhyNoSections(path);
}

LoadResult Result(int code, const wstring& path) {
    if (code == 0)
        return {};
    return {code, "cannot load '" + ToUtf8(path) + "': " + CauseOfFailure(path)};
}

} // namespace

LoadResult Load(ConfigManager& config, std::string_view path) {
    const wstring name = ToWide(path);
    if (const char* const refusal = ToUtf8(name) != path ? "the path is not valid UTF-8"
                                    : name.find(wchar()) != wstring::npos
                                        ? "a path cannot contain a NUL character"
                                        : nullptr) {
        ReportRefusal("corvane::Load", path, refusal);
        return {FAILURE_GENERAL, std::string("cannot load '") + ToUtf8(name) + "': " + refusal};
    }
    // For the manager, paths that differ only in letter case are the same name.
    const bool sameFile = name == ComfortAccess::ConfigName(config);
    return Result(config.Update(name.c_str(), sameFile ? ifModified : always), name);
}

LoadResult Reload(ConfigManager& config) {
    wstring name;
    const int code = ComfortAccess::Reload(config, name);
    return name.empty() ? LoadResult{code, "cannot reload: no configuration is loaded"} : Result(code, name);
}

} // namespace corvane
