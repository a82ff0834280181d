// Sends the library's log to the program's own log: log-sink FILE
#include <corvane/comfort.h>
#include <corvane/config.h>

#include <iostream>
#include <mutex>

using namespace Quillon::NativeLogging;

int main(int count, char** arguments) {
    if (count != 2)
        return 1;
    std::mutex mutex; // lines may come from several threads at once
    LoggerRegistry::setThreshold(Severity::progress);
    LoggerRegistry::setSink([&mutex](const LogLine& line) {
        static constexpr const char* kinds[] = {"ERROR", "ERROR", "INFO", "DEBUG"};
        const std::lock_guard lock(mutex);
        const std::string text = corvane::ToUtf8(line.text);
        std::cout << kinds[static_cast<int>(line.severity)] << ' ' << corvane::ToUtf8(line.channel) << ": "
                  << text.substr(0, text.find(" line: ")) << '\n';
    });

    ConfigManager config;
    const auto loaded = corvane::Load(config, arguments[1]);
    const bool found = corvane::Exists(config, "Server:Port"); // never logs
    corvane::Get<int>(config, "Server:NotThere");
    const bool set = corvane::Set(config, "NoColonHere", 1);
    LoggerRegistry::setSink({}); // before the mutex is destroyed
    return loaded && found && !set ? 0 : 1;
}
