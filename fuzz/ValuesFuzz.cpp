// Any bytes as the values file of a registry key: in memory, and in a tree on disk.
#include "Fuzz.h"

#include <corvane/platform/RegistryFolders.h>
#include <corvane/platform/linux/registry/ValuesText.h>
#include <corvane/registry/registry.h>

using namespace fuzz;
using corvane::os::ParseValues;
using corvane::os::PrintValues;
using corvane::os::RegistryValues;

namespace {

bool Same(const RegistryValues& a, const RegistryValues& b) {
    const auto same = [](const auto& x, const auto& y) {
        return x.comment == y.comment && x.name == y.name && x.type == y.type && x.data == y.data;
    };
    return a.comment == b.comment &&
           std::equal(a.values.begin(), a.values.end(), b.values.begin(), b.values.end(), same);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(Input(data, size).Rest());
    RegistryValues values;
    const bool isWhole = ParseValues(text, values);
    if (isWhole) {
        RegistryValues again;
        Require(ParseValues(PrintValues(values), again) && Same(values, again),
                "what is printed parses to the same");
    }

    static const std::string root = Folder().Path("registry");
    static const std::string key = root + "/HKEY_CURRENT_USER/Key";
    static const bool made =
        corvane::SetRegistryFolders(root, root) && std::filesystem::create_directories(key);
    Require(made, "the tree is there");
    const std::string file = Folder().Write("registry/HKEY_CURRENT_USER/Key/.values", text);
    int found = 0;
    for (const auto& value : values.values) {
        corvane::wchar buffer[16];
        registry_readString(nullptr, u"\\Key", value.name.c_str(), nullptr, buffer, 16);
        registry_readNumber(nullptr, u"\\Key", value.name.c_str(), 0, &found);
    }
    Require((registry_writeNumber(nullptr, u"\\Key", u"n", 42) == 0) == isWhole,
            "a damaged file is refused, and no other");
    Require(isWhole || Bytes(file) == text, "a damaged file is left alone");
    if (!isWhole)
        return 0;
    Require(registry_readNumber(nullptr, u"\\Key", u"n", 0, &found) == 42 && found == 1,
            "what was written is read back");
    RegistryValues after;
    Require(ParseValues(Bytes(file), after), "the file stays whole");
    if (auto* const old = values.Find(u"n"))
        *old = *after.Find(u"n");
    else
        values.values.push_back(*after.Find(u"n"));
    Require(Same(values, after), "nothing else changes");
    return 0;
}
