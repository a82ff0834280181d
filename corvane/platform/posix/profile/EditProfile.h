// Changes to the text of a private-profile file. Nothing but the lines concerned changes: comments, blank and
// unknown lines, order, line endings, byte-order mark and bytes that are no UTF-8 stay as they are.
#pragma once

#include <corvane/platform/posix/files/TextPieces.h>

#include <string>
#include <string_view>
#include <vector>

namespace corvane::posix {

/// One place of a text that becomes another: what is between two of its positions goes, `text` comes there.
struct ProfileChange {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::string text;
};

/// From front to back; none when everything is as it should be.
using ProfileChanges = std::vector<ProfileChange>;

/// Gives the tag the value. Of equal sections and tags the first is written. An existing line keeps all but
/// its value; blanks that the new value brings at an end take the place of those in the line. A new tag goes
/// behind the last one of its section, a new section to the end. Names are not empty, have no blanks at their
/// ends, and like the value no line break in them.
ProfileChanges SetTag(std::string_view content, std::string_view section, std::string_view tag,
                      std::string_view value);

/// Removes the tag from every section of that name. Headers stay.
ProfileChanges RemoveTag(std::string_view content, std::string_view section, std::string_view tag);

/// Removes every section of that name, each from its header to the next. Comments directly above the next
/// header speak of what follows and stay.
ProfileChanges RemoveSection(std::string_view content, std::string_view section);

/// The text with the changes made, in pieces of both.
TextPieces Changed(std::string_view content, const ProfileChanges& changes);

} // namespace corvane::posix
