// Writes several settings, all or none, and shows that they are in the file: write-through FILE
#include <corvane/comfort.h>

#include <iostream>

namespace {

bool MoveServer(ConfigManager& config, const std::string& address, int port) {
    corvane::WriteBatch batch;
    batch.Set("Server:Address", address).Set("Server:Port", port);
    return corvane::Write(config, batch);
}

void Show(const char* file) {
    ConfigManager other; // as another program sees it
    if (!corvane::Load(other, file))
        return;
    std::cout << corvane::Get(other, "Server:Address", "?") << ':' << corvane::Get(other, "Server:Port", 0)
              << '\n';
}

} // namespace

int main(int count, char** arguments) {
    ConfigManager config;
    if (count != 2 || !corvane::Load(config, arguments[1]))
        return 1;
    if (!MoveServer(config, "192.0.2.7", 9443))
        return 1;
    Show(arguments[1]);
    const bool refused = !MoveServer(config, "two\nlines", 1);
    Show(arguments[1]);
    return refused ? 0 : 1;
}
