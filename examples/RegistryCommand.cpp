#include "RegistryCommand.h"

#include <corvane/platform/RegistryFolders.h>
#include <corvane/registry/registry.h>

#include <charconv>
#include <cstdlib>
#include <iostream>
#include <memory>

namespace {

using Arguments = std::vector<std::string>;
using corvane::ulong;
using corvane::wstring;

enum ExitCode { done = 0, refused = 1, usage = 2 };

int Complain(ExitCode code, const std::string& message) {
    std::cerr << "registry: " << message << '\n';
    return code;
}

int TellStatus(const std::string& what, int status) {
    if (status == 0)
        return done;
    const char* const reason = status == -1      ? "the path names no root"
                               : status == 2     ? "there is no such key"
                               : status == 5     ? "access is denied, or the key has subkeys"
                               : status == 32768 ? "the path names no key below a root"
                                                 : nullptr;
    return Complain(refused, what + ": " + (reason ? reason : "status " + std::to_string(status)));
}

// Asks for the length first, and again if the text has grown meanwhile.
int Get(const Arguments& arguments) {
    const wstring path = corvane::ToWide(arguments[0]);
    const wstring name = corvane::ToWide(arguments[1]);
    // A default tells a missing value, which gives its length, from an empty one.
    const wstring missing = CORVANE_TEXT("?");
    wstring text(1, 0);
    ulong length = 0;
    for (;;) {
        text.resize(text.size() + 1);
        length = registry_readString(nullptr, path.c_str(), name.c_str(), nullptr, text.data(),
                                     static_cast<ulong>(text.size()));
        if (length < text.size())
            break;
        text.resize(length);
    }
    if (length == 0 && registry_readString(nullptr, path.c_str(), name.c_str(), missing.c_str(), nullptr,
                                           0) == missing.size())
        return Complain(refused, arguments[1] + ": there is no such text");
    text.resize(length);
    std::cout << corvane::ToUtf8(text) << '\n';
    return done;
}

int Set(const Arguments& arguments) {
    return TellStatus(arguments[0], registry_writeString(nullptr, corvane::ToWide(arguments[0]).c_str(),
                                                         corvane::ToWide(arguments[1]).c_str(),
                                                         corvane::ToWide(arguments[2]).c_str()));
}

int Number(const Arguments& arguments) {
    const wstring path = corvane::ToWide(arguments[0]);
    const wstring name = corvane::ToWide(arguments[1]);
    if (arguments.size() == 2) {
        int found = 0;
        const ulong number = registry_readNumber(nullptr, path.c_str(), name.c_str(), 0, &found);
        if (!found)
            return Complain(refused, arguments[1] + ": there is no such number");
        std::cout << number << '\n';
        return done;
    }
    const std::string& text = arguments[2];
    ulong number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size())
        return Complain(usage, text + ": not a number from 0 to 4294967295");
    return TellStatus(arguments[0], registry_writeNumber(nullptr, path.c_str(), name.c_str(), number));
}

int Delete(const Arguments& arguments) {
    return TellStatus(arguments[0], registry_deleteKey(nullptr, corvane::ToWide(arguments[0]).c_str()));
}

int List(const Arguments& arguments) {
    const std::unique_ptr<corvane::wchar, decltype(&std::free)> names(
        registry_loadSubSectionNames(nullptr, corvane::ToWide(arguments[0]).c_str(), 0), &std::free);
    if (!names)
        return Complain(refused, arguments[0] + ": there are no subkeys");
    for (const corvane::wchar* name = names.get(); *name; name += corvane::wstring_view(name).size() + 1)
        std::cout << corvane::ToUtf8(name) << '\n';
    return done;
}

struct Command {
    const char* name;
    std::size_t fewest;
    std::size_t most;
    int (*run)(const Arguments&);
};

constexpr Command commands[] = {
    {"get", 2, 2, Get},       {"set", 3, 3, Set},   {"number", 2, 3, Number},
    {"delete", 1, 1, Delete}, {"list", 1, 1, List},
};

} // namespace

const char* RegistryUsage() {
    return "registry [--folders USER MACHINE] get PATH NAME\n"
           "registry [--folders USER MACHINE] set PATH NAME TEXT\n"
           "registry [--folders USER MACHINE] number PATH NAME [VALUE]\n"
           "registry [--folders USER MACHINE] delete PATH\n"
           "registry [--folders USER MACHINE] list PATH\n";
}

int RunRegistryCommand(const Arguments& arguments) {
    Arguments rest = arguments;
    if (!rest.empty() && rest[0] == "--folders") {
        if (rest.size() < 3 || !corvane::SetRegistryFolders(rest[1], rest[2]))
            return Complain(usage, "--folders takes two absolute paths, where the registry can be moved");
        rest.erase(rest.begin(), rest.begin() + 3);
    }
    for (const Command& command : commands) {
        if (rest.empty() || rest[0] != command.name)
            continue;
        rest.erase(rest.begin());
        if (rest.size() >= command.fewest && rest.size() <= command.most)
            return command.run(rest);
        break;
    }
    std::cerr << RegistryUsage();
    return usage;
}
