#include "Formats.h"

#include <cstdio>

Format FormatOf(const CommandLine& line) {
    const auto option = line.options.find("--format");
    if (option == line.options.end() || option->second[0] == "text")
        return Format::text;
    if (option->second[0] == "sh")
        return Format::sh;
    if (option->second[0] == "json")
        return Format::json;
    throw Failure(Usage, "unknown format '" + option->second[0] + "'; expected text, sh or json");
}

std::string JsonText(const std::string& text) {
    std::string json = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\')
            json += '\\';
        if (static_cast<unsigned char>(c) >= 0x20) {
            json += c;
            continue;
        }
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
        json += escape;
    }
    return json + '"';
}

std::string JsonList(const std::vector<std::string>& texts) {
    std::string json = "[";
    for (const std::string& text : texts)
        json.append(json.size() > 1 ? ", " : "").append(JsonText(text));
    return json + "]";
}

std::string ShellWord(const std::string& text) {
    std::string word = "'";
    for (const char c : text)
        if (c == '\'')
            word += "'\\''";
        else
            word += c;
    return word + "'";
}

std::string ShellName(const std::string& key) {
    std::string name;
    for (const char c : key) {
        const bool isDigit = c >= '0' && c <= '9';
        const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        const bool continuesCharacter = (static_cast<unsigned char>(c) & 0xC0) == 0x80;
        if (isDigit && name.empty())
            name += '_';
        if (isLetter || isDigit)
            name += c;
        else if (!continuesCharacter)
            name += '_';
    }
    return name;
}
