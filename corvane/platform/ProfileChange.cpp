#include <corvane/platform/Platform.h>

#include <cstring>
#include <stdexcept>
#include <string_view>

namespace corvane {
namespace {

std::string_view WithoutLeadingBlanks(const char* text) noexcept {
    std::string_view rest = text ? text : "";
    while (!rest.empty() && (rest.front() == ' ' || rest.front() == '\t'))
        rest.remove_prefix(1);
    return rest;
}

bool HasLineBreak(std::string_view text) noexcept {
    return text.find_first_of("\r\n") != std::string_view::npos;
}

} // namespace

void platform::CheckProfileChange(const ProfileChange& change) {
    if (!change.value)
        return;
    const std::string_view section = WithoutLeadingBlanks(change.section);
    const std::string_view tag = WithoutLeadingBlanks(change.tag);
    if (section.empty())
        throw std::invalid_argument("a profile value cannot be written without a section");
    if (tag.empty())
        throw std::invalid_argument("a profile value cannot be written without a tag");
    if (HasLineBreak(section) || HasLineBreak(tag) || HasLineBreak(change.value))
        throw std::invalid_argument("a line break cannot stand in a profile section, tag or value");
    if (tag.find('=') != std::string_view::npos || tag.front() == ';' || tag.front() == '[')
        throw std::invalid_argument("a profile tag cannot begin with ';' or '[', nor have '=' in it");
    for (const char* const text : {change.section, change.tag, change.value})
        if (std::strlen(text) > longestProfileText)
            throw std::invalid_argument("a profile section, tag or value is too long");
}

} // namespace corvane
