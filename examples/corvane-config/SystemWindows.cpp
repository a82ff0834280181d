#include "System.h"

#include <corvane/config.h>

#include <cstdlib>
#include <windows.h>

bool TerminalShowsColour() {
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    if (!GetConsoleMode(output, &mode))
        return false;
    SetConsoleOutputCP(CP_UTF8);
    return SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

const char* DefaultEditor() {
    return "notepad";
}

bool RunEditor(const std::string& editor, const std::string& file) {
    return _wsystem(corvane::ToWide(editor + " \"" + file + "\"").c_str()) == 0;
}

// The folder's access list says who may read it.
std::error_code MakePrivateFile(const std::string& path) {
    const HANDLE file = CreateFileW(corvane::ToWide(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return {static_cast<int>(GetLastError()), std::system_category()};
    CloseHandle(file);
    return {};
}
