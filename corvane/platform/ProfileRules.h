// The names and values that a private-profile file can represent.
#pragma once

namespace corvane {

/// Throws std::invalid_argument for names and a value that could be written but would not read back: a null,
/// empty or blank name, a line break in any of them, a tag that contains '=' or begins with ';' or '['.
/// Blanks around names are ignored. `value` is not null.
void RefuseUnreadable(const char* section, const char* tag, const char* value);

} // namespace corvane
