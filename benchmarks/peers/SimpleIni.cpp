// SimpleIni in its four usual forms: char (UTF-8) or UTF-16 through ICU, letter case kept apart or not.
#define SI_CONVERT_ICU
#define SI_IMPLEMENTATION
#include "Peer.h"

#include <SimpleIni.h>
#include <type_traits>

namespace peers {
namespace {

template <typename String>
struct Pair {
    String section;
    String tag;
};

template <typename Ini, typename String>
class SimpleIniPeer : public PeerOf<SimpleIniPeer<Ini, String>, Pair<String>, String> {
public:
    int Abilities() const override { return Peer::canGet | Peer::canList | Peer::canSave; }

    void Reset() override { m_ini.reset(); }
    bool Load(const std::string& path) override {
        constexpr bool isUtf8 = true;
        m_path = path;
        m_ini = std::make_unique<Ini>(isUtf8);
        m_ini->SetSpaces(false); // writes tag=value, as it was
        return m_ini->LoadFile(m_path.c_str()) == SI_OK;
    }

    Pair<String> Key(const std::string& section, const std::string& tag) const {
        return {Native(section), Native(tag)};
    }
    bool Find(const Pair<String>& key, String& value) {
        const auto* const found = m_ini->GetValue(key.section.c_str(), key.tag.c_str(), nullptr);
        if (found)
            value = found;
        return found != nullptr;
    }

    std::size_t List() override {
        std::size_t count = 0;
        typename Ini::TNamesDepend sections;
        typename Ini::TNamesDepend tags;
        m_ini->GetAllSections(sections);
        for (const auto& section : sections) {
            m_ini->GetAllKeys(section.pItem, tags);
            count += tags.size();
        }
        return count;
    }

    bool Save(const std::vector<Setting>& settings) override {
        for (const auto& [section, tag, value] : settings) {
            if (m_ini->SetValue(Native(section).c_str(), Native(tag).c_str(), Native(value).c_str()) < 0)
                return false;
        }
        constexpr bool addSignature = false;
        return m_ini->SaveFile(m_path.c_str(), addSignature) == SI_OK;
    }

private:
    static String Native(const std::string& utf8) {
        if constexpr (std::is_same_v<String, std::string>)
            return utf8;
        else
            return ToUtf16(utf8);
    }

    std::unique_ptr<Ini> m_ini;
    std::string m_path;
};

const RegisterPeer<SimpleIniPeer<CSimpleIniA, std::string>> narrow("SimpleIni-A");
const RegisterPeer<SimpleIniPeer<CSimpleIniCaseA, std::string>> narrowExact("SimpleIni-CaseA");
const RegisterPeer<SimpleIniPeer<CSimpleIniW, std::u16string>> wide("SimpleIni-W");
const RegisterPeer<SimpleIniPeer<CSimpleIniCaseW, std::u16string>> wideExact("SimpleIni-CaseW");

} // namespace
} // namespace peers
