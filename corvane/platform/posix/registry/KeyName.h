// Key names and the folder names that stand for them. Each name has one form on disk and back: what a file
// name can't hold is escaped, and a name that is too long for one folder lies in a chain of them.
#pragma once

#include <corvane/foundations/WideString.h>

#include <vector>

namespace corvane::posix {

inline constexpr std::size_t longestKeyName = 255;

/// A part of a key's name that fits into one file name. All but the last part of a name are folders that hold
/// nothing but the parts behind them and are no keys themselves. Where a name is cut doesn't depend on the
/// letter case.
struct NamePart {
    wstring text;
    bool isLast = true;
};

std::vector<NamePart> PartsOf(wstring_view keyName);

/// Below zero, zero or above zero as `a` sorts before, with or behind `b` by their lower-cased code units. It
/// does not depend on the locale: the tree is shared with other processes. Holds for the names of keys and
/// values.
int CompareKeyNames(wstring_view a, wstring_view b) noexcept;

/// At most 243 bytes, without '/' or NUL, and with no '.' at its front: those names are for our own files.
std::string FolderNameOf(const NamePart& part);

/// The reverse of FolderNameOf. False for a name that it doesn't give.
bool ParseFolderName(std::string_view folderName, NamePart& part);

} // namespace corvane::posix
