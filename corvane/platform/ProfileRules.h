// The names and values that a private-profile file can represent.
#pragma once

namespace corvane {

/// Throws std::invalid_argument for names and a value that could be written and would then be read as
/// something else or not at all: a name that is null, empty or blank, a line break in any of them, a tag with
/// '=' in it or with ';' or '[' at its front. Blanks around names don't count. `value` is not null.
void RefuseUnreadable(const char* section, const char* tag, const char* value);

} // namespace corvane
