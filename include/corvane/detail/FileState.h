// What tells one state of a file from another without reading it.
#pragma once

#include <corvane/foundations/WideString.h>

namespace corvane {

/// A file's identity, size and times, or why they could not be had.
struct FileState {
    std::uint64_t volume = 0;
    std::uint64_t file = 0; ///< its number on the volume
    std::uint64_t size = 0;
    std::int64_t modified = 0; ///< nanoseconds since 1970, as is the next
    std::int64_t changed = 0;
    ulong error = 0;   ///< the system's number, 0 for none
    bool racy = false; ///< whether its timestamps are; see IsRacy
};

inline bool operator==(const FileState& a, const FileState& b) noexcept {
    return a.volume == b.volume && a.file == b.file && a.size == b.size && a.modified == b.modified &&
           a.changed == b.changed && a.error == b.error;
}

/// The coarsest step of file times, with a margin, in nanoseconds.
inline constexpr std::int64_t coarsestFileTime = 2'100'000'000;

/// Whether the timestamp `changed` is racy at `now`: a later change could get the same. Both are nanoseconds
/// since 1970 by the same clock. File times move in ticks of at most 16 ms, and some file systems keep them
/// in steps of up to two seconds.
inline bool IsRacy(std::int64_t changed, std::int64_t now) noexcept {
    return changed >= now - (changed % 1'000'000'000 == 0 ? coarsestFileTime : 20'000'000);
}

} // namespace corvane
