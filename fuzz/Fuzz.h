// What the fuzz targets share. An input that breaks a rule ends the process.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>
#include <support/StateOf.h>
#include <support/TemporaryFolder.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

using corvane::wstring;
using corvane::test::Bytes;
using corvane::test::Entry;
using corvane::test::StateOf;

/// The input, taken from the front. What is not there any more is zero or empty.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : m_rest(reinterpret_cast<const char*>(data), size) {}

    bool Empty() const { return m_rest.empty(); }
    std::string_view Rest() const { return m_rest; }
    std::size_t Below(std::size_t limit) {
        return static_cast<unsigned char>(Take(1).append(1, '\0')[0]) % limit;
    }
    std::string Until(char end) {
        std::string text = Take(m_rest.find(end));
        Take(1);
        return text;
    }

private:
    std::string Take(std::size_t count) {
        std::string text(m_rest.substr(0, count));
        m_rest.remove_prefix(text.size());
        return text;
    }

    std::string_view m_rest;
};

inline void Require(bool holds, const char* rule) {
    if (!holds) {
        std::fprintf(stderr, "broken: %s\n", rule);
        std::abort();
    }
}

inline const corvane::test::TemporaryFolder& Folder() {
    static const corvane::test::TemporaryFolder folder;
    Quillon::NativeLogging::LoggerRegistry::setSink(
        [](const auto& line) { Require(!line.text.empty(), "a line has a text"); });
    return folder;
}

inline std::string Trimmed(std::string text) {
    text.erase(text.find_last_not_of(" \t") + 1);
    return text.erase(0, std::min(text.find_first_not_of(" \t"), text.size()));
}

/// What a written value is read back as.
inline std::string AsRead(std::string value) {
    value = Trimmed(value.erase(0, std::min(value.find_first_not_of(" \t\r\n\v\f"), value.size())));
    const bool quoted =
        value.size() > 1 && value.front() == value.back() && (value[0] == '"' || value[0] == '\'');
    return quoted ? value.substr(1, value.size() - 2) : value;
}

} // namespace fuzz
