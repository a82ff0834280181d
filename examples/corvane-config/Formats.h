// How values are printed.
#pragma once

#include "CommandLine.h"

enum class Format { text, sh, json };

/// What --format says. Throws Failure for a format that does not exist.
Format FormatOf(const CommandLine& line);

/// A JSON string: quotes, backslashes and control characters are escaped.
std::string JsonText(const std::string& text);

/// A JSON array of strings.
std::string JsonList(const std::vector<std::string>& texts);

/// One word to a shell, whatever is in it.
std::string ShellWord(const std::string& text);

/// The variable for a key: each character that a variable cannot have becomes an underscore.
std::string ShellName(const std::string& key);
