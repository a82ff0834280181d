#include "Terminal.h"

#include <cstdlib>
#include <unistd.h>

bool TerminalShowsColour() {
    const char* const kind = std::getenv("TERM");
    return isatty(STDOUT_FILENO) != 0 && kind && std::string(kind) != "dumb";
}
