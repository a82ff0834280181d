// Takes a change over that another program makes to the file: watch-changes FILE
#include <corvane/comfort.h>

#include <chrono>
#include <iostream>
#include <thread>

namespace {

// What another program does meanwhile, a little later than the load.
void ChangeElsewhere(const std::string& file) {
    ConfigManager other;
    if (!corvane::Load(other, file) || !corvane::Set(other, "Server:Backlog", 256))
        std::cout << "the change was refused\n";
}

} // namespace

int main(int count, char** arguments) {
    ConfigManager config;
    if (count != 2 || !corvane::Load(config, arguments[1]))
        return 1;
    std::cout << "backlog " << corvane::Get(config, "Server:Backlog", 0) << '\n';
    std::cout << "changed: " << (config.SourceWasModified() ? "yes" : "no") << '\n';

    std::this_thread::sleep_for(std::chrono::milliseconds(1100)); // changes are told apart by whole seconds
    ChangeElsewhere(arguments[1]);
    while (!config.SourceWasModified())
        std::this_thread::sleep_for(std::chrono::milliseconds(100));

    // Loads, because the file was modified. If it failed, the old values would stay in use.
    if (!corvane::Load(config, arguments[1]))
        return 1;
    std::cout << "backlog " << corvane::Get(config, "Server:Backlog", 0) << '\n';
    return 0;
}
