#include <corvane/platform/ProfileRules.h>

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

void RefuseUnreadable(const char* section, const char* tag, const char* value) {
    const std::string_view sectionName = WithoutLeadingBlanks(section);
    const std::string_view tagName = WithoutLeadingBlanks(tag);
    if (sectionName.empty())
        throw std::invalid_argument("a profile value cannot be written without a section");
    if (tagName.empty())
        throw std::invalid_argument("a profile value cannot be written without a tag");
    if (HasLineBreak(sectionName) || HasLineBreak(tagName) || HasLineBreak(value))
        throw std::invalid_argument("a line break cannot stand in a profile section, tag or value");
    if (tagName.find('=') != std::string_view::npos || tagName.front() == ';' || tagName.front() == '[')
        throw std::invalid_argument("a profile tag cannot begin with ';' or '[', nor have '=' in it");
}

} // namespace corvane
