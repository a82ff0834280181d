// Random operations on a manager over two files, beside a simple model of the cache and of the files: each
// byte of the input chooses something.
#include "Fuzz.h"

#include <chrono>
#include <map>
#include <set>

using namespace fuzz;

namespace {

struct Value {
    wstring text;
    bool cacheOnly = false;
};
using Tags = std::map<wstring, Value, corvane::CaseInsensitiveLess>;
using Sections = std::map<wstring, Tags, corvane::CaseInsensitiveLess>;

const wstring reserved = u"_$CACHE$_";
const wstring sectionNames[] = {u"Mail", u"MAIL", u"Extra", u"Gone", u"_$CACHE$_", u"_$Cache$_", u""};
const wstring tagNames[] = {u"Port", u"PORT", u"Host", u"x", u""};
const wstring values[] = {u"1", u"two words", u" blank ", u"\"quoted\"", u"", u"' q'"};

/// What the manager and its files have to be, by the rules.
class Model {
public:
    Sections cache;
    std::set<wstring> cacheOnly{reserved};
    Sections files[2];
    int loaded = -1;
    bool modified = false; ///< by another program, since the load

    bool Set(const wstring& section, const wstring& tag, const wstring& value, bool onlyCache) {
        if (loaded < 0 || (onlyCache && cache.count(section)) || section.empty() || tag.empty())
            return false;
        const wstring name = Stored(cache, section);
        const bool through = !onlyCache && !cacheOnly.count(name);
        if (through) {
            files[loaded][name][Stored(cache[name], tag)].text = value;
            modified = false;
        } else {
            cacheOnly.insert(name);
        }
        cache[name][tag] = {value, !through};
        return true;
    }

    bool Delete(const wstring& section, const wstring& tag) {
        if (loaded < 0)
            return false;
        const wstring name = Stored(cache, section);
        if (name.empty() || name == reserved)
            return true;
        if (!cache.count(name))
            return false;
        modified = false;
        EraseTags(files[loaded], name, tag);
        const bool removed = EraseTags(cache, name, tag);
        if (tag.empty())
            files[loaded].erase(name);
        if (EraseIfEmpty(cache, name))
            cacheOnly.erase(name);
        return removed;
    }

    /// All or nothing. A section that is left without tags stays until the end: whether it is cache-only
    /// counts until then, and it is not written if it was not in the file.
    bool Apply(const std::vector<corvane::ConfigChange>& changes) {
        Model after = *this;
        Sections before = loaded < 0 ? Sections() : files[loaded];
        std::set<wstring> reduced;
        for (const auto& [key, value] : changes) {
            const wstring section = key.substr(0, key.find(u':'));
            const wstring tag = key.substr(section.size() + 1);
            const wstring name = Stored(after.cache, section);
            if (value ? !after.Set(section, tag, *value, false)
                      : loaded < 0 || section.empty() || name == reserved)
                return false;
            if (value)
                continue;
            reduced.insert(name);
            EraseTags(after.cache, name, tag);
            if (after.cacheOnly.count(name))
                continue;
            after.modified = false;
            EraseTags(after.files[loaded], name, tag);
            if (tag.empty()) {
                after.files[loaded].erase(name);
                before.erase(name);
            }
        }
        for (const wstring& name : reduced) {
            if (EraseIfEmpty(after.cache, name))
                after.cacheOnly.erase(name);
            if (!before.count(name))
                EraseIfEmpty(after.files[loaded], name);
        }
        *this = after;
        return true;
    }

    bool Load(int file, bool force) {
        if (file == loaded && !force && !modified)
            return true;
        if (files[file].empty() ||
            Stored(files[file], reserved) == (files[file].count(reserved) ? reserved : wstring()))
            return false;
        Sections fresh;
        for (const auto& [section, tags] : files[file]) {
            fresh[section];
            for (const auto& [tag, value] : tags)
                if (const wstring text = corvane::ToWide(AsRead(corvane::ToUtf8(value.text))); !text.empty())
                    fresh[section][tag].text = text;
        }
        const auto alone = file == loaded ? cache.end() : cache.find(reserved);
        for (const auto& [section, tags] : cache) {
            if (alone != cache.end() && section != alone->first)
                continue;
            if (section == reserved ? fresh.count(section) : !fresh.count(section))
                continue;
            for (const auto& [tag, value] : tags) {
                if (section == reserved || value.cacheOnly || alone != cache.end())
                    fresh[section].emplace(tag, Value{value.text, true});
            }
        }
        cache = std::move(fresh);
        loaded = file;
        modified = false;
        return true;
    }

    std::vector<Entry> State() const {
        std::vector<Entry> state;
        for (const auto& [section, tags] : cache) {
            state.emplace_back(section, wstring(), wstring());
            for (const auto& [tag, value] : tags)
                state.emplace_back(section, tag, value.text);
        }
        return state;
    }

private:
    static bool EraseTags(Sections& sections, const wstring& name, const wstring& tag) {
        const auto found = sections.find(name);
        if (found == sections.end() || !tag.empty())
            return found != sections.end() && found->second.erase(tag) > 0;
        found->second.clear();
        return true;
    }
    static bool EraseIfEmpty(Sections& sections, const wstring& name) {
        const auto found = sections.find(name);
        return found != sections.end() && found->second.empty() && sections.erase(name) > 0;
    }
    template <class Map>
    static wstring Stored(const Map& names, const wstring& name) {
        const auto found = names.find(name);
        return found == names.end() ? name : found->first;
    }
};

std::string TextOf(const Sections& file) {
    wstring text;
    for (const auto& [section, tags] : file) {
        text += u"[" + section + u"]\n";
        for (const auto& [tag, value] : tags)
            text += tag + u"=" + value.text + u"\n";
    }
    return corvane::ToUtf8(text);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    Model model;
    ConfigManager manager;
    std::string paths[2];
    std::vector<std::pair<wstring, Sections>> snapshots;
    auto future = std::chrono::seconds(10);
    const auto putFile = [&](std::size_t file, const Sections& content) {
        model.files[file] = content;
        paths[file] = Folder().Write("settings" + std::to_string(file), TextOf(content));
        std::filesystem::last_write_time(paths[file],
                                         std::filesystem::file_time_type::clock::now() + (future *= 2));
        model.modified = model.modified || static_cast<int>(file) == model.loaded;
    };
    putFile(0, {{u"Mail", {{u"Port", {u"25"}}}}});
    putFile(1, {{u"Other", {}}, {u"Extra", {{u"x", {u"y"}}}}});

    for (int steps = 0; steps < 20 && !input.Empty(); ++steps) {
        const std::size_t choice = input.Below(256);
        const std::size_t kind = choice % 10;
        const wstring section = sectionNames[input.Below(std::size(sectionNames))];
        const wstring tag = tagNames[input.Below(std::size(tagNames))];
        const wstring key = manager.BuildKey(section, tag);
        const std::size_t file = input.Below(2);
        bool wanted = true;
        int result = 0;
        if (choice >= 200 && kind < 5) {
            std::vector<corvane::ConfigChange> changes{{key, {}}};
            for (std::size_t more = kind; more > 0; --more) {
                const wstring other = manager.BuildKey(sectionNames[input.Below(std::size(sectionNames))],
                                                       tagNames[input.Below(std::size(tagNames))]);
                const std::size_t value = input.Below(std::size(values) + 1);
                changes.push_back({other, value < std::size(values) ? std::optional<wstring>(values[value])
                                                                    : std::nullopt});
            }
            wanted = model.Apply(changes);
            result = manager.ApplyChanges(changes);
        } else if (kind < 3) {
            const wstring value = values[input.Below(std::size(values))];
            wanted = model.Set(section, tag, value, kind == 2);
            result = manager.SetValue(key, value, kind == 2);
        } else if (kind < 5) {
            wanted = model.Delete(section, kind == 3 ? tag : wstring());
            result = manager.DeleteValue(kind == 3 ? key : section + u":");
        } else if (kind < 7) {
            wanted = model.Load(static_cast<int>(file), kind == 5);
            result = manager.Update(corvane::ToWide(paths[file]).c_str(), kind == 5 ? -1 : 0);
        } else if (kind == 7) { // another program's change
            Sections content = model.files[file];
            if (section.empty())
                content.clear();
            else if (tag.empty())
                content.erase(section);
            else
                content[section][tag].text = u"outside";
            putFile(file, content);
        } else if (kind == 8 && !section.empty() && snapshots.size() < 4) {
            wstring name;
            wanted = model.loaded >= 0;
            result = manager.CreateSnapshot(name);
            if (wanted)
                snapshots.emplace_back(name, model.files[model.loaded]);
        } else if (kind == 8) {
            ConfigManager copy; // is all that the original was
            copy = manager;
            manager.Clear();
            manager = copy;
        } else if (!snapshots.empty() && model.loaded >= 0) {
            const auto& [name, content] = snapshots[file % snapshots.size()];
            model.files[model.loaded] = content;
            wanted = model.Load(model.loaded, true);
            result = manager.RestoreSnapshot(name);
            if (!wanted) // whether that shows depends on the second in which it happened
                putFile(static_cast<std::size_t>(model.loaded), content);
        } else if (tag.empty()) {
            model.cache.clear();
            model.cacheOnly = {reserved};
            model.loaded = -1;
            manager.Clear();
        }
        Require((result == 0) == wanted, "the result is that of the rules");
        Require(StateOf(manager) == model.State(), "the cache is that of the rules");
    }

    for (const auto& [name, content] : snapshots)
        std::filesystem::remove(corvane::ToUtf8(name));
    for (int file = 0; file < 2; ++file) {
        ConfigManager reader;
        Model fresh;
        fresh.files[file] = model.files[file];
        const bool loads = fresh.Load(file, true);
        Require((reader.Update(corvane::ToWide(paths[file]).c_str(), -1) == 0) == loads &&
                    StateOf(reader) == fresh.State(),
                "the file is that of the rules");
    }
    return 0;
}
