// The commands on the registry.
#include "Command.h"

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

ExitCode TellStatus(const std::string& path, int status) {
    switch (status) {
    case 0: return Done;
    case noRoot:
        throw Failure(Usage, "'" + path + "' has no root; begin it with one, such as HKEY_CURRENT_USER\\");
    case notFound: throw Failure(No, "there is no key '" + path + "'; 'list' shows the subkeys of a key");
    case denied:
        throw Failure(Refused,
                      "'" + path + "' is denied; see to your rights, and delete subkeys before their key");
    case FAILURE_GENERAL:
        throw Failure(Usage, "'" + path +
                                 "' names no key to delete; give one below a root, such as "
                                 "HKEY_CURRENT_USER\\Software\\Demo");
    default:
        throw Failure(Refused, "'" + path + "' was refused with status " + std::to_string(status) +
                                   "; see to the rights and room of the registry's folder");
    }
}

} // namespace

void TakeRegistryFolders(Arguments& arguments) {
    if (arguments.empty() || arguments[0] != "--folders")
        return;
    if (arguments.size() < 3 || !corvane::SetRegistryFolders(arguments[1], arguments[2]))
        throw Failure(Usage,
                      "--folders wants two absolute paths, and a registry that is no part of the system");
    arguments.erase(arguments.begin(), arguments.begin() + 3);
}

// Asks for the length first, and again if the text has grown meanwhile.
ExitCode GetRegistryText(const Arguments& arguments) {
    const wstring path = ToWide(arguments[0]);
    const wstring name = ToWide(arguments[1]);
    // A default tells a missing value, which gives its length, from an empty one.
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
        throw Failure(No, "there is no text '" + arguments[1] + "' in '" + arguments[0] +
                              "'; 'set' writes one, 'number' shows a number");
    text.resize(length);
    std::cout << corvane::ToUtf8(text) << '\n';
    return Done;
}

ExitCode SetRegistryText(const Arguments& arguments) {
    return TellStatus(arguments[0],
                      registry_writeString(nullptr, ToWide(arguments[0]).c_str(),
                                           ToWide(arguments[1]).c_str(), ToWide(arguments[2]).c_str()));
}

ExitCode GetOrSetRegistryNumber(const Arguments& arguments) {
    const wstring path = ToWide(arguments[0]);
    const wstring name = ToWide(arguments[1]);
    if (arguments.size() == 3) {
        const auto number = corvane::ValueText<corvane::ulong>::FromText(arguments[2]);
        if (!number)
            throw Failure(Usage, "'" + arguments[2] + "' does not fit; give a number from 0 to 4294967295");
        return TellStatus(arguments[0], registry_writeNumber(nullptr, path.c_str(), name.c_str(), *number));
    }
    int found = 0;
    const corvane::ulong number = registry_readNumber(nullptr, path.c_str(), name.c_str(), 0, &found);
    if (!found)
        throw Failure(No, "there is no number '" + arguments[1] + "' in '" + arguments[0] +
                              "'; give a third argument to write one, 'get' shows a text");
    std::cout << number << '\n';
    return Done;
}

ExitCode DeleteRegistryKey(const Arguments& arguments) {
    return TellStatus(arguments[0], registry_deleteKey(nullptr, ToWide(arguments[0]).c_str()));
}

ExitCode ListRegistryKeys(const Arguments& arguments) {
    const std::unique_ptr<corvane::wchar, decltype(&std::free)> names(
        registry_loadSubSectionNames(nullptr, ToWide(arguments[0]).c_str(), 0), &std::free);
    if (!names)
        throw Failure(No, "'" + arguments[0] +
                              "' has no subkeys or is not there; a path begins with a root, such as "
                              "HKEY_CURRENT_USER\\");
    for (const corvane::wchar* name = names.get(); *name; name += corvane::wstring_view(name).size() + 1)
        std::cout << corvane::ToUtf8(name) << '\n';
    return Done;
}
