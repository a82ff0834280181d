// Poco::Util::IniFileConfiguration. It has no way to write an INI file.
#include "Peer.h"

#include <Poco/AutoPtr.h>
#include <Poco/Util/IniFileConfiguration.h>

namespace peers {
namespace {

using Poco::Util::IniFileConfiguration;

class PocoPeer : public PeerOf<PocoPeer, std::string, std::string> {
public:
    int Abilities() const override { return canGet | canList; }
    Threads ThreadUse() const override { return Threads::OneObject; } // "All public methods are synchronized"

    void Reset() override { m_config.reset(); }
    bool Load(const std::string& path) override {
        m_config = new IniFileConfiguration(path);
        return true;
    }

    std::string Key(const std::string& section, const std::string& tag) const { return section + '.' + tag; }
    bool Find(const std::string& key, std::string& value) {
        static const std::string none;
        value = m_config->getString(key, none);
        return !value.empty(); // the workload has no empty value
    }

    std::size_t List() override {
        std::size_t count = 0;
        IniFileConfiguration::Keys sections;
        IniFileConfiguration::Keys tags;
        m_config->keys(sections);
        for (const std::string& section : sections) {
            m_config->keys(section, tags);
            count += tags.size();
        }
        return count;
    }

private:
    Poco::AutoPtr<IniFileConfiguration> m_config;
};

const RegisterPeer<PocoPeer> entry("Poco");

} // namespace
} // namespace peers
