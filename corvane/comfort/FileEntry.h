// Validates and encodes what the comfort layer writes.
#pragma once

#include <corvane/foundations/WideString.h>

namespace corvane {

/// The UTF-16 form of a key and a value, or why a file cannot represent them.
struct FileEntry {
    wstring key;
    wstring value;    ///< as it reads back
    wstring fileText; ///< as it is written: in quotes if blanks or quotes at its ends would be lost without
    std::string refusal; ///< empty, or one sentence in UTF-8; then all else is empty
};

/// Checks and converts an entry to write. Refuses what would not read back: a key without section or tag,
/// ill-formed UTF-8, NUL, line breaks, blanks at either end of a name, a tag that contains '=' or begins with
/// ';' or '[', a text that is too long for the platform.
FileEntry MakeFileEntry(std::string_view key, std::string_view value);

/// Checks and converts a key to delete: a tag, or with an empty tag a section. `value` and `fileText` stay
/// empty.
FileEntry MakeDeletion(std::string_view key);

/// The entry, refused if its section is the reserved one, which no file contains.
FileEntry ForFile(FileEntry entry);

} // namespace corvane
