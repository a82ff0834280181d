// Reloads the file when another program has changed it: watch-changes FILE
#include <corvane/comfort.h>

#include <chrono>
#include <iostream>
#include <thread>

namespace {

// Stands for another program.
void ChangeElsewhere(const std::string& file) {
    ConfigManager other;
    if (!corvane::Load(other, file) || !corvane::Set(other, "Server:Backlog", 256))
        std::cout << "the change was refused\n";
}

// Refresh, called from time to time, notices every change, even one made during the last load. If the file
// cannot be loaded, because another program holds it, the next call tries again.
class Settings {
public:
    explicit Settings(ConfigManager& config) : m_config(config), m_watch(config) {}

    void Refresh() {
        m_stale = m_watch.Differs() || m_stale;
        if (m_stale)
            m_stale = !corvane::Reload(m_config); // the old values stay in use if it fails
    }

private:
    ConfigManager& m_config;
    corvane::FileWatch m_watch;
    bool m_stale = false;
};

} // namespace

int main(int count, char** arguments) {
    if (count != 2)
        return 1;
    ConfigManager config;
    if (const corvane::LoadResult loaded = corvane::Load(config, arguments[1]); !loaded) {
        std::cerr << loaded.reason << '\n';
        return 1;
    }
    Settings settings(config);
    std::cout << "backlog " << corvane::Get(config, "Server:Backlog", 0) << '\n';

    ChangeElsewhere(arguments[1]);
    while (corvane::Get(config, "Server:Backlog", 0) == 128) {
        settings.Refresh();
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    std::cout << "backlog " << corvane::Get(config, "Server:Backlog", 0) << '\n';
    return 0;
}
