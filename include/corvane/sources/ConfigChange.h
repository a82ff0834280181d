// One of many changes that are made at once.
#pragma once

#include <corvane/foundations/WideString.h>

#include <optional>

namespace corvane {

/// Writes a value, or deletes a tag or, with an empty tag, a section.
struct ConfigChange {
    wstring key;                  ///< `Section:Tag`, or `Section:`
    std::optional<wstring> value; ///< none for a deletion
};

} // namespace corvane
