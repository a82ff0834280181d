// The mapping of key names to folder names, one to one: characters that a file name cannot contain are
// escaped, and a name that is too long for one folder becomes a chain of nested folders.
#pragma once

#include <corvane/foundations/WideString.h>

#include <vector>

namespace corvane::os {

inline constexpr std::size_t longestKeyName = 255;

/// A part of a key's name that fits into one file name. The folders of all parts but the last are not keys
/// themselves; they only contain the parts that follow. Names that differ in letter case are split alike.
struct NamePart {
    wstring text;
    bool isLast = true;
};

std::vector<NamePart> PartsOf(wstring_view keyName);

/// Compares names of keys or values by their lower-cased code units: below zero, zero or above zero as `a`
/// sorts before, equal to or after `b`. Independent of the locale, because other processes share the tree.
int CompareKeyNames(wstring_view a, wstring_view b) noexcept;

/// At most 243 bytes, without '/' or NUL, and never beginning with '.', which is reserved for our own files.
std::string FolderNameOf(const NamePart& part);

/// The inverse of FolderNameOf. False for a name that FolderNameOf never returns.
bool ParseFolderName(std::string_view folderName, NamePart& part);

} // namespace corvane::os
