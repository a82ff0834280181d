#include <corvane/platform/ProfileRules.h>
#include <corvane/platform/windows/WindowsPlatform.h>

#include <cstring>
#include <stdexcept>

namespace corvane {
namespace {

void RefuseTooLong(const char* text) {
    if (std::strlen(text) > platform::longestProfileText)
        throw std::invalid_argument("a profile section, tag or value has at most 32,766 bytes");
}

} // namespace

int platform::WritePrivateProfileStringA(const char* section, const char* tag, const char* value,
                                         const char* file) {
    if (value) {
        RefuseUnreadable(section, tag, value);
        for (const char* text : {section, tag, value})
            RefuseTooLong(text);
    }
    return ::WritePrivateProfileStringA(section, tag, value, file);
}

} // namespace corvane
