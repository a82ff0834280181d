#include <corvane/manager/TagMap.h>

namespace corvane {

void TagMap::Assign(const Tag& tag) {
    const std::uint32_t place = Find(tag.name);
    if (place == none)
        m_names.Add(tag.name, tag.value, tag.cacheOnly);
    else
        m_names.Assign(place, tag.value, tag.cacheOnly);
}

bool TagMap::Erase(wstring_view name) noexcept {
    const std::uint32_t place = Find(name);
    if (place == none)
        return false;
    m_names.Remove(place);
    return true;
}

} // namespace corvane
