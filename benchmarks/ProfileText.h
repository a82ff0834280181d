// The profile that is read and written in the benchmarks.
#pragma once

#include <string>

namespace corvane {

inline constexpr int tagsOfSection = 100;

inline std::string SectionName(int tag) {
    return "Section" + std::to_string(tag / tagsOfSection);
}

inline std::string TagName(int tag) {
    return "SomeTag" + std::to_string(tag);
}

// About 50 bytes a tag.
inline std::string ProfileText(int tags) {
    std::string text;
    for (int tag = 0; tag < tags; ++tag) {
        if (tag % tagsOfSection == 0)
            text += '[' + SectionName(tag) + "]\n";
        text += TagName(tag) + "=the value of a tag, of an ordinary length\n";
    }
    return text;
}

} // namespace corvane
