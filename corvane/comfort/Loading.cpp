#include <corvane/comfort/ComfortAccess.h>
#include <corvane/comfort/LoadFailure.h>
#include <corvane/comfort/Loading.h>
#include <corvane/comfort/Reports.h>

namespace corvane {
namespace {

constexpr int ifModified = 0;
constexpr int always = -1;

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
