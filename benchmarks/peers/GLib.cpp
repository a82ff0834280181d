// GLib GKeyFile. Comments must start with '#'; loaded with comments kept, as a program that saves would do.
#include "Peer.h"

#include <glib.h>

namespace peers {
namespace {

struct OwnedText { // the value is a fresh copy that the caller owns
    OwnedText() = default;
    OwnedText(const OwnedText&) = delete;
    OwnedText& operator=(const OwnedText&) = delete;
    ~OwnedText() { g_free(text); }

    char* text = nullptr;
};

std::string ToUtf8(const OwnedText& value) {
    return value.text;
}

class GKeyFilePeer : public PeerOf<GKeyFilePeer, Name, OwnedText> {
public:
    GKeyFilePeer() = default;
    GKeyFilePeer(const GKeyFilePeer&) = delete;
    GKeyFilePeer& operator=(const GKeyFilePeer&) = delete;
    ~GKeyFilePeer() override { Free(); }

    int Abilities() const override { return canGet | canList | canSave; }
    char CommentMark() const override { return '#'; }

    void Reset() override { Free(); }
    bool Load(const std::string& path) override {
        constexpr int flags = G_KEY_FILE_KEEP_COMMENTS | G_KEY_FILE_KEEP_TRANSLATIONS;
        m_path = path;
        m_file = g_key_file_new();
        return g_key_file_load_from_file(m_file, m_path.c_str(), static_cast<GKeyFileFlags>(flags), nullptr);
    }

    Name Key(const std::string& section, const std::string& tag) const { return {section, tag}; }
    bool Find(const Name& key, OwnedText& value) {
        g_free(value.text);
        value.text = g_key_file_get_string(m_file, key.section.c_str(), key.tag.c_str(), nullptr);
        return value.text != nullptr;
    }

    std::size_t List() override {
        gsize sections = 0;
        gsize tags = 0;
        std::size_t count = 0;
        char** const names = g_key_file_get_groups(m_file, &sections);
        for (gsize i = 0; i < sections; ++i) {
            g_strfreev(g_key_file_get_keys(m_file, names[i], &tags, nullptr));
            count += tags;
        }
        g_strfreev(names);
        return count;
    }

    bool Save(const std::vector<Setting>& settings) override {
        for (const auto& [section, tag, value] : settings)
            g_key_file_set_string(m_file, section.c_str(), tag.c_str(), value.c_str());
        return g_key_file_save_to_file(m_file, m_path.c_str(), nullptr);
    }

private:
    void Free() {
        if (m_file)
            g_key_file_unref(m_file);
        m_file = nullptr;
    }

    GKeyFile* m_file = nullptr;
    std::string m_path;
};

const RegisterPeer<GKeyFilePeer> entry("GKeyFile");

} // namespace
} // namespace peers
