// A key and a text on their way into the file.
#pragma once

#include <corvane/foundations/WideString.h>

namespace corvane {

/// What is handed on for a key and a text in UTF-8, or why no file could give them back.
struct FileEntry {
    wstring key;
    wstring value;       ///< what is read back
    wstring fileText;    ///< the value as it is written: in quotes if blanks or quotes would be lost without
    std::string refusal; ///< empty, or one sentence in UTF-8, and all else is empty
};

/// Checks and converts what shall be written. Refused is what would come back otherwise or not at all: a key
/// without section or tag, ill-formed UTF-8, NUL, line breaks, blanks at a name's ends, a tag with '=' in it
/// or ';' or '[' in front, a text that is too long for the platform.
FileEntry MakeFileEntry(std::string_view key, std::string_view value);

/// Checks and converts the key of what shall be deleted; with an empty tag that is the section. `value` and
/// `fileText` stay empty.
FileEntry MakeDeletion(std::string_view key);

/// The entry, refused if its section is the reserved one, which is in no file.
FileEntry ForFile(FileEntry entry);

} // namespace corvane
