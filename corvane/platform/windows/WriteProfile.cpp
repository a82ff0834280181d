#include <corvane/platform/ProfileRules.h>
#include <corvane/platform/windows/WindowsPlatform.h>

#include <cstring>
#include <stdexcept>

namespace corvane {
namespace {

// The narrow operations hand their texts on as counted wide ones, of which the count of bytes has 16 bits,
// the terminator included. Behind that limit a value is cut or its tag removed, with a success told.
constexpr std::size_t longestText = 32'766;

void RefuseTooLong(const char* text) {
    if (std::strlen(text) > longestText)
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
