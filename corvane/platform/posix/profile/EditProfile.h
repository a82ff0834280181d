// Changes to the text of a private-profile file. Nothing but the lines concerned changes: comments, blank and
// unknown lines, order, line endings, byte-order mark and bytes that are no UTF-8 stay as they are.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvane::posix {

/// The text with the value in it, or nothing when the value stands there already. Of equal sections and tags
/// the first is written. An existing line keeps all but its value; blanks that the new value brings at an end
/// take the place of those in the line. A new tag goes behind the last one of its section, a new section to
/// the end. Names are not empty, have no blanks at their ends, and like the value no line break in them.
std::optional<std::string> SetTag(std::string_view content, std::string_view section, std::string_view tag,
                                  std::string_view value);

/// The text without the tag in any section of that name, or nothing when it is not there. Headers stay.
std::optional<std::string> RemoveTag(std::string_view content, std::string_view section,
                                     std::string_view tag);

/// The text without every section of that name, each from its header to the next, or nothing when there is
/// none. Comments directly above the next header speak of what follows and stay.
std::optional<std::string> RemoveSection(std::string_view content, std::string_view section);

} // namespace corvane::posix
