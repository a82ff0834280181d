// inih through INIReader: it reads alone, and version 55 lists neither sections nor tags.
#include "Peer.h"

#include <INIReader.h>

namespace peers {
namespace {

class InihPeer : public PeerOf<InihPeer, Name, std::string> {
public:
    int Abilities() const override { return canGet; }

    void Reset() override { m_reader.reset(); }
    bool Load(const std::string& path) override {
        m_reader = std::make_unique<INIReader>(path);
        return m_reader->ParseError() == 0;
    }

    Name Key(const std::string& section, const std::string& tag) const { return {section, tag}; }
    bool Find(const Name& key, std::string& value) {
        static const std::string none;
        value = m_reader->Get(key.section, key.tag, none);
        return !value.empty(); // the workload has no empty value
    }

private:
    std::unique_ptr<INIReader> m_reader;
};

const RegisterPeer<InihPeer> entry("inih");

} // namespace
} // namespace peers
