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
    ulong error = 0; ///< the system's number, 0 for none
    /// Whether every later change gives another state. Not so when the last change is so recent that one more
    /// could get the same times.
    bool settled = true;
};

inline bool operator==(const FileState& a, const FileState& b) noexcept {
    return a.volume == b.volume && a.file == b.file && a.size == b.size && a.modified == b.modified &&
           a.changed == b.changed && a.error == b.error;
}

/// Whether a change from `now` on gets another time than `changed`; both are nanoseconds since 1970. File
/// times move in ticks of at most 16 ms, and some file systems keep them in steps of up to two seconds. A
/// time that lies ahead is one that no change will get soon.
inline bool HasSettled(std::int64_t changed, std::int64_t now) noexcept {
    const std::int64_t window = changed % 1'000'000'000 == 0 ? 2'100'000'000 : 20'000'000;
    return changed < now - window || changed > now + window;
}

} // namespace corvane
