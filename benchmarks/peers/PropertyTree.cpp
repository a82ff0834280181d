// Boost.PropertyTree with its ini_parser.
#include "Peer.h"

#include <boost/property_tree/ini_parser.hpp>
#include <boost/property_tree/ptree.hpp>

namespace peers {
namespace {

using boost::property_tree::ptree;

class PropertyTreePeer : public PeerOf<PropertyTreePeer, ptree::path_type, std::string> {
public:
    int Abilities() const override { return canGet | canList | canSave; }

    void Reset() override { m_tree.clear(); }
    bool Load(const std::string& path) override {
        m_path = path;
        boost::property_tree::read_ini(m_path, m_tree);
        return true;
    }

    ptree::path_type Key(const std::string& section, const std::string& tag) const {
        return section + '.' + tag;
    }
    bool Find(const ptree::path_type& key, std::string& value) {
        auto found = m_tree.get_optional<std::string>(key);
        if (found)
            value = std::move(*found);
        return found.has_value();
    }

    std::size_t List() override {
        std::size_t bytes = 0;
        std::size_t count = 0;
        for (const auto& section : m_tree) {
            bytes += section.first.size();
            count += section.second.size();
            for (const auto& tag : section.second)
                bytes += tag.first.size();
        }
        CountAsUsed(bytes);
        return count;
    }

    bool Save(const std::vector<Setting>& settings) override {
        for (const auto& [section, tag, value] : settings)
            m_tree.put(Key(section, tag), value);
        boost::property_tree::write_ini(m_path, m_tree);
        return true;
    }

private:
    ptree m_tree;
    std::string m_path;
};

const RegisterPeer<PropertyTreePeer> entry("Boost.PTree");

} // namespace
} // namespace peers
