#include "Peer.h"

#include <corvane/config.h>

namespace peers {
namespace {

using corvane::wstring;

class CorvanePeer : public PeerOf<CorvanePeer, wstring, wstring> {
public:
    int Abilities() const override { return canGet | canList | canSave; }
    Threads ThreadUse() const override { return Threads::OneObject; }

    void Reset() override { m_config.reset(); }
    bool Load(const std::string& path) override {
        constexpr int reload = -1;
        m_config = std::make_unique<ConfigManager>();
        return m_config->Update(ToUtf16(path).c_str(), reload) == 0;
    }

    wstring Key(const std::string& section, const std::string& tag) const {
        return ToUtf16(section + ':' + tag);
    }
    bool Find(const wstring& key, wstring& value) { return m_config->GetValue(key, value) == 0; }

    std::size_t List() override {
        std::size_t count = 0;
        std::vector<wstring> sections;
        std::vector<wstring> tags;
        m_config->EnumerateSubKeys(sections);
        for (const wstring& section : sections) {
            tags.clear();
            m_config->EnumerateTags(section + u':', tags);
            count += tags.size();
        }
        return count;
    }

    bool Save(const std::vector<Setting>& settings) override {
        if (settings.size() == 1)
            return m_config->SetValue(Key(settings[0].section, settings[0].tag),
                                      ToUtf16(settings[0].value)) == 0;
        std::vector<corvane::ConfigChange> changes;
        for (const auto& [section, tag, value] : settings)
            changes.push_back({Key(section, tag), ToUtf16(value)});
        return m_config->ApplyChanges(changes) == 0;
    }

private:
    std::unique_ptr<ConfigManager> m_config;
};

const RegisterPeer<CorvanePeer> entry("corvane");

} // namespace
} // namespace peers
