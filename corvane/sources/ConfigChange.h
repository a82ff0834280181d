// One of many changes that are made at once.
#pragma once

#include <corvane/foundations/WideString.h>

#include <optional>

namespace corvane {

/// The key's tag gets the value; without a value it is deleted, or with an empty tag, `Section:`, the
/// section.
struct ConfigChange {
    wstring key;
    std::optional<wstring> value;
};

} // namespace corvane
