// What any library is measured against: reading and splitting the file with no library at all, and bare
// standard containers of UTF-16 texts for the look-up (exact letter case, flat "Section:Tag" keys).
#include "Peer.h"

#include <cstring>
#include <fcntl.h>
#include <map>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>
#include <unordered_map>

namespace peers {
namespace {

std::string_view UpTo(char mark, std::string_view text) {
    return text.substr(0, text.find(mark));
}

// Gives `onTag` the section, tag and value of each line.
template <typename OnTag>
bool ScanFile(const std::string& path, OnTag onTag) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status {};
    if (file < 0 || ::fstat(file, &status) != 0)
        return false;
    const auto size = static_cast<std::size_t>(status.st_size);
    const std::unique_ptr<char[]> text(new char[size]);
    const bool whole = ::read(file, text.get(), size) == status.st_size;
    ::close(file);

    std::string_view section;
    for (std::string_view rest(text.get(), size); !rest.empty();) {
        const std::string_view line = UpTo('\n', rest);
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        if (line.empty() || line.front() == ';')
            continue;
        if (line.front() == '[') {
            section = UpTo(']', line.substr(1));
            continue;
        }
        const std::string_view tag = UpTo('=', line);
        if (tag.size() < line.size())
            onTag(section, tag, line.substr(tag.size() + 1));
    }
    return whole;
}

class FloorScan : public Peer {
public:
    void Reset() override {}
    bool Load(const std::string& path) override {
        std::size_t bytes = 0;
        const bool whole = ScanFile(path, [&](auto section, auto tag, auto value) {
            bytes += section.size() + tag.size() + value.size();
        });
        CountAsUsed(bytes);
        return whole;
    }
};

struct NoLock {
    void lock() {}
    void unlock() {}
};

template <typename Map, typename Lock>
class FloorMap : public PeerOf<FloorMap<Map, Lock>, std::u16string, std::u16string> {
public:
    int Abilities() const override { return Peer::canGet; }
    Peer::Threads ThreadUse() const override { return Peer::Threads::OneObject; }

    void Reset() override { m_map = Map(); }
    bool Load(const std::string& path) override {
        return ScanFile(
            path, [&](auto section, auto tag, auto value) { m_map[Key(section, tag)] = ToUtf16(value); });
    }

    std::u16string Key(std::string_view section, std::string_view tag) const {
        std::u16string flat;
        flat.reserve(section.size() + tag.size() + 1);
        AppendUtf16(flat, section);
        AppendUtf16(flat += u':', tag);
        return flat;
    }
    bool Find(const std::u16string& key, std::u16string& value) {
        const std::lock_guard guard(m_lock);
        const auto hit = m_map.find(key);
        if (hit == m_map.end())
            return false;
        value = hit->second;
        return true;
    }

private:
    Map m_map;
    Lock m_lock;
};

using Hash = std::unordered_map<std::u16string, std::u16string>;
using Tree = std::map<std::u16string, std::u16string>;

const RegisterPeer<FloorScan> scan("floor-scan");
const RegisterPeer<FloorMap<Hash, NoLock>> hash("floor-hash");
const RegisterPeer<FloorMap<Hash, std::recursive_mutex>> lockedHash("floor-hash+lock");
const RegisterPeer<FloorMap<Tree, NoLock>> tree("floor-map");

} // namespace
} // namespace peers
