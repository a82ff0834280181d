// What differs between the systems.
#pragma once

#include <string>
#include <system_error>

/// Whether standard output is a terminal that understands colour codes.
bool TerminalShowsColour();

/// The editor to use if the user has not named one.
const char* DefaultEditor();

/// Runs the command line `editor` with `file` as its last argument. Returns whether it succeeded.
bool RunEditor(const std::string& editor, const std::string& file);

/// Creates an empty file with access for its owner only; std::errc::file_exists if it exists.
std::error_code MakePrivateFile(const std::string& path);
