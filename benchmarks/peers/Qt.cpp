// Qt QSettings with IniFormat.
#include "Peer.h"

#include <QSettings>
#include <fcntl.h>
#include <sys/stat.h>

static std::string ToUtf8(const QString& value) { // beside QString, where templates look for it
    return value.toStdString();
}

namespace peers {
namespace {

class QSettingsPeer : public PeerOf<QSettingsPeer, QString, QString> {
public:
    int Abilities() const override { return canGet | canList | canSave; }
    Threads ThreadUse() const override { return Threads::ObjectEach; } // "reentrant": one object a thread

    // QSettings may keep a parsed file behind the object's back and trusts its size and time stamp: a new
    // time stamp each time makes it read the file again.
    void Reset() override {
        static time_t stamp = 1'000'000'000;
        const timespec times[2] = {{++stamp, 0}, {stamp, 0}};
        m_settings.reset();
        ::utimensat(AT_FDCWD, m_path.c_str(), times, 0);
    }
    bool Load(const std::string& path) override {
        m_path = path;
        m_settings = std::make_unique<QSettings>(QString::fromStdString(path), QSettings::IniFormat);
        m_settings->childKeys(); // it parses a section when first asked for it; this parses them all
        return m_settings->status() == QSettings::NoError;
    }

    QString Key(const std::string& section, const std::string& tag) const {
        return QString::fromStdString(section + '/' + tag);
    }
    bool Find(const QString& key, QString& value) {
        const QVariant found = m_settings->value(key);
        if (found.isValid())
            value = found.toString(); // shares the text, counted by reference
        return found.isValid();
    }

    std::size_t List() override { return static_cast<std::size_t>(m_settings->allKeys().size()); }

    bool Save(const std::vector<Setting>& settings) override {
        for (const auto& [section, tag, value] : settings)
            m_settings->setValue(Key(section, tag), QString::fromStdString(value));
        m_settings->sync();
        return m_settings->status() == QSettings::NoError;
    }

private:
    std::unique_ptr<QSettings> m_settings;
    std::string m_path;
};

const RegisterPeer<QSettingsPeer> entry("QSettings");

} // namespace
} // namespace peers
