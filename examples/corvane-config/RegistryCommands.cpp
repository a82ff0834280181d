// The commands on the registry.
#include "RegistryCommands.h"

#include <corvane/comfort/ValueText.h>
#include <corvane/config.h>

#include <cstdlib>
#include <iostream>
#include <memory>

namespace {

using corvane::ToWide;
using corvane::wstring;

constexpr int noRoot = -1;
constexpr int notFound = 2;
constexpr int denied = 5;

// Done, or throws what the status of a write or a deletion means.
ExitCode Result(const std::string& path, int status) {
    switch (status) {
    case 0: return Done;
    case noRoot:
        throw Failure(Usage, "'" + path + "' does not begin with a root such as HKEY_CURRENT_USER\\");
    case notFound: throw Failure(No, "there is no key '" + path + "'");
    case denied:
        throw Failure(Refused, "'" + path + "': access denied; a key with subkeys cannot be deleted");
    case FAILURE_GENERAL: throw Failure(Usage, "'" + path + "' is a root, which cannot be deleted");
    default: throw Failure(Refused, "'" + path + "': refused with status " + std::to_string(status));
    }
}

Failure NotFound(const char* type, const CommandLine& line) {
    return {No, "there is no " + (type + (" '" + line.arguments[1])) + "' in '" + line.arguments[0] + "'"};
}

// Uses the folders that --folders names. Returns the path in the registry, the first argument.
const std::string& PathOf(const CommandLine& line) {
    const auto folders = line.options.find("--folders");
    if (folders != line.options.end() && !corvane::SetRegistryFolders(folders->second[0], folders->second[1]))
        throw Failure(Usage, "--folders expects two absolute paths and is not available on Windows");
    return line.arguments[0];
}

} // namespace

// Asks for the length first, and again if the text has grown in the meantime.
ExitCode GetRegistryText(const CommandLine& line) {
    const std::string& readablePath = PathOf(line);
    const wstring path = ToWide(readablePath);
    const wstring name = ToWide(line.arguments[1]);
    // With a default, a missing value returns the default's length and an empty one returns 0.
    const wstring missing = CORVANE_TEXT("?");
    wstring text(1, 0);
    corvane::ulong length = 0;
    for (;;) {
        text.resize(text.size() + 1);
        length = registry_readString(nullptr, path.c_str(), name.c_str(), nullptr, text.data(),
                                     static_cast<corvane::ulong>(text.size()));
        if (length < text.size())
            break;
        text.resize(length);
    }
    if (length == 0 && registry_readString(nullptr, path.c_str(), name.c_str(), missing.c_str(), nullptr,
                                           0) == missing.size())
        throw NotFound("string", line);
    text.resize(length);
    std::cout << corvane::ToUtf8(text) << '\n';
    return Done;
}

ExitCode SetRegistryText(const CommandLine& line) {
    const std::string& path = PathOf(line);
    return Result(path, registry_writeString(nullptr, ToWide(path).c_str(), ToWide(line.arguments[1]).c_str(),
                                             ToWide(line.arguments[2]).c_str()));
}

ExitCode GetOrSetRegistryNumber(const CommandLine& line) {
    const std::string& readablePath = PathOf(line);
    const wstring path = ToWide(readablePath);
    const wstring name = ToWide(line.arguments[1]);
    if (line.arguments.size() == 3) {
        const auto number = corvane::ValueText<corvane::ulong>::FromText(line.arguments[2]);
        if (!number)
            throw Failure(Usage, "'" + line.arguments[2] + "' is not a number from 0 to 4294967295");
        return Result(readablePath, registry_writeNumber(nullptr, path.c_str(), name.c_str(), *number));
    }
    int found = 0;
    const corvane::ulong number = registry_readNumber(nullptr, path.c_str(), name.c_str(), 0, &found);
    if (!found)
        throw NotFound("number", line);
    std::cout << number << '\n';
    return Done;
}

ExitCode DeleteRegistryKey(const CommandLine& line) {
    const std::string& path = PathOf(line);
    const int status = registry_deleteKey(nullptr, ToWide(path).c_str());
    return status == notFound && line.Has("--ignore-missing") ? Done : Result(path, status);
}

ExitCode ListRegistryKeys(const CommandLine& line) {
    const std::string& path = PathOf(line);
    const std::unique_ptr<corvane::wchar, decltype(&std::free)> names(
        registry_loadSubSectionNames(nullptr, ToWide(path).c_str(), 0), &std::free);
    if (!names)
        throw Failure(No, "there is no key '" + path + "' with subkeys");
    for (const corvane::wchar* name = names.get(); *name; name += corvane::wstring_view(name).size() + 1)
        std::cout << corvane::ToUtf8(name) << '\n';
    return Done;
}
