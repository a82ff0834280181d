// Changes to the text of a private-profile file. Nothing but the lines concerned changes: comments, blank and
// unknown lines, order, line endings, byte-order mark and bytes that are no UTF-8 stay as they are.
#pragma once

#include <corvane/platform/linux/files/TextFragments.h>

#include <optional>
#include <string_view>
#include <vector>

namespace corvane::os {

/// One change that is asked for: the tag gets the value; without a value it goes, and without a tag the whole
/// section does. No line breaks stand in what is written, and no blanks at the ends of its names, which are
/// not empty.
struct ProfileEdit {
    std::string_view section;
    std::optional<std::string_view> tag;
    std::optional<std::string_view> value;
};

/// The text with the edits made one after the other, in pieces of both, which have to last as long; nothing
/// if it is as it should be already. One pass over the text: takes time in proportion to it and the edits.
///
/// - Of equal sections and tags the first gets the value. An existing line keeps all but its value; blanks
///   that the new value brings at an end take the place of those in the line.
/// - New tags go behind the last one of their section, new sections to the end.
/// - What is removed goes from every section of that name. With a tag the header stays; with a section the
///   comments directly above the next header stay, as they speak of what follows.
/// - The last edit of a tag counts. A section that is removed and then gets a tag begins anew.
std::optional<TextFragments> Edited(std::string_view text, const std::vector<ProfileEdit>& edits);

} // namespace corvane::os
