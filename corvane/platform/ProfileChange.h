// One change of a batch.
#pragma once

namespace corvane::platform {

/// Sets a tag to a value; a null value deletes the tag, a null tag the whole section. The section is not
/// null. All texts are UTF-8.
struct ProfileChange {
    const char* section;
    const char* tag;
    const char* value;
};

/// Throws std::invalid_argument, with an explanation, for a value that could not be read back: one with a
/// null, empty or blank name, a line break in a name or in the value, a tag that contains '=' or begins with
/// ';' or '[', a text above longestProfileText. Blanks around names are ignored. Deletions pass.
void CheckProfileChange(const ProfileChange& change);

} // namespace corvane::platform
