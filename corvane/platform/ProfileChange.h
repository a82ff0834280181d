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

/// Throws std::invalid_argument, with an explanation, for a change that no file could give back.
void CheckProfileChange(const ProfileChange& change);

} // namespace corvane::platform
