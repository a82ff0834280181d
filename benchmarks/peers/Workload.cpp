#include "Workload.h"

#include <algorithm>
#include <fstream>

namespace peers {
namespace {

enum class Kind { Section = 1, Tag, Value, Comment };

std::uint64_t Mix(std::uint64_t x) {
    x += 0x9e3779b97f4a7c15u;
    x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9u;
    x = (x ^ (x >> 27)) * 0x94d049bb133111ebu;
    return x ^ (x >> 31);
}

// A short stream of numbers that starts from one value.
class Stream {
public:
    explicit Stream(std::uint64_t seed) : m_state(seed) {}
    unsigned Below(unsigned n) { return static_cast<unsigned>((m_state = Mix(m_state)) % n); }

private:
    std::uint64_t m_state;
};

constexpr const char* words[] = {"Mail",    "Server",   "Window", "Cache",    "Timeout", "Path",   "User",
                                 "Log",     "Level",    "Retry",  "Count",    "Port",    "Host",   "Color",
                                 "Font",    "Size",     "Update", "Interval", "Proxy",   "Enable", "Backup",
                                 "Folder",  "Language", "Theme",  "Max",      "Min",     "Buffer", "Index",
                                 "Session", "Token",    "Limit",  "Display"};

// Words cut to a length of 6 to 24 with the index at the end, which keeps names unique in any letter case.
std::string MakeName(Stream r, int index) {
    const std::string digits = std::to_string(index);
    const std::size_t length = std::max<std::size_t>(6 + r.Below(19), digits.size() + 2) - digits.size();
    std::string name;
    while (name.size() < length)
        name += words[r.Below(std::size(words))];
    name.resize(length);
    return name + digits;
}

// No character here is special to any of the parsers (comments, quotes, escapes, lists, expansion).
std::string AsciiText(Stream& r, unsigned length) {
    static const char alphabet[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789  ./:-_+()";
    std::string text;
    for (unsigned i = 0; i < length; ++i)
        text += alphabet[r.Below(i == 0 || i + 1 == length ? 62 : sizeof alphabet - 1)];
    return text;
}

std::string OtherText(Stream& r, unsigned count) {
    static const char* const glyphs[] = {"é",  "ß",  "ø",  "Ж", "д", "λ", "ω", "ש", "ع", "中", "文", "設",
                                         "か", "ナ", "한", "€", "😀", "🚀", "a", "e", "n", "o",  "s",  "t"};
    std::string text;
    for (unsigned i = 0; i < count; ++i)
        text += glyphs[r.Below(std::size(glyphs))];
    return text;
}

// Numbers of their own for each place in the file.
Stream StreamOf(Kind kind, int section, int tag) {
    const auto wide = [](int number) { return static_cast<std::uint64_t>(number); };
    return Stream(Mix(1 ^ Mix(wide(static_cast<int>(kind)) << 60 ^ wide(section) << 30 ^ wide(tag))));
}

} // namespace

std::string Workload::Section(int section) const {
    return MakeName(StreamOf(Kind::Section, section, 0), section);
}

std::string Workload::Tag(int section, int tag) const {
    return MakeName(StreamOf(Kind::Tag, section, tag), tag);
}

std::string Workload::Value(int section, int tag) const {
    Stream stream = StreamOf(Kind::Value, section, tag);
    const unsigned kind = stream.Below(10);
    if (kind < 7)
        return AsciiText(stream, 4 + stream.Below(37));
    if (kind < 9)
        return AsciiText(stream, 40 + stream.Below(81));
    return OtherText(stream, 4 + stream.Below(27));
}

bool Workload::Write(const std::string& path, char commentMark) const {
    std::ofstream file(path, std::ios::binary);
    file << commentMark << " Generated settings\n"
         << commentMark << ' ' << m_sections << " sections of " << m_tags << " tags\n";
    for (int section = 0; section < m_sections; ++section) {
        file << '\n';
        if (section % 4 == 3)
            file << commentMark << " Settings of this part of the program\n";
        file << '[' << Section(section) << "]\n";
        for (int tag = 0; tag < m_tags; ++tag) {
            Stream stream = StreamOf(Kind::Comment, section, tag);
            if (stream.Below(12) == 0)
                file << commentMark << ' ' << AsciiText(stream, 20 + stream.Below(40)) << '\n';
            file << Tag(section, tag) << '=' << Value(section, tag) << '\n';
        }
    }
    return !file.flush().fail();
}

std::vector<Name> Workload::Hits() const {
    std::vector<Name> names;
    for (int section = 0; section < m_sections; ++section) {
        for (int tag = 0; tag < m_tags; ++tag)
            names.push_back({Section(section), Tag(section, tag)});
    }
    Stream stream(1);
    for (std::size_t i = names.size(); i > 1; --i)
        std::swap(names[i - 1], names[stream.Below(static_cast<unsigned>(i))]);
    return names;
}

std::vector<Name> Workload::Misses() const {
    std::vector<Name> names = Hits();
    for (std::size_t i = 0; i < names.size(); ++i)
        (i % 2 ? names[i].section : names[i].tag) += 'x'; // real names end in a digit
    return names;
}

} // namespace peers
