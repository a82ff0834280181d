// Changes of a settings file: all of them or none.
#pragma once

#include "SettingsFile.h"

#include <optional>

struct Change {
    Key key;                          ///< an empty tag means the section, for deletions only
    std::optional<std::string> value; ///< none deletes
};

/// Throws Failure if that cannot be written whatever the file holds.
void CheckChange(const Change& change);

/// Makes the changes in their order. Throws Failure, with the file as it was, for one that is refused and,
/// unless `ignoreMissing`, for a deletion of what is not there.
void Make(const std::vector<Change>& changes, SettingsFile& file, bool ignoreMissing);
