// One of many changes that are made to a private-profile file at once.
#pragma once

namespace corvane::platform {

/// The tag gets the value; with a null value it goes, and with a null tag the whole section does. The section
/// is not null. All texts are UTF-8.
struct ProfileChange {
    const char* section;
    const char* tag;
    const char* value;
};

/// Throws std::invalid_argument, with an explanation as its text, for a change that is refused whatever the
/// file holds, since no file could give it back.
void CheckProfileChange(const ProfileChange& change);

} // namespace corvane::platform
