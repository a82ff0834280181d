#include "Terminal.h"

#include "System.h"

#include <cstdlib>

std::string Painted(Paint paint, const std::string& text) {
    static const char* const refusal = std::getenv("NO_COLOR");
    static const bool inColour = !(refusal && *refusal) && TerminalShowsColour();
    static constexpr const char* codes[] = {"1", "36", "31", "32"};
    if (!inColour)
        return text;
    return std::string("\x1b[") + codes[static_cast<int>(paint)] + "m" + text + "\x1b[0m";
}
