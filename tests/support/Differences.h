// The reasons for which a case expects another answer from the real operations of Windows than from the layer
// that stands for them elsewhere. Each was seen under wine; docs/windows-and-linux.md tells a user what they
// mean.
#pragma once

#include <algorithm>
#include <string>

namespace differences {

#ifdef _WIN32
inline constexpr bool onWindows = true;
#else
inline constexpr bool onWindows = false;
#endif

inline constexpr bool changesLayTheFileOutAnew = onWindows;    // with CRLF, under wine
inline constexpr bool deletionsTakeTheFirstDouble = onWindows; // and the next comes to light
inline constexpr bool filesInUtf16AreRead = onWindows;
inline constexpr bool longTextsAreRefused = onWindows;   // over 32,766 bytes
inline constexpr bool anEmptySubkeyIsTheKey = onWindows; // which the call then tries to delete

inline constexpr bool filesInUseAreRefused = onWindows; // open for writing elsewhere
inline constexpr bool batchesMakeACopy = onWindows;     // with a name of its own, beside the file

/// A file's content in the line endings that the test wrote, LF.
inline std::string InLf(std::string content) {
    if (changesLayTheFileOutAnew)
        content.erase(std::remove(content.begin(), content.end(), '\r'), content.end());
    return content;
}

} // namespace differences
