// The one interface that every measured library implements.
#pragma once

#include "Utf16.h"
#include "Workload.h"

#include <memory>
#include <string>
#include <vector>

namespace peers {

struct Setting {
    std::string section;
    std::string tag;
    std::string value;
};

/// Keeps the compiler from leaving out what made `value`.
template <typename T>
void CountAsUsed(const T& value) {
    asm volatile("" : : "r"(&value) : "memory");
}

class Peer {
public:
    enum Ability { canGet = 1, canList = 2, canSave = 4 };
    enum class Threads { None, OneObject, ObjectEach }; ///< what the library's documentation allows for reads
    struct Keys {                                       ///< look-up keys in the type that the library takes
        virtual ~Keys() = default;
    };

    virtual ~Peer() = default;
    virtual int Abilities() const { return 0; }
    virtual Threads ThreadUse() const { return Threads::None; }
    virtual char CommentMark() const { return ';'; }

    virtual void Reset() = 0; ///< drops what was loaded, so that the next load is a true one; not timed
    virtual bool Load(const std::string& path) = 0;

    virtual bool Get(const std::string& /*section*/, const std::string& /*tag*/, std::string& /*value*/) {
        return false;
    }
    virtual std::unique_ptr<Keys> Prepare(const std::vector<Name>&) const { return nullptr; }
    /// Copies every value out; answers the number found.
    virtual std::size_t GetAll(const Keys&) { return 0; }
    /// Lists all sections and tags; answers the number of tags.
    virtual std::size_t List() { return 0; }
    /// Sets them all and brings the file up to date once.
    virtual bool Save(const std::vector<Setting>&) { return false; }
};

/// Supplies the look-ups. Self has `K Key(section, tag) const` and `bool Find(const K&, V&)`, and there is a
/// ToUtf8(const V&).
template <typename Self, typename K, typename V>
class PeerOf : public Peer {
public:
    bool Get(const std::string& section, const std::string& tag, std::string& value) override {
        auto& self = static_cast<Self&>(*this);
        V native{};
        const bool found = self.Find(self.Key(section, tag), native);
        value = found ? ToUtf8(native) : std::string();
        return found;
    }

    std::unique_ptr<Keys> Prepare(const std::vector<Name>& names) const override {
        auto keys = std::make_unique<Native>();
        for (const Name& name : names)
            keys->list.push_back(static_cast<const Self&>(*this).Key(name.section, name.tag));
        return keys;
    }

    std::size_t GetAll(const Keys& keys) override {
        V value{}; // the caller's
        std::size_t found = 0;
        for (const K& key : static_cast<const Native&>(keys).list) {
            if (static_cast<Self&>(*this).Find(key, value))
                ++found;
            CountAsUsed(value);
        }
        return found;
    }

private:
    struct Native : Keys {
        std::vector<K> list;
    };
};

struct PeerEntry {
    std::string name;
    std::unique_ptr<Peer> (*make)();
};
std::vector<PeerEntry>& KnownPeers();

template <typename P>
struct RegisterPeer {
    explicit RegisterPeer(const char* name) {
        KnownPeers().push_back({name, []() -> std::unique_ptr<Peer> { return std::make_unique<P>(); }});
    }
};

} // namespace peers
