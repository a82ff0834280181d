// Reads typed settings with defaults, and reports an invalid one: read-with-defaults FILE
#include <corvane/comfort.h>

#include <iostream>

namespace {

struct Server {
    std::string address;
    std::uint16_t port;
    bool backup;
    std::chrono::seconds timeout;
};

Server ReadServer(const ConfigManager& config) {
    return {
        corvane::Get(config, "Server:Address", "127.0.0.1"),
        corvane::Get<std::uint16_t>(config, "Server:Port", 80),
        corvane::Get(config, "Backup:Enabled", false),
        corvane::Get(config, "Server:Timeout", std::chrono::seconds(30)),
    };
}

} // namespace

int main(int count, char** arguments) {
    ConfigManager config;
    if (count != 2 || !corvane::Load(config, arguments[1]))
        return 1;
    const Server server = ReadServer(config);
    std::cout << "listening on " << server.address << ':' << server.port << '\n'
              << "backup is " << (server.backup ? "on" : "off") << ", timeout " << server.timeout.count()
              << " s\n";

    // Without a default, a missing or invalid value is std::nullopt.
    if (!corvane::Get<int>(config, "Storage:Compression"))
        std::cout << "Storage:Compression is no number\n";
    return 0;
}
