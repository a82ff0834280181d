// The commands that replace the file with a changed copy: rename-section, edit, restore; and those on copies.
#include "FileCommands.h"
#include "FileText.h"
#include "Replacement.h"
#include "System.h"

#include <cstdlib>
#include <iostream>

namespace {

using corvane::ToWide;

bool SameName(const std::string& a, const std::string& b) {
    const ConfigManager::CaseInsensitiveLess less{};
    return !less(ToWide(a), ToWide(b)) && !less(ToWide(b), ToWide(a));
}

void CheckSectionName(const std::string& name) {
    if (name.empty() || name.find_first_of(":\r\n") != std::string::npos || Trimmed(name) != name)
        throw Failure(Usage,
                      "'" + name +
                          "' cannot be a section name: it is empty, contains a colon or a line break, or "
                          "begins or ends with a blank");
}

// With the new name in every header that has the old one.
std::string WithSectionRenamed(const std::string& text, const std::string& from, const std::string& to) {
    std::string renamed;
    std::size_t copied = 0;
    for (const HeaderName& header : FindHeaders(text)) {
        if (!SameName(text.substr(header.begin, header.length), from))
            continue;
        renamed.append(text, copied, header.begin - copied).append(to);
        copied = header.begin + header.length;
    }
    return renamed.append(text, copied);
}

// What the file must contain then.
Settings WithSectionRenamed(const Settings& settings, const std::string& from, const std::string& to) {
    Settings renamed;
    for (const Section* const section : settings.InOrder())
        renamed.Add(SameName(section->name, from) ? to : section->name).tags = section->tags;
    return renamed;
}

// $VISUAL or $EDITOR or the system's.
std::string Editor() {
    for (const char* const variable : {"VISUAL", "EDITOR"})
        if (const char* const editor = std::getenv(variable); editor && *editor)
            return editor;
    return DefaultEditor();
}

} // namespace

ExitCode RenameSection(const CommandLine& line) {
    const std::string& from = line.arguments[0];
    const std::string& to = line.arguments[1];
    CheckSectionName(to);
    SettingsFile file(line.file);
    const Settings settings = file.Read();
    SectionNamed(settings, from);
    if (settings.Find(to) && !SameName(from, to))
        throw Failure(Refused, "section [" + to + "] already exists");
    Replacement copy(file);
    WriteText(copy.Path(), WithSectionRenamed(copy.Original(), from, to));
    if (!SameSettings(SettingsFile(copy.Path()).Read(), WithSectionRenamed(settings, from, to)))
        throw Failure(Refused, "the file would not contain the same values with a section [" + to + "]");
    copy.Commit();
    return Done;
}

ExitCode EditFile(const CommandLine& line) {
    SettingsFile file(line.file);
    Replacement copy(file);
    const std::string editor = Editor();
    if (!RunEditor(editor, copy.Path()))
        throw Failure(Refused, "the editor '" + editor + "' failed; nothing was changed");
    copy.Commit();
    return Done;
}

ExitCode MakeSnapshot(const CommandLine& line) {
    std::cout << Snapshot(SettingsFile(line.file).Config()) << '\n';
    return Done;
}

ExitCode RestoreSnapshot(const CommandLine& line) {
    Restore(SettingsFile(line.file).Config(), line.arguments[0]);
    return Done;
}

ExitCode CompareWithSnapshot(const CommandLine& line) {
    SettingsFile file(line.file);
    SettingsFile snapshot(line.arguments[0]);
    return PrintDifferences(snapshot.Read(), file.Read()) ? No : Done;
}
