// Edits the text of a private-profile file. Only the lines concerned change: comments, blank and unknown
// lines, order, line endings, byte-order mark and bytes that are not UTF-8 are preserved.
#pragma once

#include <corvane/platform/linux/files/TextFragments.h>

#include <optional>
#include <string_view>
#include <vector>

namespace corvane::os {

/// One edit: sets a tag to a value; without a value removes the tag, without a tag the whole section. The
/// texts contain no line breaks; names are not empty and have no blanks at their ends.
struct ProfileEdit {
    std::string_view section;
    std::optional<std::string_view> tag;
    std::optional<std::string_view> value;
};

/// Applies the edits in order and returns the new text as fragments of `text` and `edits`, which must outlive
/// it; nothing if the text need not change. Takes time proportional to the text and the edits.
///
/// - Of several sections or tags of one name the first is set. An existing line keeps all but its value;
/// blanks
///   at the ends of the new value replace those in the line.
/// - New tags follow the last one of their section, new sections the end of the text.
/// - A removal applies to every section of that name. Removing tags keeps the header; removing a section
/// keeps
///   the comments directly above the next header, which belong to that.
/// - The last edit of a tag counts. A section that is removed and then gets a tag starts empty.
std::optional<TextFragments> Edited(std::string_view text, const std::vector<ProfileEdit>& edits);

} // namespace corvane::os
