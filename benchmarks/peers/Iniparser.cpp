// iniparser (C).
#include "Peer.h"

#include <cstdio>
#include <iniparser/iniparser.h>

namespace peers {
namespace {

struct DictionaryCloser {
    void operator()(dictionary* settings) const { iniparser_freedict(settings); }
};

class IniparserPeer : public PeerOf<IniparserPeer, std::string, std::string> {
public:
    int Abilities() const override { return canGet | canList | canSave; }

    void Reset() override { m_settings.reset(); }
    bool Load(const std::string& path) override {
        m_path = path;
        m_settings.reset(iniparser_load(m_path.c_str()));
        return m_settings != nullptr;
    }

    std::string Key(const std::string& section, const std::string& tag) const { return section + ':' + tag; }
    bool Find(const std::string& key, std::string& value) {
        const char* const found = iniparser_getstring(m_settings.get(), key.c_str(), nullptr);
        if (found)
            value = found;
        return found != nullptr;
    }

    std::size_t List() override {
        std::size_t count = 0;
        std::vector<const char*> tags;
        for (int i = 0, sections = iniparser_getnsec(m_settings.get()); i < sections; ++i) {
            const char* const section = iniparser_getsecname(m_settings.get(), i);
            tags.resize(static_cast<std::size_t>(iniparser_getsecnkeys(m_settings.get(), section)));
            iniparser_getseckeys(m_settings.get(), section, tags.data());
            count += tags.size();
        }
        return count;
    }

    bool Save(const std::vector<Setting>& settings) override {
        for (const auto& [section, tag, value] : settings)
            iniparser_set(m_settings.get(), Key(section, tag).c_str(), value.c_str());
        std::FILE* const file = std::fopen(m_path.c_str(), "w");
        if (file)
            iniparser_dump_ini(m_settings.get(), file);
        return file && std::fclose(file) == 0;
    }

private:
    std::unique_ptr<dictionary, DictionaryCloser> m_settings;
    std::string m_path;
};

const RegisterPeer<IniparserPeer> entry("iniparser");

} // namespace
} // namespace peers
