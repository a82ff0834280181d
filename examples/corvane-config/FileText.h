// The text of a settings file, byte by byte.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// The characters around names and values that are not part of them.
inline constexpr const char* blanks = " \t";

std::string Trimmed(const std::string& text);

/// The path of a text in UTF-8.
std::filesystem::path ToPath(const std::string& name);

/// The whole content. Throws Failure.
std::string ReadText(const std::string& file);

/// Replaces the content, or with `append` adds to it. Throws Failure.
void WriteText(const std::string& file, const std::string& text, bool append = false);

/// The position of a section's name in the text.
struct HeaderName {
    std::size_t begin;
    std::size_t length;
};

/// The section headers in their order: lines that begin with '[' and have a ']'.
std::vector<HeaderName> FindHeaders(const std::string& text);
