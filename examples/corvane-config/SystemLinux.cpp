#include "System.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

bool TerminalShowsColour() {
    const char* const kind = std::getenv("TERM");
    return isatty(STDOUT_FILENO) != 0 && kind && std::string(kind) != "dumb";
}

const char* DefaultEditor() {
    return "vi";
}

// A shell takes the command line apart, and the file reaches the editor as it is.
bool RunEditor(const std::string& editor, const std::string& file) {
    const pid_t child = fork();
    if (child == 0) {
        const std::string command = editor + " \"$1\"";
        execl("/bin/sh", "sh", "-c", command.c_str(), "sh", file.c_str(), nullptr);
        _exit(127);
    }
    int status = 0;
    while (child > 0 && waitpid(child, &status, 0) < 0)
        if (errno != EINTR)
            return false;
    return child > 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

std::error_code MakePrivateFile(const std::string& path) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file < 0)
        return {errno, std::generic_category()};
    close(file);
    return {};
}
