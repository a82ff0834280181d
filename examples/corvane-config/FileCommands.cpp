// The commands on a settings file.
#include "Command.h"
#include "Terminal.h"

#include <corvane/comfort.h>
#include <corvane/config.h>

#include <filesystem>
#include <iostream>

namespace {

// The program's one manager, with the file that the command line names.
ConfigManager& Config() {
    return *ApplicationConfigManager::Instance();
}

void Load(ConfigManager& config, const std::string& path) {
    const std::filesystem::path file(corvane::ToWide(path));
    // Windows looks for a bare name in a folder of its own.
    if (corvane::Load(config, file.has_parent_path() ? path : "./" + path))
        return;
    std::error_code unknown;
    if (!std::filesystem::exists(file, unknown) && !unknown)
        throw Failure(Refused, "there is no file '" + path +
                                   "'; give the path of one, or make it with a line such as [Section]");
    throw Failure(Refused, "'" + path +
                               "' cannot be loaded: it has to be a file with at least one [section] that you "
                               "may read and write; --log tells more");
}

Failure NotDone(const std::string& what) {
    return {Refused, what + "; see to it that the file is free and you may write it, --log tells more"};
}

std::vector<std::string> SectionsAskedFor(const Arguments& arguments) {
    if (arguments.empty())
        return corvane::Sections(Config());
    if (arguments[0].empty() || !corvane::Exists(Config(), arguments[0] + ":"))
        throw Failure(No, "there is no section '" + arguments[0] + "'; 'list' shows those there are");
    return {arguments[0]};
}

std::string Line(const std::string& section, const corvane::TagValue& value) {
    return section + ":" + value.tag + "=" + value.value;
}

} // namespace

void LoadFile(const std::string& path) {
    Load(Config(), path);
}

ExitCode ListFile(const Arguments& arguments) {
    for (const std::string& section : SectionsAskedFor(arguments)) {
        std::cout << Painted(Paint::section, "[" + section + "]") << '\n';
        for (const auto& [tag, value] : corvane::Tags(Config(), section))
            std::cout << Painted(Paint::tag, tag) << '=' << value << '\n';
    }
    return Done;
}

ExitCode ListKeys(const Arguments& arguments) {
    for (const std::string& section : SectionsAskedFor(arguments))
        for (const auto& [tag, value] : corvane::Tags(Config(), section))
            std::cout << section << ':' << tag << '\n';
    return Done;
}

ExitCode GetValue(const Arguments& arguments) {
    std::optional<std::string> value = corvane::Get<std::string>(Config(), arguments[0]);
    if (!value && arguments.size() < 2)
        throw Failure(No, "there is no value '" + arguments[0] + "'; 'keys' shows those there are");
    std::cout << (value ? *value : arguments[1]) << '\n';
    return Done;
}

ExitCode AskForKey(const Arguments& arguments) {
    const bool exists = corvane::Exists(Config(), arguments[0]);
    std::cout << (exists ? "yes" : "no") << '\n';
    return exists ? Done : No;
}

ExitCode SetValue(const Arguments& arguments) {
    const std::string& key = arguments[0];
    if (const std::string refusal = corvane::Refusal(key, arguments[1]); !refusal.empty())
        throw Failure(Usage, "'" + key + "' cannot be written: " + refusal);
    if (!corvane::Set(Config(), key, arguments[1]))
        throw NotDone("'" + key + "' was not written");
    return Done;
}

ExitCode DeleteKey(const Arguments& arguments) {
    if (!corvane::Exists(Config(), arguments[0]))
        throw Failure(No, "there is no '" + arguments[0] + "' to delete; 'keys' shows what there is");
    if (!corvane::Delete(Config(), arguments[0]))
        throw NotDone("'" + arguments[0] + "' was not deleted");
    return Done;
}

ExitCode MakeSnapshot(const Arguments&) {
    corvane::wstring name;
    if (Config().CreateSnapshot(name) != 0)
        throw Failure(Refused, "no snapshot was made; see to room and your rights in the file's folder");
    std::cout << corvane::ToUtf8(name) << '\n';
    return Done;
}

ExitCode RestoreSnapshot(const Arguments& arguments) {
    {
        ConfigManager snapshot; // what cannot be loaded shall not take the file's place
        Load(snapshot, arguments[0]);
    }
    if (Config().RestoreSnapshot(corvane::ToWide(arguments[0])) != 0)
        throw NotDone("'" + arguments[0] + "' was not restored");
    return Done;
}

ExitCode CompareWithSnapshot(const Arguments& arguments) {
    ConfigManager snapshot;
    Load(snapshot, arguments[0]);
    bool same = true;
    // Shows what `one` has and `other` has not, or not with the same value.
    const auto show = [&same](ConfigManager& one, ConfigManager& other, Paint paint, char sign) {
        for (const std::string& section : corvane::Sections(one)) {
            std::vector<std::string> lines;
            if (!corvane::Exists(other, section + ":"))
                lines.push_back("[" + section + "]");
            for (const corvane::TagValue& value : corvane::Tags(one, section))
                if (corvane::Get<std::string>(other, section + ":" + value.tag) != value.value)
                    lines.push_back(Line(section, value));
            same = same && lines.empty();
            for (const std::string& line : lines)
                std::cout << Painted(paint, sign + line) << '\n';
        }
    };
    show(snapshot, Config(), Paint::removed, '-');
    show(Config(), snapshot, Paint::added, '+');
    return same ? Done : No;
}
